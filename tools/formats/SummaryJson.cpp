#include "tools/formats/SummaryJson.h"

#include <boost/uuid/uuid_io.hpp>
#include <utility>

namespace formats {

namespace {

using Json = nlohmann::ordered_json;
using series::StreamSummary;
using series::TrackSummary;

template <class Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

Json orNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json trackJson(const TrackSummary& track) {
  return {{"index", track.index},
          {"kind", track.kind},
          {"tag", orNull(track.tag)},
          {"rate", track.rate},
          {"seconds", orNull(track.seconds)},
          {"width", track.width},
          {"height", track.height},
          {"sampleRate", track.sampleRate},
          {"channelCount", track.channelCount},
          {"bitsPerSample", track.bitsPerSample}};
}

Json streamJson(const StreamSummary& stream) {
  return {{"id", boost::uuids::to_string(stream.id)},
          {"key", stream.key},
          {"known", stream.isKnown},
          {"type", stream.type ? Json(infoOf(*stream.type).name) : Json()},
          {"guessed", stream.isGuessed},
          {"candidates", stream.candidates},
          {"records", stream.hasRecords() ? Json(stream.recordCount) : Json()},
          {"first", orNull(stream.first)},
          {"last", orNull(stream.last)},
          {"duration", orNull(stream.duration())},
          {"meanRate", orNull(stream.meanRate())},
          {"offset", stream.location.offset},
          {"bytes", stream.location.size},
          {"version", stream.version},
          {"slot", orNull(stream.slot)},
          {"damage", orNull(stream.damage)}};
}

}  // namespace

Json summaryJson(const series::RecordingSummary& recording) {
  const TrackSummary* const screen = recording.screen();
  Json tracks = Json::array();
  for (const TrackSummary& track : recording.tracks) tracks.push_back(trackJson(track));
  Json streams = Json::array();
  for (const StreamSummary& stream : recording.streams) streams.push_back(streamJson(stream));
  return {{"file", recording.file},
          {"container", recording.container},
          {"bytes", recording.byteCount},
          {"duration", orNull(recording.duration())},
          {"screen",
           screen == nullptr ? Json() : Json{{"width", screen->width}, {"height", screen->height}}},
          {"tracks", std::move(tracks)},
          {"streams", std::move(streams)},
          {"warnings", recording.warnings}};
}

std::string jsonText(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace formats
