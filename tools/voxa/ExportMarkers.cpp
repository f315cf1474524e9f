#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <type_traits>
#include <vector>

#include "loader/FrameNumber.h"
#include "text/Counted.h"
#include "tools/formats/OtioTimeline.h"
#include "tools/series/Summary.h"
#include "tools/voxa/Damages.h"
#include "tools/voxa/Export.h"
#include "tools/voxa/KeptRecords.h"
#include "tools/voxa/Picture.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Sources.h"

namespace voxa {

namespace {

template <class Record>
constexpr bool kIsMarked =
    std::is_same_v<Record, std::string> || std::is_same_v<Record, ZRKMetaData::KeyStroke>;

// Frame numbers at the rate of --rate, rounded as a loaded parameter's are; without it the seconds
// as they stand.
class MarkerTimes {
 public:
  explicit MarkerTimes(const std::string& rate) {
    if (!rate.empty()) m_framesPerSecond = loader::framesPerSecond(parseRate(rate));
  }

  double rate() const { return m_framesPerSecond.value_or(1); }

  std::optional<double> timeOf(double seconds) const {
    if (!std::isfinite(seconds)) return std::nullopt;
    if (!m_framesPerSecond) return seconds;
    const auto frame = loader::frameNumber(*m_framesPerSecond, seconds);
    return frame ? std::optional(static_cast<double>(*frame)) : std::nullopt;
  }

 private:
  std::optional<double> m_framesPerSecond;
};

// The name by which a reader of the file `out` finds `file`: a relative one leads there from the
// folder of `out`, where that is known.
std::string nameFrom(const std::string& out, const std::string& file) {
  namespace fs = std::filesystem;
  const fs::path path = fs::u8path(file);
  if (out == "-" || path.is_absolute()) return file;
  // Links are followed, because ".." leads out of where a link leads. The file keeps its own name.
  std::error_code error;
  const fs::path folder = fs::weakly_canonical(fs::absolute(path, error).parent_path(), error);
  const fs::path from =
      fs::weakly_canonical(fs::absolute(fs::u8path(out), error).parent_path(), error);
  const fs::path name = (folder / path.filename()).lexically_relative(from);
  return name.empty() ? fs::absolute(path, error).u8string() : name.u8string();
}

// The timeline, and the file that it is written to.
struct Document {
  Document(const ExportOptions& options, double rate)
      : out(options.out), sink(sinkInto(out)), timeline(sink, rate) {
    timeline.begin(series::titleOf(options.sources.files.front()));
  }

  void finish() {
    timeline.finish();
    sink.flush();
    out.finish();
  }

  Output out;
  formats::TextSink sink;
  formats::OtioTimeline timeline;
};

// Writes the markers of one recording as a clip.
class ClipWriter {
 public:
  ClipWriter(const ExportOptions& options, const Source& source, const MarkerTimes& times,
             formats::OtioTimeline& timeline)
      : m_options(readOptionsOf(options)),
        m_outFile(options.out.file),
        m_source(source),
        m_times(times),
        m_timeline(timeline) {}

  void write() {
    std::vector<ChosenStream> marked;
    for (const ChosenStream& stream : m_source.streams) {
      series::visitRecordType(stream.type, [&](const auto& row) {
        if (kIsMarked<typename std::decay_t<decltype(row)>::type>) marked.push_back(stream);
      });
    }
    const Progress progress = progressOf({m_source.file, m_source.parser, marked}, m_options);
    m_timeline.beginClip();
    double end = pictureOf(m_source.file).seconds;
    for (const ChosenStream& stream : marked) {
      series::visitRecordType(stream.type, [&](const auto& row) {
        using Record = typename std::decay_t<decltype(row)>::type;
        if constexpr (kIsMarked<Record>) end = std::max(end, writeMarkers<Record>(stream));
      });
    }
    constexpr bool kIsWindows = std::filesystem::path::preferred_separator == '\\';
    m_timeline.endClip(series::titleOf(m_source.file),
                       formats::mediaUrl(nameFrom(m_outFile, m_source.file), kIsWindows),
                       m_times.timeOf(end).value_or(0));
    m_damages.throwIfAny();
  }

 private:
  // Returns the time of the last marker in seconds.
  template <class Record>
  double writeMarkers(const ChosenStream& stream) {
    m_timeline.beginStream({m_source.file, stream.name, stream.type});
    std::uint64_t leftOut = 0;
    double last = 0;
    try {
      forEachKept<Record>(m_source.parser, m_source.file, stream, m_options,
                          [&](double seconds, const Record& record) {
                            const auto time = m_times.timeOf(seconds);
                            if (!time) {
                              ++leftOut;
                              return;
                            }
                            last = std::max(last, seconds);
                            m_timeline.add(*time, seconds, record);
                          });
    } catch (const series::DamagedStream& damage) {
      m_damages.add(damage.message(m_source.file));
    }
    if (leftOut != 0) {
      say(fmt::format("{}: {}: {} left out because of a time that is not finite or too large",
                      m_source.file, stream.name, text::counted(leftOut, "record")));
    }
    return last;
  }

  const ReadOptions m_options;
  const std::string& m_outFile;
  const Source& m_source;
  const MarkerTimes& m_times;
  formats::OtioTimeline& m_timeline;
  Damages m_damages;
};

}  // namespace

void exportMarkers(const ExportOptions& options) {
  readOptionsOf(options);  // refuses wrong ones before a file is opened
  const MarkerTimes times(options.times.rate);
  std::optional<Document> document;  // made for the first recording that can be read
  const Status status = forEachSource(options.sources, [&](const Source& source) {
    if (!document) document.emplace(options, times.rate());
    ClipWriter(options, source, times, document->timeline).write();
  });
  if (document) document->finish();
  endWith(status);
}

}  // namespace voxa
