// The recordings that are measured. Each is written when it is first asked for in a process, into
// one folder that is kept, so that whole programs can be run on the same files afterwards.
#pragma once

#include <cstdint>
#include <string>

#include "bench/Frames.h"

namespace bench {

/// Frames per second of the project whose grid the records stand on.
constexpr unsigned kEditRate = 60;

/// dense-COUNT.voxa: so many small atoms, 31 bytes each, and one metadata block behind them.
std::string denseRecording(std::int64_t count);

/// sparse-COUNT.voxa: so many atoms over 8 GiB, their payloads holes, and one metadata block.
std::string sparseRecording(std::int64_t count);

/// Recordings of nothing but one stream of so many records. Their values are what a cursor has:
/// whole pixels, an opacity with many digits, pressed buttons.
enum class Stream { Points, Doubles, Ints, Strings };

/// The file: KIND-ORDER-COUNT.voxa. Strings have 20 characters.
std::string recordingOf(Stream stream, Order order, std::int64_t count);

/// What a loader calls the stream in it.
std::string streamFileName(Stream stream, Order order, std::int64_t count);

/// The values of the keyframe at a frame.
std::int32_t pixelAt(std::int64_t frame);
double opacityAt(std::int64_t frame);

}  // namespace bench
