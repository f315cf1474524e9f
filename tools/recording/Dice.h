// Pseudo-random numbers that are the same on every platform.
#pragma once

#include <cstdint>
#include <random>

namespace recording {

/// The standard library specifies the sequence of its engines, but not that of its distributions,
/// which are therefore not used.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : m_engine(seed) {}

  /// 64 random bits.
  std::uint64_t bits() { return m_engine(); }

  /// From 0 to `bound` - 1. Requires: `bound` is positive.
  int below(int bound) { return static_cast<int>(bits() % static_cast<std::uint64_t>(bound)); }

  /// From `low` to `high`, exclusive.
  double between(double low, double high) {
    return low + (high - low) * (static_cast<double>(bits() >> 11U) * 0x1p-53);
  }

 private:
  std::mt19937_64 m_engine;
};

}  // namespace recording
