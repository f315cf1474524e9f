#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "tools/formats/AssScript.h"
#include "tools/formats/Captions.h"
#include "tools/formats/CursorMarks.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/KeptRecords.h"
#include "tools/voxa/KeyCaptions.h"
#include "tools/voxa/Picture.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using ZRKMetaData::KeyStroke;
using ZRKMetaData::Point;

namespace {

// The last position is shown so much longer where the end of the video is not known.
constexpr double kUnknownEndSeconds = 10;

// The value of --cursor, --keys or --clicks that leaves them out.
constexpr const char* kNone = "none";

// The streams that are drawn, each absent for none.
struct OverlayStreams {
  std::optional<ChosenStream> cursor;
  std::optional<ChosenStream> keys;
  std::optional<ChosenStream> clicks;
};

class OverlayChoice {
 public:
  OverlayChoice(ZRKMetaData::MetaDataParser& parser, const OverlayOptions& options)
      : m_parser(parser), m_options(options) {}

  OverlayStreams streams() {
    OverlayStreams streams;
    streams.cursor = stream(m_options.cursor, series::recordTypeOf<Point>());
    streams.keys = stream(m_options.keysStream, series::recordTypeOf<KeyStroke>());
    const bool isAnyMissing = isMissing(m_options.cursor, streams.cursor) ||
                              isMissing(m_options.keysStream, streams.keys);
    if (isAnyMissing) m_all->sayDoubts();
    if (!streams.cursor && !streams.keys) {
      throw Failure(Status::WrongUse, m_options.file +
                                          ": no stream of points or keystrokes; name one with "
                                          "--cursor or --keys and use --as");
    }
    if (!m_options.clicks.empty()) {
      if (!streams.cursor) throw Failure(Status::WrongUse, "--clicks needs a cursor");
      streams.clicks = stream(m_options.clicks, series::recordTypeOf<int>());
    }
    return streams;
  }

 private:
  std::optional<ChosenStream> stream(const std::string& name, series::RecordType type) {
    if (name == kNone) return std::nullopt;
    if (!name.empty()) {
      return chooseOfType(m_parser, m_options.file, name, m_options.types, type);
    }
    if (!m_all)
      m_all.emplace(m_parser, m_options.file, std::vector<std::string>{}, m_options.types);
    return m_all->only(type);
  }

  // Whether a stream was looked for among all, and none with records was found.
  static bool isMissing(const std::string& name, const std::optional<ChosenStream>& stream) {
    return name.empty() && (!stream || stream->isEmpty);
  }

  ZRKMetaData::MetaDataParser& m_parser;
  const OverlayOptions& m_options;
  std::optional<StreamChoice> m_all;  // guessed once
};

// The size in which positions are stated, and how long the video is in seconds, 0 for unknown.
struct Video {
  formats::ScreenSize size{};
  double seconds = 0;
};

Video videoOf(const OverlayOptions& options) {
  if (!options.screen.empty()) {
    return {*screenSizeOf(options.file, options.screen), pictureOf(options.file).seconds};
  }
  if (options.video.empty()) {
    const MediaPicture own = pictureOf(options.file);
    if (own.screen) return {*own.screen, own.seconds};
    throw Failure(Status::WrongUse,
                  options.file + ": no screen track that states a size; use --screen or --video");
  }
  requireOpens(options.video);
  const MediaPicture media = pictureOf(options.video);
  if (media.screen) return {*media.screen, media.seconds};
  if (media.first) return {*media.first, media.seconds};
  throw Failure(Status::Failed,
                options.video + ": no picture size can be read; use --screen instead of --video");
}

// Draws the streams one after the other. Players order the lines by their times.
class OverlayWriter {
 public:
  OverlayWriter(ZRKMetaData::MetaDataParser& parser, const OverlayOptions& options,
                const series::TimeRange& range, Output& out)
      : m_parser(parser),
        m_options(options),
        m_range(range),
        m_out(out),
        m_clock(options.times.rate.empty() ? formats::CueClock(formats::kAssTicksPerSecond)
                                           : formats::CueClock(formats::kAssTicksPerSecond,
                                                               parseRate(options.times.rate))) {}

