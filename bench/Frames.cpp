#include "bench/Frames.h"

#include <algorithm>

namespace bench {

namespace {

// Numbers that look random and are the same everywhere.
class Dice {
 public:
  std::int64_t below(std::int64_t bound) {
    m_state = m_state * 6364136223846793005 + 1442695040888963407;
    return static_cast<std::int64_t>(m_state >> 33U) % bound;
  }

 private:
  std::uint64_t m_state = 1;
};

}  // namespace

std::vector<std::int64_t> keyedFrames(std::int64_t count, Order order) {
  std::vector<std::int64_t> frames;
  frames.reserve(static_cast<std::size_t>(count));
  for (std::int64_t frame = 0; frame < count; ++frame) frames.push_back(kStep * frame);
  if (order == Order::Falling) std::reverse(frames.begin(), frames.end());
  if (order == Order::Shuffled) {
    Dice dice;
    for (std::int64_t left = count; left > 1; --left) {
      std::swap(frames[static_cast<std::size_t>(left - 1)],
                frames[static_cast<std::size_t>(dice.below(left))]);
    }
  }
  return frames;
}

std::vector<std::int64_t> askedFrames(std::int64_t count) {
  Dice dice;
  std::vector<std::int64_t> frames(static_cast<std::size_t>(count));
  for (std::int64_t& frame : frames) frame = dice.below(kStep * count);
  return frames;
}

}  // namespace bench
