// The frames of keyframes, and their order in a recording.
#pragma once

#include <cstdint>
#include <vector>

namespace bench {

enum class Order { Rising, Falling, Shuffled };

/// Every second frame has a keyframe, so that half of the frames lie between two keyframes.
constexpr std::int64_t kStep = 2;

/// The frames of `count` keyframes, from 0 on. The same on every platform.
std::vector<std::int64_t> keyedFrames(std::int64_t count, Order order);

/// `count` random frames in the range of `count` keyframes.
std::vector<std::int64_t> randomFrames(std::int64_t count);

}  // namespace bench
