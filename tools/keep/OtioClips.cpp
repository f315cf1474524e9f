#include <algorithm>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "tools/keep/EditListFile.h"

namespace keep {

using nlohmann::json;
using series::ExactSeconds;

namespace {

const json* memberOf(const json& object, const char* name) {
  const auto member = object.find(name);
  return member == object.end() || member->is_null() ? nullptr : &*member;
}

// Empty where there is none.
std::string textOf(const json& object, const char* name) {
  const json* const text = memberOf(object, name);
  return text != nullptr && text->is_string() ? text->get<std::string>() : std::string();
}

// "Clip" of "Clip.2".
std::string schemaOf(const json& object) {
  const std::string schema = textOf(object, "OTIO_SCHEMA");
  return schema.substr(0, schema.find('.'));
}

// As messages call the object: "Clip c".
std::string labelOf(const json& object) {
  const std::string name = textOf(object, "name");
  return schemaOf(object) + (name.empty() ? "" : " " + name);
}

bool isEnabled(const json& object) {
  const json* const enabled = memberOf(object, "enabled");
  return enabled == nullptr || !enabled->is_boolean() || enabled->get<bool>();
}

const json& requiredMember(const json& object, const char* name, const std::string& label) {
  const json* const member = memberOf(object, name);
  if (member == nullptr) throw std::invalid_argument(label + " has no " + name);
  return *member;
}

double numberOf(const json& object, const char* name, const std::string& label) {
  const json& number = requiredMember(object, name, label);
  if (!number.is_number()) {
    throw std::invalid_argument(label + " has a " + name + " that is no number");
  }
  return number.get<double>();
}

const json& childrenOf(const json& object, const std::string& label) {
  const json& children = requiredMember(object, "children", label);
  if (!children.is_array()) throw std::invalid_argument(label + " has children that are no list");
  return children;
}

// A double as the fraction that it is.
ExactSeconds fractionOf(double number, const std::string& label) {
  ExactSeconds fraction;
  while (number != std::round(number) && fraction.denominator < (1LL << 40)) {
    number *= 2;
    fraction.denominator *= 2;
  }
  constexpr double kMax = 0x1p62;
  if (!(std::abs(number) < kMax)) throw std::invalid_argument(label + " is out of range");
  fraction.numerator = static_cast<ZRKMetaData::int64>(std::round(number));
  return fraction;
}

// The rate of NTSC that a double rounds (24000/1001 for 23.976), or the double itself.
ExactSeconds unitsPerSecond(double rate, const std::string& label) {
  constexpr double kMaxFrameRate = 1000;  // rates of sound are above
  const double thousands = std::round(rate * 1.001) * 1000;
  if (rate < kMaxFrameRate && rate != std::round(rate) &&
      std::abs(thousands / 1001 - rate) < 1e-5 * rate) {
    return {static_cast<ZRKMetaData::int64>(thousands), 1001};
  }
  return fractionOf(rate, label);
}

// RationalTime: a number of units, and units per second.
ExactSeconds timeOf(const json& time, const std::string& label) {
  const double rate = numberOf(time, "rate", label);
  if (!(rate > 0)) throw std::invalid_argument(label + " has the rate " + std::to_string(rate));
  const ExactSeconds perSecond = unitsPerSecond(rate, label);
  const double units = numberOf(time, "value", label);
  if (units == std::round(units) && std::abs(units) < 0x1p31 && perSecond.denominator <= 1001) {
    const auto count = static_cast<ZRKMetaData::int64>(units);
    return series::plus({count * perSecond.denominator, perSecond.numerator}, {});
  }
  return fractionOf(units / rate, label);
}

struct Range {
  ExactSeconds start;
  ExactSeconds duration;
};

// `label` names the range.
Range rangeOf(const json& range, const std::string& label) {
  const auto timeAt = [&](const char* name) {
    return timeOf(requiredMember(range, name, label), label + ": the " + name);
  };
  const Range times{timeAt("start_time"), timeAt("duration")};
  if (times.duration.numerator < 0) throw std::invalid_argument(label + " has a negative duration");
  return times;
}

const json* mediaOf(const json& clip) {
  if (const json* const media = memberOf(clip, "media_reference")) return media;
  const json* const all = memberOf(clip, "media_references");
  if (all == nullptr) return nullptr;
  const std::string key = textOf(clip, "active_media_reference_key");
  return memberOf(*all, key.empty() ? "DEFAULT_MEDIA" : key.c_str());
}

bool changesSpeed(const json& effect) {
  const std::string schema = schemaOf(effect);
  if (schema == "LinearTimeWarp") {
    const json* const scalar = memberOf(effect, "time_scalar");
    return scalar == nullptr || !scalar->is_number() || scalar->get<double>() != 1;
  }
  return schema == "FreezeFrame" || schema == "TimeEffect";
}

void requireNormalSpeed(const json& item) {
  const json* const effects = memberOf(item, "effects");
  if (effects == nullptr) return;
  for (const json& effect : *effects) {
    if (changesSpeed(effect)) {
      throw std::invalid_argument(labelOf(item) + ": changes of speed are not read");
    }
  }
}

// Of a track or the stack of them, which would change the times of all clips.
void requireWhole(const json& item) {
  requireNormalSpeed(item);
  if (memberOf(item, "source_range") != nullptr) {
    throw std::invalid_argument(labelOf(item) +
                                " has a source_range, which is not read; trim its clips");
  }
}

bool hasClips(const json& track) {
  for (const json& child : childrenOf(track, labelOf(track))) {
    if (schemaOf(child) != "Gap" && schemaOf(child) != "Transition") return true;
  }
  return false;
}

const json& trackOf(const json& timeline) {
  const json& stack = requiredMember(timeline, "tracks", labelOf(timeline));
  std::vector<const json*> video;
  std::vector<const json*> all;
  for (const json& track : childrenOf(stack, labelOf(stack))) {
    if (schemaOf(track) != "Track" || !isEnabled(track) || !hasClips(track)) continue;
    all.push_back(&track);
    if (textOf(track, "kind") == "Video") video.push_back(&track);
  }
  const auto& tracks = video.empty() ? all : video;
  if (tracks.empty()) throw std::invalid_argument("no track that is enabled has clips");
  if (tracks.size() != 1) {
    throw std::invalid_argument(std::to_string(tracks.size()) +
                                " tracks have clips; one can be followed, so disable the others");
  }
  requireWhole(stack);
  requireWhole(*tracks.front());
  return *tracks.front();
}

json timelineOf(const std::string& text) {
  json timeline;
  try {
    timeline = json::parse(text);
  } catch (const json::parse_error& error) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
    throw std::invalid_argument("line " + std::to_string(1 + std::count(text.begin(), end, '\n')) +
                                ": the text is no JSON from here on");
  } catch (const json::exception&) {
    throw std::invalid_argument("a number in the JSON text is out of range");
  }
  const std::string schema = schemaOf(timeline);
  if (schema != "Timeline") {
    throw std::invalid_argument((schema.empty() ? "the outermost object has no OTIO_SCHEMA"
                                                : "the outermost object is a " + schema) +
                                "; a Timeline of OpenTimelineIO is read");
  }
  return timeline;
}

}  // namespace

