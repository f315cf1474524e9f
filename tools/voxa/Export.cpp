#include "tools/voxa/Export.h"

#include "tools/voxa/Failure.h"
#include "tools/voxa/Recording.h"

namespace voxa {

namespace {

// An option that only some formats have.
struct FormatOption {
  bool isGiven;
  const char* name;
  bool fits;
};

void checkOptions(const ExportOptions& options) {
  const ExportFormat format = options.format;
  const bool isCsv = format == ExportFormat::Csv;
  const bool isMlt = format == ExportFormat::Mlt;
  const bool isChapters = format == ExportFormat::FfMetadata;
  const bool isOtio = format == ExportFormat::Otio;
  const FormatOption given[] = {
      {options.layout == formats::Layout::Wide, "--layout wide", !isMlt && !isChapters && !isOtio},
      {options.isSpreadsheetSafe, "--spreadsheet-safe", isCsv},
      {!options.property.empty(), "--property", isMlt},
      {!options.field.empty(), "--field", isMlt},
      {options.chapters.has_value(), "--chapters", isChapters},
      {options.gap.has_value(), "--gap", isChapters}};
  for (const FormatOption& option : given) {
    if (option.isGiven && !option.fits) {
      throw Failure(Status::WrongUse, std::string(option.name) + " does not fit the --format");
    }
  }
  if (options.gap && options.chapters != ChapterSource::Pauses) {
    throw Failure(Status::WrongUse, "--gap is the length of a pause; use --chapters pauses");
  }
  if (isMlt && (options.property.empty() || options.times.rate.empty())) {
    throw Failure(Status::WrongUse, "--format mlt needs --rate and --property");
  }
  if ((isMlt || isChapters) && options.sources.files.size() != 1) {
    throw Failure(Status::WrongUse, "the --format holds one recording; name one FILE");
  }
  for (const std::string& file : options.sources.files) requireOtherFile(options.out.file, file);
}

}  // namespace

void exportRecordings(const ExportOptions& options) {
  checkOptions(options);
  switch (options.format) {
    case ExportFormat::Mlt:
      return exportAnimation(options);
    case ExportFormat::FfMetadata:
      return exportChapters(options);
    case ExportFormat::Otio:
      return exportMarkers(options);
    default:
      return exportRecords(options);
  }
}

}  // namespace voxa
