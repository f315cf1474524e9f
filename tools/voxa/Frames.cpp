#include <fmt/format.h>

#include <algorithm>
#include <boost/rational.hpp>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "loader/FrameNumber.h"
#include "tools/series/ExactFraction.h"
#include "tools/series/RecordStream.h"
#include "tools/series/RecordTypes.h"
#include "tools/series/Redact.h"
#include "tools/series/Simplify.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Damages.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/Masks.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

using Kestova::int64;
using ZRKMetaData::MetaDataParser;

namespace {

// A stream is read once per window, so that memory does not grow with its length, in whatever order
// its times are. At 60 frames per second a window is 18 minutes.
constexpr int64 kWindowFrames = 65536;

// A window ends before its texts take more bytes than this per stream, but has at least one frame.
constexpr std::size_t kMaxWindowBytes = std::size_t{4} << 20U;

// More frames than this are written only where --to asks for them: a damaged time would otherwise
// fill the disk. 100 million frames are 19 days at 60 frames per second.
constexpr int64 kMaxUnaskedFrames = 100'000'000;

// What a loaded parameter keeps of a record: rectangles become floats, and of an image the
// identifier.
template <class Record>
const Record& frameValue(const Record& record) {
  return record;
}

struct FrameRect {
  float coordinates[4];
};
FrameRect frameValue(const ZRKMetaData::Rect& rect) {
  FrameRect value{};
  std::transform(std::begin(rect.coordinates), std::end(rect.coordinates), value.coordinates,
                 [](auto coordinate) { return static_cast<float>(coordinate); });
  return value;
}

struct FrameImage {
  ZRKMetaData::uint64 imageId;
};
FrameImage frameValue(const ZRKMetaData::CursorImage& image) {
  return {image.m_imageId};
}

// What a value takes beside its place in a window.
template <class Value>
std::size_t textBytes(const Value& /*value*/) {
  return 0;
}
std::size_t textBytes(const std::string& text) {
  return text.size();
}

template <class Row, class Value>
void describeFrame(Row& row, const Value& value) {
  series::describe(row, value);
}
template <class Row>
void describeFrame(Row& row, const FrameRect& rect) {
  row.numbers("rect", {"a", "b", "c", "d"}, rect.coordinates);
}
template <class Row>
void describeFrame(Row& row, const FrameImage& image) {
  row.field("imageId", image.imageId);
}

// Whether a frame changes no number by more than `tolerance`, and nothing else.
template <class Value>
bool isWithin(const Value& held, const Value& value, double tolerance) {
  return series::isDroppable(held, value, tolerance);
}
bool isWithin(const ZRKMetaData::KeyStroke& held, const ZRKMetaData::KeyStroke& key,
              double /*tolerance*/) {
  return held.character == key.character && held.eventFlags == key.eventFlags;
}
bool isWithin(const FrameRect& held, const FrameRect& rect, double tolerance) {
  return std::equal(
      std::begin(held.coordinates), std::end(held.coordinates), std::begin(rect.coordinates),
      [tolerance](float left, float right) { return series::isDroppable(left, right, tolerance); });
}
bool isWithin(const FrameImage& held, const FrameImage& image, double /*tolerance*/) {
  return held.imageId == image.imageId;
}

// One stream, held to frames. Frames are asked for in rising order.
class HeldStream {
 public:
  HeldStream() = default;
  virtual ~HeldStream() = default;
  HeldStream(const HeldStream&) = delete;
  HeldStream& operator=(const HeldStream&) = delete;

  /// Appends the names of the CSV columns.
  virtual void header(std::vector<std::string>& names) const = 0;

  /// Reads the values of the frames from `begin` to before `end`, or to an earlier frame where they
  /// would take too much memory. Returns where the window ends. The next one begins there or
  /// before.
  virtual int64 read(int64 begin, int64 end) = 0;

  /// Writes the value at a frame of the window.
  virtual void write(LineRow& row, int64 frame) = 0;
  virtual void write(JsonRow& row, int64 frame) = 0;

  /// Whether the value at a frame of the window differs from that of the latest kept frame by more
  /// than `tolerance`, or no frame was kept.
  virtual bool changes(int64 frame, double tolerance) = 0;

  /// Keeps the value at a frame of the window for `changes`.
  virtual void keep(int64 frame) = 0;

