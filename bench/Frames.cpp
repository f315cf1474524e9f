#include "bench/Frames.h"

#include <algorithm>
#include <random>

namespace bench {

namespace {

std::int64_t below(std::int64_t bound, std::mt19937_64& dice) {
  return static_cast<std::int64_t>(dice() % static_cast<std::uint64_t>(bound));
}

}  // namespace

std::vector<std::int64_t> keyedFrames(std::int64_t count, Order order) {
  std::vector<std::int64_t> frames;
  frames.reserve(static_cast<std::size_t>(count));
  for (std::int64_t frame = 0; frame < count; ++frame) frames.push_back(kStep * frame);
  if (order == Order::Falling) std::reverse(frames.begin(), frames.end());
  if (order == Order::Shuffled) {
    std::mt19937_64 dice(1);
    for (std::int64_t left = count; left > 1; --left) {
      std::swap(frames[static_cast<std::size_t>(left - 1)],
                frames[static_cast<std::size_t>(below(left, dice))]);
    }
  }
  return frames;
}

std::vector<std::int64_t> askedFrames(std::int64_t count) {
  std::mt19937_64 dice(2);
  std::vector<std::int64_t> frames(static_cast<std::size_t>(count));
  for (std::int64_t& frame : frames) frame = below(kStep * count, dice);
  return frames;
}

}  // namespace bench
