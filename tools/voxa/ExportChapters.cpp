#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "text/Counted.h"
#include "tools/formats/Chapters.h"
#include "tools/voxa/Damages.h"
#include "tools/voxa/Export.h"
#include "tools/voxa/KeptRecords.h"
#include "tools/voxa/Picture.h"
#include "tools/voxa/Sources.h"

namespace voxa {

namespace {

// The chosen streams of a recording. Every record counts for the end of the last chapter.
class ChapterReader {
 public:
  ChapterReader(const ExportOptions& options, const Source& source)
      : m_source(source),
        m_options(readOptionsOf(options)),
        m_end(pictureOf(source.file).seconds) {}

  /// Calls `add(seconds, record)` for each record whose time can be written.
  template <class Add>
  void readAll(Add add) {
    for (const ChosenStream& stream : m_source.streams) {
      series::visitRecordType(stream.type, [&](const auto& row) {
        read<typename std::decay_t<decltype(row)>::type>(stream, add);
      });
    }
  }

  /// In seconds.
  double end() const { return m_end; }

  std::uint64_t recordCount() const { return m_recordCount; }

  const Damages& damages() const { return m_damages; }

 private:
  template <class Record, class Add>
  void read(const ChosenStream& stream, Add& add) {
    std::uint64_t leftOut = 0;
    try {
      forEachKept<Record>(m_source.parser, m_source.file, stream, m_options,
                          [&](double seconds, const Record& record) {
                            if (!(std::abs(seconds) <= formats::kMaxChapterSeconds)) {
                              ++leftOut;
                              return;
                            }
                            ++m_recordCount;
                            m_end = std::max(m_end, seconds);
                            add(seconds, record);
                          });
    } catch (const series::DamagedStream& damage) {
      m_damages.add(damage.message(m_source.file));
    }
    if (leftOut != 0) {
      say(fmt::format("{}: {}: {} left out because of a time that is not finite or exceeds {:g} s",
                      m_source.file, stream.name, text::counted(leftOut, "record"),
                      formats::kMaxChapterSeconds));
    }
  }

  const Source& m_source;
  const ReadOptions m_options;
  double m_end;
  std::uint64_t m_recordCount = 0;
  Damages m_damages;
};

std::vector<formats::Chapter> chaptersOfTexts(const Source& source, ChapterReader& reader) {
  const auto isText = [](const ChosenStream& stream) {
    return stream.isEmpty || stream.type == series::recordTypeOf<std::string>();
  };
  if (std::none_of(source.streams.begin(), source.streams.end(), isText)) {
    throw Failure(Status::NoSuchStream,
                  source.file + ": no stream of strings; use --chapters pauses");
  }
  formats::TextChapters chapters;
  reader.readAll([&chapters](double seconds, const auto& record) {
    if constexpr (std::is_same_v<std::decay_t<decltype(record)>, std::string>) {
      chapters.add(seconds, record);
    }
  });
  return chapters.chapters(reader.end());
}

std::vector<formats::Chapter> chaptersBetweenPauses(double gap, ChapterReader& reader) {
  formats::PauseChapters chapters(gap);
  reader.readAll([&chapters](double seconds, const auto&) { chapters.add(seconds); });
  if (reader.recordCount() == 0 && reader.end() == 0) return {};
  return chapters.chapters(reader.end());
}

}  // namespace

void exportChapters(const ExportOptions& options) {
  constexpr double kDefaultGap = 5;  // seconds
  endWith(forEachSource(options.sources, [&](const Source& source) {
    const Progress progress = progressOf(source, readOptionsOf(options));
    ChapterReader reader(options, source);
    const auto chapters = options.chapters == ChapterSource::Pauses
                              ? chaptersBetweenPauses(options.gap.value_or(kDefaultGap), reader)
                              : chaptersOfTexts(source, reader);
    if (reader.recordCount() == 0 || chapters.empty()) {
      say(source.file + ": no records in the range");
    }
    Output out(options.out);
    formats::TextSink sink = sinkInto(out);
    formats::writeFfMetadata(sink, chapters);
    sink.flush();
    out.finish();
    reader.damages().throwIfAny();
  }));
}

}  // namespace voxa
