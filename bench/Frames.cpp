#include "bench/Frames.h"

#include <algorithm>
#include <utility>

#include "tools/recording/Dice.h"

namespace bench {

std::vector<std::int64_t> keyedFrames(std::int64_t count, Order order) {
  std::vector<std::int64_t> frames;
  frames.reserve(static_cast<std::size_t>(count));
  for (std::int64_t frame = 0; frame < count; ++frame) frames.push_back(kStep * frame);
  if (order == Order::Falling) std::reverse(frames.begin(), frames.end());
  if (order == Order::Shuffled) {
    recording::Dice dice(1);
    for (std::int64_t left = count; left > 1; --left) {
      std::swap(frames[static_cast<std::size_t>(left - 1)],
                frames[static_cast<std::size_t>(dice.below(static_cast<int>(left)))]);
    }
  }
  return frames;
}

std::vector<std::int64_t> randomFrames(std::int64_t count) {
  recording::Dice dice(1);
  std::vector<std::int64_t> frames(static_cast<std::size_t>(count));
  for (std::int64_t& frame : frames) frame = dice.below(static_cast<int>(kStep * count));
  return frames;
}

}  // namespace bench
