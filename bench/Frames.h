// The frames that keyframes stand at, and the order in which they come.
#pragma once

#include <cstdint>
#include <vector>

namespace bench {

enum class Order { Rising, Falling, Shuffled };

/// Every other frame is keyed, so that half of the frames lie between two keyframes.
constexpr std::int64_t kStep = 2;

/// The frames of so many keyframes, from 0 on. The same on every platform.
std::vector<std::int64_t> keyedFrames(std::int64_t count, Order order);

/// So many frames to ask for, at random among those of `count` keyframes.
std::vector<std::int64_t> askedFrames(std::int64_t count);

}  // namespace bench