  /// The frame of the latest record, nothing for a stream without records.
  const std::optional<int64>& lastFrame() const { return m_lastFrame; }

  /// How often `read` reads the stream in that many windows, about: a stream whose frames never
  /// fall is read to the end of the window alone.
  double readings(int64 windows) const {
    return static_cast<double>(windows) * (m_isSorted ? 0.5 : 1) + 0.5;
  }

  /// Why reading ended early, empty when it did not.
  const std::string& damage() const { return m_damage; }

 protected:
  std::optional<int64> m_lastFrame;
  bool m_isSorted = true;
  std::string m_damage;
};

template <class Record>
class HeldRecords final : public HeldStream {
 public:
  HeldRecords(MetaDataParser& parser, const std::string& file, ChosenStream stream,
              double framesPerSecond, series::Redaction redaction)
      : m_parser(parser),
        m_stream(std::move(stream)),
        m_framesPerSecond(framesPerSecond),
        m_redaction(redaction) {
    try {
      eachFrame([this](int64 frame, const Record& record) {
        if (!m_first || frame <= m_first->first) m_first.emplace(frame, frameValue(record));
        if (m_lastFrame && frame < *m_lastFrame) m_isSorted = false;
        m_lastFrame = std::max(m_lastFrame.value_or(frame), frame);
        return true;
      });
    } catch (const series::DamagedStream& damage) {
      m_damage = damage.message(file);
    }
  }

  void header(std::vector<std::string>& names) const override {
    HeaderRow row(Format::Csv);
    describeFrame(row, frameValue(Record()));
    for (const std::string& name : row.names()) names.push_back(m_stream.name + "." + name);
  }

  int64 read(int64 begin, int64 end) override {
    const auto next = m_values.lower_bound(begin);
    if (next != m_values.begin()) m_held = std::move(std::prev(next)->second);
    m_values.clear();
    m_byteCount = 0;
    m_current = nullptr;
    std::optional<std::pair<int64, Value>> before;  // of the first window
    try {
      eachFrame([&](int64 frame, const Record& record) {
        if (frame >= end) return !m_isSorted;
        if (frame >= begin) {
          add(frame, frameValue(record));
          end = shortened(end);
        } else if (m_isFirstWindow && (!before || frame >= before->first)) {
          before.emplace(frame, frameValue(record));
        }
        return true;
      });
    } catch (const series::DamagedStream&) {  // known from the first reading
    }
    if (before) m_held = std::move(before->second);
    m_isFirstWindow = false;
    m_next = m_values.begin();
    return end;
  }

  bool changes(int64 frame, double tolerance) override {
    const Value* const value = valueAt(frame);
    return value != nullptr && (!m_kept || !isWithin(*m_kept, *value, tolerance));
  }

  void keep(int64 frame) override {
    if (const Value* const value = valueAt(frame)) m_kept = *value;
  }

  void write(LineRow& row, int64 frame) override {
    if (const Value* const value = valueAt(frame)) {
      describeFrame(row, series::redacted(*value, m_redaction));
    } else {
      std::vector<std::string> names;
      header(names);
      for (std::size_t column = 0; column < names.size(); ++column) row.field("", "");
    }
  }

  void write(JsonRow& row, int64 frame) override {
    if (const Value* const value = valueAt(frame)) {
      row.object(m_stream.name.c_str(), [&](auto& fields) {
        describeFrame(fields, series::redacted(*value, m_redaction));
      });
    } else {
      row.null(m_stream.name.c_str());
    }
  }

 private:
  using Value = std::decay_t<decltype(frameValue(std::declval<const Record&>()))>;

  void add(int64 frame, Value value) {
    Value& held = m_values[frame];
    m_byteCount -= textBytes(held);
    m_byteCount += textBytes(value);
    held = std::move(value);
  }

  // Removes the last frames where the window takes too much memory. Returns where it ends.
  int64 shortened(int64 end) {
    while (m_byteCount > kMaxWindowBytes && m_values.size() > 1) {
      const auto last = std::prev(m_values.end());
      end = last->first;
      m_byteCount -= textBytes(last->second);
      m_values.erase(last);
    }
    return end;
  }

  // The value in force at the frame: before the first keyframe that of the first, null for none.
  const Value* valueAt(int64 frame) {
    for (; m_next != m_values.end() && m_next->first <= frame; ++m_next)
      m_current = &m_next->second;
    if (m_current != nullptr) return m_current;
    if (m_held) return &*m_held;
    return m_first ? &m_first->second : nullptr;
  }

