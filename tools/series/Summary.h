// The content of a recording, stream by stream: the facts that `voxa info` prints and a report
// shows.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/series/RecordTypes.h"
#include "tools/series/TimeRange.h"

namespace series {

/// One indexed stream. A plain value.
struct StreamSummary {
  boost::uuids::uuid id{};
  std::string key;  ///< two hexadecimal digits
  bool isKnown = false;
  ZRKMetaData::MetaDataLocation location;
  ZRKMetaData::int32 version = 0;

  /// The type that the caller named or that is certain; none where it is unknown, as it is of a
  /// stream without records.
  std::optional<RecordType> type;
  bool isGuessed = false;  ///< nobody named the type
  std::string candidates;  ///< where the type is unknown: "ints or points"; empty for no candidate
  bool isEmpty = false;    ///< there are no records

  // Known where the type is, or the stream is empty.
  std::uint64_t recordCount = 0;
  std::uint64_t fallingTimes = 0;  ///< records whose time is below the one before
  std::uint64_t nonFiniteTimes = 0;
  std::optional<double> first;  ///< the least finite time, in seconds
  std::optional<double> last;   ///< the greatest finite time, in seconds
  std::string damage;           ///< why reading ended early, with the place; empty for no damage

  std::string slot;  ///< the host's slot, empty for none; see voxa::summarise

  bool hasRecords() const { return type.has_value() || isEmpty; }

  /// From the first to the last time, in seconds.
  std::optional<double> duration() const;

  /// Records per second of the duration, or none where that is 0.
  std::optional<double> meanRate() const;
};

/// One media track, as the host sees it. A plain value.
struct TrackSummary {
  int index = 0;
  std::string kind;               ///< "video", "audio" or "other"
  std::string tag;                ///< "screen", "camera", or empty
  std::string rate;               ///< time units per second: "600" or "30000/1001"
  std::optional<double> seconds;  ///< duration
  int width = 0;                  ///< pixels, 0 where there is no picture
  int height = 0;
  int sampleRate = 0;  ///< samples per second, 0 where there is no sound
  int channelCount = 0;
  int bitsPerSample = 0;
};

/// The last element of a file name, to stand as a title.
std::string titleOf(const std::string& file);

/// One file. A plain value.
struct RecordingSummary {
  std::string file;       ///< as the caller names it
  std::string container;  ///< "Riff", "Atoms", "Raw" or "None"
  std::uint64_t byteCount = 0;
  std::vector<StreamSummary> streams;  ///< in the order of the scope
  std::vector<TrackSummary> tracks;
  std::vector<std::string> warnings;  ///< sentences for people

  /// Of the longest track, or without tracks from 0 to the last record, in seconds.
  std::optional<double> duration() const;

  bool isCut = false;  ///< its last structure ends beyond the file (Overrun.h)

  /// The file is cut, or some stream ends in damage.
  bool isDamaged() const;

  /// The first screen track with a picture, or null.
  const TrackSummary* screen() const;
};

/// Types that the user names, which take the place of a guess.
using NamedTypes = std::map<boost::uuids::uuid, RecordType>;

/// What a summary covers.
struct SummaryScope {
  std::vector<boost::uuids::uuid> streams;  ///< indexed ones
  TimeRange range;                          ///< records outside of it are not counted
  NamedTypes types;
};

/// Reads each stream of the scope once, and describes it and what is wrong with it. `slot` and
/// `tracks` stay empty: they are the host's. Damage is described, not thrown. Messages
/// of the parser go to std::cout. Call it from the thread that uses the parser.
RecordingSummary summariseStreams(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                                  const SummaryScope& scope);

}  // namespace series
