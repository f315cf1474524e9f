#include <cmath>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "tools/keep/EditListFile.h"

namespace keep {

using nlohmann::json;
using series::ExactSeconds;

namespace {

// "Clip" of "Clip.2".
std::string schemaOf(const json& object) {
  const std::string schema = object.at("OTIO_SCHEMA").get<std::string>();
  return schema.substr(0, schema.find('.'));
}

std::string nameOf(const json& object) {
  const auto name = object.find("name");
  return name != object.end() && name->is_string() ? name->get<std::string>() : std::string();
}

const json* memberOf(const json& object, const char* name) {
  const auto member = object.find(name);
  return member == object.end() || member->is_null() ? nullptr : &*member;
}

// A double as the fraction that it is.
ExactSeconds fractionOf(double number) {
  ExactSeconds fraction;
  while (number != std::round(number) && fraction.denominator < (1LL << 40)) {
    number *= 2;
    fraction.denominator *= 2;
  }
  constexpr double kMax = 0x1p62;
  if (!(std::abs(number) < kMax)) throw std::invalid_argument("a time is out of range");
  fraction.numerator = static_cast<ZRKMetaData::int64>(std::round(number));
  return fraction;
}

// The rate of NTSC that a double rounds (24000/1001 for 23.976), or the double itself.
ExactSeconds unitsPerSecond(double rate) {
  constexpr double kMaxFrameRate = 1000;  // rates of sound are above
  const double thousands = std::round(rate * 1.001) * 1000;
  if (rate < kMaxFrameRate && rate != std::round(rate) &&
      std::abs(thousands / 1001 - rate) < 1e-5 * rate) {
    return {static_cast<ZRKMetaData::int64>(thousands), 1001};
  }
  return fractionOf(rate);
}

// RationalTime: a number of units, and units per second.
ExactSeconds timeOf(const json& time) {
  const double rate = time.at("rate").get<double>();
  if (!(rate > 0)) throw std::invalid_argument("a time has the rate " + std::to_string(rate));
  const ExactSeconds perSecond = unitsPerSecond(rate);
  const double units = time.at("value").get<double>();
  if (units == std::round(units) && std::abs(units) < 0x1p31 && perSecond.denominator <= 1001) {
    const auto count = static_cast<ZRKMetaData::int64>(units);
    return series::plus({count * perSecond.denominator, perSecond.numerator}, {});
  }
  return fractionOf(units / rate);
}

struct Range {
  ExactSeconds start;
  ExactSeconds duration;
};

Range rangeOf(const json& range) {
  return {timeOf(range.at("start_time")), timeOf(range.at("duration"))};
}

const json* mediaOf(const json& clip) {
  if (const json* const media = memberOf(clip, "media_reference")) return media;
  const json* const all = memberOf(clip, "media_references");
  if (all == nullptr) return nullptr;
  return memberOf(*all, clip.value("active_media_reference_key", "DEFAULT_MEDIA").c_str());
}

void requireNormalSpeed(const json& item) {
  const json* const effects = memberOf(item, "effects");
  if (effects == nullptr) return;
  for (const json& effect : *effects) {
    const std::string schema = schemaOf(effect);
    if (schema == "LinearTimeWarp" || schema == "FreezeFrame" || schema == "TimeEffect") {
      throw std::invalid_argument("clip " + nameOf(item) + ": changes of speed are not read");
    }
  }
}

bool hasClips(const json& track) {
  for (const json& child : track.at("children")) {
    if (schemaOf(child) != "Gap" && schemaOf(child) != "Transition") return true;
  }
  return false;
}

const json& trackOf(const json& timeline) {
  std::vector<const json*> video;
  std::vector<const json*> all;
  for (const json& track : timeline.at("tracks").at("children")) {
    if (schemaOf(track) != "Track" || !hasClips(track)) continue;
    all.push_back(&track);
    if (track.value("kind", "") == "Video") video.push_back(&track);
  }
  const auto& tracks = video.empty() ? all : video;
  if (tracks.size() != 1) {
    throw std::invalid_argument(std::to_string(tracks.size()) +
                                " tracks have clips; one can be followed");
  }
  return *tracks.front();
}

}  // namespace

std::vector<EditEvent> readOtio(const std::string& text) {
  std::vector<EditEvent> events;
  try {
    const json timeline = json::parse(text);
    if (schemaOf(timeline) != "Timeline") throw std::invalid_argument("is no Timeline");
    ExactSeconds at;
    for (const json& child : trackOf(timeline).at("children")) {
      const std::string schema = schemaOf(child);
      if (schema == "Transition") continue;
      if (schema != "Clip" && schema != "Gap") {
        throw std::invalid_argument("a " + schema + " in the track cannot be followed");
      }
      requireNormalSpeed(child);
      const json* const media = schema == "Clip" ? mediaOf(child) : nullptr;
      const json* const available =
          media == nullptr ? nullptr : memberOf(*media, "available_range");
      const json* const used = memberOf(child, "source_range");
      if (used == nullptr && available == nullptr) {
        throw std::invalid_argument("clip " + nameOf(child) + ": no range is stated");
      }
      const Range range = rangeOf(used != nullptr ? *used : *available);
      const ExactSeconds origin = available != nullptr ? rangeOf(*available).start : ExactSeconds();
      if (schema == "Clip" && child.value("enabled", true)) {
        const json* const url = media == nullptr ? nullptr : memberOf(*media, "target_url");
        const ExactSeconds from = series::minus(range.start, origin);
        events.push_back({url != nullptr ? url->get<std::string>() : nameOf(child),
                          {from, series::plus(from, range.duration), at}});
      }
      at = series::plus(at, range.duration);
    }
  } catch (const json::exception& error) {
    throw std::invalid_argument(error.what());
  }
  return events;
}

}  // namespace keep