  void writeKeys(const ChosenStream& stream, formats::KeyCueOptions options) {
    formats::KeyCues cues(std::move(options), m_clock,
                          [this](const formats::Cue& cue) { m_out.write(formats::assCue(cue)); });
    read<KeyStroke>(stream,
                    [&cues](double seconds, const KeyStroke& key) { cues.add(seconds, key); });
    cues.finish();
    sayLeftOut(m_options.file, stream.name, cues.leftOutCount(), cues.keyCount());
  }

  void writeCursor(const OverlayStreams& streams, const Video& video) {
    formats::CursorMarks marks(video.size, m_clock,
                               [this](std::string_view text) { m_out.write(text); });
    if (streams.clicks) {
      read<int>(*streams.clicks,
                [&marks](double seconds, int buttons) { marks.addButtons(seconds, buttons); });
    }
    if (m_options.tolerance) findLastSeconds(*streams.cursor);
    read<Point>(
        *streams.cursor,
        [&marks](double seconds, const Point& position) { marks.add(seconds, position); },
        m_options.tolerance);
    const double end =
        video.seconds > m_lastSeconds ? video.seconds : m_lastSeconds + kUnknownEndSeconds;
    marks.finish(formats::CueClock::isInRange(end) ? m_clock.tickAt(end) : m_clock.maxTick());
    sayLeftOut(m_options.file, streams.cursor->name + (streams.clicks ? " and clicks" : ""),
               marks.leftOutCount(), marks.recordCount());
  }

  /// Why reading ended early, empty where it did not.
  const std::string& damage() const { return m_damage; }

 private:
  template <class Record, class Visit>
  void read(const ChosenStream& stream, Visit visit,
            const std::optional<double>& tolerance = std::nullopt) {
    try {
      // Keystrokes are masked when their text is made (formats::KeyCues).
      forEachKept<Record>(m_parser, m_options.file, stream,
                          {m_range, tolerance, series::Redaction::None},
                          [&](double seconds, const Record& record) {
                            countTime(seconds);
                            visit(seconds, record);
                          });
    } catch (const series::DamagedStream& error) {
      if (m_damage.empty()) m_damage = error.message(m_options.file);
    }
  }

  // The positions that --simplify drops hold, too.
  void findLastSeconds(const ChosenStream& stream) {
    const SilentScan silent;
    const QuietModule quiet;
    try {
      series::forEachRecord<Point>(m_parser, stream.id, m_range,
                                   [this](double seconds, const Point&) { countTime(seconds); });
    } catch (const series::DamagedStream&) {  // reported by the reading that follows
    }
  }

  void countTime(double seconds) {
    if (formats::CueClock::isInRange(seconds)) m_lastSeconds = std::max(m_lastSeconds, seconds);
  }

  ZRKMetaData::MetaDataParser& m_parser;
  const OverlayOptions& m_options;
  const series::TimeRange m_range;
  Output& m_out;
  const formats::CueClock m_clock;
  double m_lastSeconds = 0;
  std::string m_damage;
};

}  // namespace

void writeOverlay(const OverlayOptions& options) {
  const series::TimeRange range = timeRangeOf(options.times);
  formats::KeyCueOptions cueOptions = keyCueOptions(options.keys);
  const auto parser = openRecording(options.file, options.container);
  requireOtherFile(options.out.file, options.file);
  if (!options.video.empty()) requireOtherFile(options.out.file, options.video);
  const Video video = videoOf(options);
  const OverlayStreams streams = OverlayChoice(*parser, options).streams();

  std::vector<ChosenStream> read;  // each as often as it is read
  for (const auto& stream : {streams.keys, streams.cursor, streams.clicks}) {
    if (stream) read.push_back(*stream);
  }
  if (options.tolerance && streams.cursor) read.insert(read.end(), 2, *streams.cursor);
  const Progress progress(options.file, bytesOf(*parser, read));
  Output out(options.out);
  out.write(formats::assHeader(video.size));
  OverlayWriter writer(*parser, options, range, out);
  if (streams.keys) writer.writeKeys(*streams.keys, std::move(cueOptions));
  if (streams.cursor) writer.writeCursor(streams, video);
  out.finish();
  if (!writer.damage().empty()) {
    throw Failure(Status::DamagedData, writer.damage() + "; the overlay shows the records before");
  }
}

}  // namespace voxa