  // The later record of a frame wins, as in the loader.
  template <class Visit>
  void eachFrame(Visit visit) {
    const QuietModule quiet;
    series::forEachRecord<Record>(
        m_parser, m_stream.id, {}, [&](double seconds, const Record& record) {
          const auto frame = loader::frameNumber(m_framesPerSecond, seconds);
          return !frame || visit(*frame, record);
        });
  }

  MetaDataParser& m_parser;
  const ChosenStream m_stream;
  const double m_framesPerSecond;
  std::optional<std::pair<int64, Value>> m_first;
  const series::Redaction m_redaction;
  bool m_isFirstWindow = true;
  std::optional<Value> m_held;      // at the frame before the window
  std::map<int64, Value> m_values;  // of the window, by frame
  std::size_t m_byteCount = 0;      // of the texts in `m_values`
  typename std::map<int64, Value>::const_iterator m_next;
  std::optional<Value> m_kept;       // at the latest kept frame
  const Value* m_current = nullptr;  // the last one in the window that is in force
};

// A stream without records, whose type is not known: one column of empty cells.
class EmptyStream final : public HeldStream {
 public:
  explicit EmptyStream(std::string name) : m_name(std::move(name)) {}

  void header(std::vector<std::string>& names) const override { names.push_back(m_name); }
  int64 read(int64 /*begin*/, int64 end) override { return end; }
  void write(LineRow& row, int64 /*frame*/) override { row.field("", ""); }
  void write(JsonRow& row, int64 /*frame*/) override { row.null(m_name.c_str()); }
  bool changes(int64 /*frame*/, double /*tolerance*/) override { return false; }
  void keep(int64 /*frame*/) override {}

 private:
  const std::string m_name;
};

using HeldStreams = std::vector<std::unique_ptr<HeldStream>>;

struct FrameSpan {
  int64 begin = 0;
  int64 end = 0;
};

FrameSpan spanOf(const FramesOptions& options, const boost::rational<unsigned int>& rate,
                 const HeldStreams& streams) {
  FrameSpan span;
  if (const auto from = parseBound("--from", options.times.from, rate)) {
    span.begin = firstFrameFrom(*from, rate);
  }
  if (const auto to = parseBound("--to", options.times.to, rate)) {
    span.end = firstFrameFrom(*to, rate);
    return span;
  }
  int64 last = -1;
  for (const auto& stream : streams) last = std::max(last, stream->lastFrame().value_or(-1));
  if (last / 2 - span.begin / 2 >= kMaxUnaskedFrames / 2) {
    throw Failure(Status::Failed, options.file + ": the last record is at frame " +
                                      std::to_string(last) + "; use --to to limit the frames");
  }
  span.end = last + 1;
  return span;
}

// What the windows of the span read of all streams, about.
double bytesOfWindows(MetaDataParser& parser, const std::vector<ChosenStream>& chosen,
                      const HeldStreams& streams, const FrameSpan& span) {
  int64 windows = span.end / kWindowFrames - span.begin / kWindowFrames + 1;
  for (const ChosenStream& stream : chosen) {
    if (stream.type != series::recordTypeOf<std::string>()) continue;
    windows += static_cast<int64>(bytesOf(parser, {stream}) / kMaxWindowBytes);
  }
  double count = 0;
  for (std::size_t index = 0; index < chosen.size(); ++index) {
    count += streams[index]->readings(windows) * bytesOf(parser, {chosen[index]});
  }
  return count;
}

// Option --simplify: leaves out frames at which no stream changes.
class FrameFilter {
 public:
  explicit FrameFilter(const std::optional<double>& tolerance) : m_tolerance(tolerance) {}

  bool keeps(int64 frame, const HeldStreams& streams) {
    if (!m_tolerance) return true;
    const bool isKept =
        m_count++ == 0 || std::any_of(streams.begin(), streams.end(), [&](const auto& stream) {
          return stream->changes(frame, *m_tolerance);
        });
    if (!isKept) {
      ++m_leftOutCount;
      return false;
    }
    for (const auto& stream : streams) stream->keep(frame);
    return true;
  }

  void report(const std::string& file) const {
    if (!m_tolerance) return;
    note(fmt::format("{}: {} of {} frames left out", file, m_leftOutCount, m_count));
  }

