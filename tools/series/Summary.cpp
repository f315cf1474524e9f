#include "tools/series/Summary.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "text/Counted.h"
#include "tools/series/Containers.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/Guess.h"
#include "tools/series/Overrun.h"
#include "tools/series/RecordStream.h"

namespace series {

using text::counted;
using ZRKMetaData::MetaDataParser;
using ZRKMetaData::MetaDataUUID;

namespace {

std::string listOf(const Guess& guess) {
  std::string list;
  for (std::size_t i = 0; i < guess.candidates.size(); ++i) {
    if (!guess.candidates[i].passes) continue;
    if (!list.empty()) list += " or ";
    list += infoOf(guess.candidates[i].type).name;
  }
  return list;
}

void findType(MetaDataParser& parser, const NamedTypes& types, StreamSummary& stream) {
  const auto named = types.find(stream.id);
  if (named != types.end()) {
    stream.type = named->second;
    return;
  }
  const Guess guess = guessRecordType(parser, stream.id);
  stream.isGuessed = true;
  stream.isEmpty = guess.isEmpty;
  stream.type = guess.isEmpty ? std::nullopt : guess.certainType();
  if (!stream.hasRecords()) stream.candidates = listOf(guess);
}

void readRecords(MetaDataParser& parser, const TimeRange& range, StreamSummary& stream) {
  double before = -HUGE_VAL;
  const auto count = [&](double seconds, const auto& /*record*/) {
    ++stream.recordCount;
    if (!std::isfinite(seconds)) {
      ++stream.nonFiniteTimes;
      return;
    }
    if (seconds < before) ++stream.fallingTimes;
    before = seconds;
    stream.first = std::min(stream.first.value_or(seconds), seconds);
    stream.last = std::max(stream.last.value_or(seconds), seconds);
  };
  try {
    forEachRecord(parser, stream.id, *stream.type, range, count);
  } catch (const DamagedStream& damage) {
    stream.damage =
        damage.reason() + " at byte " + std::to_string(damage.byteOffset()) + " of the file";
  }
}

void warn(const StreamSummary& stream, const EntryExtent& extent, bool isRefused,
          std::vector<std::string>& warnings) {
  const auto add = [&](const std::string& text) { warnings.push_back(stream.key + ": " + text); };
  if (extent.isCut()) add(extent.cutText());
  if (isRefused) {
    add("version " + std::to_string(stream.version) + " is not supported; no records are read");
  } else if (!stream.hasRecords()) {
    add(stream.candidates.empty()
            ? "no record type fits; name one with --as " + stream.key + "=TYPE"
            : "the type could be " + stream.candidates + "; name it with --as " + stream.key +
                  "=TYPE");
  }
  if (!stream.damage.empty()) {
    add("damaged after " + counted(stream.recordCount, "record") + ": " + stream.damage);
  }
  if (stream.fallingTimes != 0) {
    add(counted(stream.fallingTimes, "record") + " earlier than the record before");
  }
  if (stream.nonFiniteTimes != 0) {
    add(counted(stream.nonFiniteTimes, "record") + " without a finite time");
  }
}

}  // namespace

std::optional<double> StreamSummary::duration() const {
  if (!first) return std::nullopt;
  return *last - *first;
}

std::optional<double> StreamSummary::meanRate() const {
  const double seconds = duration().value_or(0);
  const std::uint64_t timed = recordCount - nonFiniteTimes;
  if (timed < 2 || !(seconds > 0)) return std::nullopt;
  return static_cast<double>(timed - 1) / seconds;
}

std::string titleOf(const std::string& file) {
  return file.substr(file.find_last_of("/\\") + 1);
}

std::optional<double> RecordingSummary::duration() const {
  std::optional<double> longest;
  for (const TrackSummary& track : tracks) {
    if (track.seconds) longest = std::max(longest.value_or(0), *track.seconds);
  }
  if (longest) return longest;
  for (const StreamSummary& stream : streams) {
    if (stream.last) longest = std::max(longest.value_or(0), *stream.last);
  }
  return longest;
}

bool RecordingSummary::isDamaged() const {
  return isCut || std::any_of(streams.begin(), streams.end(),
                              [](const StreamSummary& stream) { return !stream.damage.empty(); });
}

const TrackSummary* RecordingSummary::screen() const {
  const auto found = std::find_if(tracks.begin(), tracks.end(), [](const TrackSummary& track) {
    return track.tag == "screen" && track.width > 0 && track.height > 0;
  });
  return found == tracks.end() ? nullptr : &*found;
}

RecordingSummary summariseStreams(MetaDataParser& parser, const std::string& file,
                                  const SummaryScope& scope) {
  RecordingSummary recording;
  recording.file = file;
  recording.container = containerName(parser.containerKind());
  recording.byteCount = static_cast<std::uint64_t>(sizeOfSource(parser.stream()));
  const auto overrun = findOverrun(parser.stream(), parser.containerKind(), parser.locations());
  if (overrun) {
    recording.isCut = true;
    recording.warnings.push_back(overrun->text());
  }
  recording.streams.reserve(scope.streams.size());
  for (const auto& id : scope.streams) {
    const ZRKMetaData::MetaDataLocation location = parser.locations().at(id);
    StreamSummary stream;
    stream.id = id;
    stream.key = MetaDataUUID::shortKey(id);
    stream.isKnown = MetaDataUUID::isKnown(id);
    stream.location = location;
    stream.version = ZRKMetaData::readHeaderAt(parser.stream(), location.offset).version;
    findType(parser, scope.types, stream);
    if (stream.type) readRecords(parser, scope.range, stream);
    warn(stream, entryExtent(parser, location), refusedVersion(parser, id).has_value(),
         recording.warnings);
    recording.streams.push_back(std::move(stream));
  }
  return recording;
}

}  // namespace series
