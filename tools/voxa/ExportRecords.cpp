#include <fmt/format.h>

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "tools/formats/CsvRecords.h"
#include "tools/formats/JsonRecords.h"
#include "tools/formats/XmlRecords.h"
#include "tools/series/Summary.h"
#include "tools/voxa/Damages.h"
#include "tools/voxa/Export.h"
#include "tools/voxa/KeptRecords.h"
#include "tools/voxa/OutputFolder.h"
#include "tools/voxa/Sha256.h"
#include "tools/voxa/Sources.h"

namespace voxa {

using formats::CsvRecords;
using formats::JsonRecords;
using formats::StreamError;
using formats::XmlRecords;

namespace {

// One document of any of the formats, and the file that it is written to.
class Document {
 public:
  Document(const ExportOptions& options, const Destination& destination)
      : m_out(destination), m_sink(sinkInto(m_out)), m_writer(writerFor(options, m_sink)) {
    std::visit([](auto& writer) { writer.begin(); }, m_writer);
  }

  /// Writes the records of a stream. Returns the damage at which they end, empty for none.
  std::string write(const Source& source, const ChosenStream& stream, const ReadOptions& options) {
    const formats::StreamLabel label{source.file, stream.name, stream.type};
    const auto writeAll = [&](auto& writer) {
      writer.beginStream(label);
      series::visitRecordType(stream.type, [&](const auto& row) {
        using Record = typename std::decay_t<decltype(row)>::type;
        forEachKept<Record>(
            source.parser, source.file, stream, options,
            [&writer](double seconds, const Record& record) { writer.add(seconds, record); });
      });
    };
    try {
      std::visit(writeAll, m_writer);
    } catch (const series::DamagedStream& damage) {
      m_errors.push_back({label, damage.what()});
      return damage.message(source.file);
    }
    return {};
  }

  void finish() {
    std::visit([this](auto& writer) { writer.finish(m_errors); }, m_writer);
    m_sink.flush();
    m_out.finish();
  }

 private:
  using Writer = std::variant<CsvRecords, JsonRecords, XmlRecords>;

  static Writer writerFor(const ExportOptions& options, formats::TextSink& sink) {
    const formats::Layout layout = options.layout;
    switch (options.format) {
      case ExportFormat::Json:
        return JsonRecords(sink, layout, digestOf, JsonRecords::Form::Document);
      case ExportFormat::Ndjson:
        return JsonRecords(sink, layout, digestOf, JsonRecords::Form::Lines);
      case ExportFormat::Xml:
        return XmlRecords(sink, layout, digestOf);
      default:
        return CsvRecords(sink, layout, digestOf,
                          options.isSpreadsheetSafe ? formats::CsvCells::SpreadsheetSafe
                                                    : formats::CsvCells::Exact);
    }
  }

  Output m_out;
  formats::TextSink m_sink;
  Writer m_writer;
  std::vector<StreamError> m_errors;
};

const char* extensionOf(ExportFormat format) {
  switch (format) {
    case ExportFormat::Json:
      return ".json";
    case ExportFormat::Ndjson:
      return ".ndjson";
    case ExportFormat::Xml:
      return ".xml";
    default:
      return ".csv";
  }
}

void exportLong(const ExportOptions& options, const ReadOptions& read) {
  std::optional<Document> document;  // made for the first recording that can be read
  const Status status = forEachSource(options.sources, [&](const Source& source) {
    if (!document) document.emplace(options, options.out);
    const Progress progress = progressOf(source, read);
    Damages damages;
    for (const ChosenStream& stream : source.streams) {
      if (stream.isEmpty) continue;
      damages.add(document->write(source, stream, read));
    }
    damages.throwIfAny();
  });
  if (document) document->finish();
  endWith(status);
}

// Names files after the recording and the stream: take1.voxa-F0.csv, of a second recording of the
// same name take1.voxa-2-F0.csv.
class WideNames {
 public:
  /// The name without the stream's.
  std::string stemOf(const std::string& file) {
    const std::string title = series::titleOf(file);
    std::string stem = title;
    for (int number = 2; !m_stems.insert(stem).second; ++number) {
      stem = title + "-" + std::to_string(number);
    }
    return stem;
  }

 private:
  std::set<std::string> m_stems;
};

void exportWide(const ExportOptions& options, const ReadOptions& read) {
  const std::string& folder = options.out.file;
  requireFolderName(folder, "--layout wide");
  WideNames names;
  bool isPrepared = false;
  endWith(forEachSource(options.sources, [&](const Source& source) {
    if (!isPrepared) prepareFolder(folder, options.out.force);
    isPrepared = true;
    const std::string stem = names.stemOf(source.file);
    const Progress progress = progressOf(source, read);
    Damages damages;
    for (const ChosenStream& stream : source.streams) {
      if (stream.isEmpty) continue;
      Document document(options, {fmt::format("{}/{}-{}{}", folder, stem, stream.name,
                                              extensionOf(options.format)),
                                  options.out.force});
      damages.add(document.write(source, stream, read));
      document.finish();
    }
    damages.throwIfAny();
  }));
}

}  // namespace

void exportRecords(const ExportOptions& options) {
  const ReadOptions read = readOptionsOf(options);
  if (options.layout == formats::Layout::Wide) return exportWide(options, read);
  exportLong(options, read);
}

}  // namespace voxa
