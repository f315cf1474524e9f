// A recording's summary as JSON: what `voxa info --format json` prints and a report carries.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/series/Summary.h"

namespace formats {

/// Members in the order of this list; absent values are null, times and durations are seconds.
///   file, container, bytes, duration, screen {width, height},
///   tracks [{index, kind, tag, rate, seconds, width, height, sampleRate, channelCount,
///            bitsPerSample}],
///   streams [{id, key, known, type, guessed, candidates, records, first, last, duration, meanRate,
///             offset, bytes, version, slot, damage}],
///   warnings [text]
nlohmann::ordered_json summaryJson(const series::RecordingSummary& recording);

/// One line of text; bytes that are not UTF-8 become U+FFFD.
std::string jsonText(const nlohmann::ordered_json& json);

}  // namespace formats