 private:
  const std::optional<double> m_tolerance;
  std::uint64_t m_count = 0;
  std::uint64_t m_leftOutCount = 0;
};

// One row in either format.
class FrameWriter {
 public:
  FrameWriter(Output& out, Format format, const boost::rational<unsigned int>& rate)
      : m_out(out), m_format(format), m_rate(rate) {}

  void begin(const HeldStreams& streams) {
    if (m_format == Format::Json) {
      m_out.write(fmt::format("{{\"rate\":\"{}/{}\",\"frames\":[", m_rate.numerator(),
                              m_rate.denominator()));
      return;
    }
    std::vector<std::string> names = {"frame", "time", "seconds"};
    for (const auto& stream : streams) stream->header(names);
    const char* before = "";
    for (const std::string& name : names) {
      m_out.write(before + name);
      before = ",";
    }
    m_out.write("\n");
  }

  void write(int64 frame, const HeldStreams& streams) {
    if (m_format == Format::Json) {
      m_out.write(m_isFirst ? "\n" : ",\n");
      JsonRow row(m_out);
      describe(row, frame, streams);
      row.end();
    } else {
      LineRow row(m_format, m_out, m_noWidths);
      describe(row, frame, streams);
      m_out.write("\n");
    }
    m_isFirst = false;
  }

  void end() {
    if (m_format == Format::Json) m_out.write("]}\n");
    m_out.finish();
  }

 private:
  template <class Row>
  void describe(Row& row, int64 frame, const HeldStreams& streams) {
    const auto time = series::reducedFraction(series::int128{frame} * m_rate.denominator(),
                                              series::int128{m_rate.numerator()});
    if (!time) {
      throw Failure(
          Status::Failed,
          fmt::format("frame {} has no time of 64 bits; use --to, or another --rate", frame));
    }
    row.field("frame", frame);
    row.field("time", fmt::format("{}/{}", time->numerator, time->denominator));
    row.field("seconds",
              static_cast<double>(time->numerator) / static_cast<double>(time->denominator));
    for (const auto& stream : streams) stream->write(row, frame);
  }

  Output& m_out;
  const Format m_format;
  const boost::rational<unsigned int> m_rate;
  const ColumnWidths m_noWidths;
  bool m_isFirst = true;
};

}  // namespace

void printFrames(const FramesOptions& options) {
  const auto rate = parseRate(options.times.rate);
  parseBound("--from", options.times.from, rate);
  parseBound("--to", options.times.to, rate);
  const auto parser = openRecording(options.file, options.container);
  requireOtherFile(options.out.file, options.file);
  HeldStreams streams;
  const auto chosen = chooseStreams(*parser, options.file, options.streams, options.types);
  requireMasks(*parser, options.file, chosen, options.redaction);
  std::optional<Progress> progress(std::in_place, options.file, bytesOf(*parser, chosen));
  for (const ChosenStream& stream : chosen) {
    if (stream.isEmpty) {
      streams.push_back(std::make_unique<EmptyStream>(stream.name));
      continue;
    }
    series::visitRecordType(stream.type, [&](const auto& row) {
      using Record = typename std::decay_t<decltype(row)>::type;
      streams.push_back(std::make_unique<HeldRecords<Record>>(
          *parser, options.file, stream, loader::framesPerSecond(rate), options.redaction));
    });
  }
  const FrameSpan span = spanOf(options, rate, streams);
  progress.emplace(options.file, bytesOfWindows(*parser, chosen, streams, span));
  Output out(options.out);
  FrameWriter writer(out, options.format, rate);
  FrameFilter filter(options.tolerance);
  writer.begin(streams);
  for (int64 begin = span.begin; begin < span.end;) {
    // Halved, because the difference may not fit.
    const bool isLong = span.end / 2 - begin / 2 > kWindowFrames / 2;
    int64 end = isLong ? begin + kWindowFrames : span.end;
    for (const auto& stream : streams) end = stream->read(begin, end);
    for (; begin < end; ++begin) {
      if (filter.keeps(begin, streams)) writer.write(begin, streams);
    }
  }
  writer.end();
  filter.report(options.file);
  Damages damages;
  for (const auto& stream : streams) damages.add(stream->damage());
  damages.throwIfAny();
}

}  // namespace voxa
