// Generates a plausible screen recording: a person moves the cursor, types and changes windows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/recording/Container.h"

namespace recording {

/// The record types that a sample has a stream of, by their names on the command line:
/// ints doubles int64s strings keystrokes points rects cursor-images.
const std::vector<std::string>& sampleTypes();

/// Cursor positions per second.
constexpr int kSamplesPerSecond = 60;

/// Generates the stream of one type, `seconds` long. The same seed gives the same bytes on every
/// platform. Throws std::invalid_argument for a type that `sampleTypes` does not name.
Entry sampleEntry(std::string_view type, double seconds, std::uint64_t seed);

/// One stream of every type, in the order of `sampleTypes`.
std::vector<Entry> sampleEntries(double seconds, std::uint64_t seed);

}  // namespace recording
