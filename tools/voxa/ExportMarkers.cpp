#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <type_traits>

#include "loader/FrameNumber.h"
#include "tools/formats/OtioTimeline.h"
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

// Writes the markers of one recording as a clip.
class ClipWriter {
 public:
  ClipWriter(const ExportOptions& options, const Source& source, const MarkerTimes& times,
             formats::OtioTimeline& timeline)
      : m_options(readOptionsOf(options)), m_source(source), m_times(times), m_timeline(timeline) {}

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
    m_timeline.endClip(titleOf(m_source.file), formats::mediaUrl(m_source.file, kIsWindows),
                       m_times.timeOf(end).value_or(0));
    m_damages.throwIfAny();
  }

 private:
  // Returns the time of the last marker in seconds.
  template <class Record>
  double writeMarkers(const ChosenStream& stream) {
    const formats::StreamLabel label{m_source.file, stream.name, stream.type};
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
                            m_timeline.add(label, *time, seconds, record);
                          });
    } catch (const series::DamagedStream& damage) {
      m_damages.add(damage.message(m_source.file));
    }
    if (leftOut != 0) {
      say(fmt::format("{}: {}: {} records are left out: their times are not finite or too large",
                      m_source.file, stream.name, leftOut));
    }
    return last;
  }

  const ReadOptions m_options;
  const Source& m_source;
  const MarkerTimes& m_times;
  formats::OtioTimeline& m_timeline;
  Damages m_damages;
};

}  // namespace

void exportMarkers(const ExportOptions& options) {
  readOptionsOf(options);  // refuses wrong ones before a file is opened
  const MarkerTimes times(options.times.rate);
  Output out(options.out);
  formats::TextSink sink = sinkInto(out);
  formats::OtioTimeline timeline(sink, times.rate());
  timeline.begin(titleOf(options.sources.files.front()));
  const Status status = forEachSource(options.sources, [&](const Source& source) {
    ClipWriter(options, source, times, timeline).write();
  });
  timeline.finish();
  sink.flush();
  out.finish();
  endWith(status);
}

}  // namespace voxa
