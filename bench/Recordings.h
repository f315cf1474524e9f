// The recordings of the benchmarks. Each is written on first use in a process. The files are kept,
// so that whole programs can be measured on them afterwards.
#pragma once

#include <cstdint>
#include <string>

#include "bench/Frames.h"

namespace bench {

/// Frames per second of the project. Records lie on its frames.
constexpr unsigned kEditRate = 60;

/// dense-COUNT.voxa: `count` atoms of 31 bytes, then one metadata block.
std::string denseRecording(std::int64_t count);

/// sparse-COUNT.voxa: `count` atoms in a sparse file of 8 GiB, then one metadata block.
std::string sparseRecording(std::int64_t count);

/// Recordings of one stream. Points and ints are whole pixels, doubles have many digits.
enum class Stream { Points, Doubles, Ints, Strings };

/// KIND-ORDER-COUNT.voxa: `count` records. Strings have 20 characters.
std::string recordingOf(Stream stream, Order order, std::int64_t count);

/// The name of the recording that `recordingOf` wrote in another process, for one that measures
/// what it takes itself. Throws std::runtime_error if there is none.
std::string writtenRecording(Stream stream, Order order, std::int64_t count);

/// The stream file name for a loader, of a file of `recordingOf`.
std::string streamFileName(const std::string& recording);
std::string streamFileName(Stream stream, Order order, std::int64_t count);

/// The value of the keyframe at a frame.
std::int32_t pixelAt(std::int64_t frame);
double opacityAt(std::int64_t frame);

}  // namespace bench