std::vector<EditEvent> readOtio(const std::string& text) {
  std::vector<EditEvent> events;
  const json timeline = timelineOf(text);
  const json& track = trackOf(timeline);
  ExactSeconds at;
  for (const json& child : track.at("children")) {
    const std::string schema = schemaOf(child);
    if (schema == "Transition") continue;
    if (schema != "Clip" && schema != "Gap") {
      throw std::invalid_argument(
          labelOf(track) + (schema.empty() ? " has a child without an OTIO_SCHEMA"
                                           : " has a " + schema + ", which cannot be followed"));
    }
    requireNormalSpeed(child);
    const std::string label = labelOf(child);
    const json* const media = schema == "Clip" ? mediaOf(child) : nullptr;
    const json* const available = media == nullptr ? nullptr : memberOf(*media, "available_range");
    const json* const used = memberOf(child, "source_range");
    if (used == nullptr && available == nullptr) {
      throw std::invalid_argument(label + " has neither source_range nor available_range");
    }
    std::optional<Range> whole;
    if (available != nullptr) whole = rangeOf(*available, label + ": the available_range");
    const Range range = used != nullptr ? rangeOf(*used, label + ": the source_range") : *whole;
    if (schema == "Clip" && isEnabled(child)) {
      const std::string url = media == nullptr ? std::string() : textOf(*media, "target_url");
      const ExactSeconds from = whole ? series::minus(range.start, whole->start) : range.start;
      events.push_back({url.empty() ? textOf(child, "name") : url,
                        {from, series::plus(from, range.duration), at},
                        0});
    }
    at = series::plus(at, range.duration);
  }
  return events;
}

}  // namespace keep
