#include "tools/series/ExactFraction.h"

#include <limits>

namespace series {

std::optional<ExactFraction> reducedFraction(int128 numerator, int128 denominator) {
  int128 divisor = denominator;  // Euclid; std::gcd refuses 128 bits in strict modes
  for (int128 rest = numerator < 0 ? -numerator : numerator; rest != 0;) {
    const int128 next = divisor % rest;
    divisor = rest;
    rest = next;
  }
  numerator /= divisor;
  denominator /= divisor;
  using ZRKMetaData::int64;
  constexpr int64 kMax = std::numeric_limits<int64>::max();
  if (numerator > kMax || numerator < -kMax || denominator > kMax) return std::nullopt;
  return ExactFraction{static_cast<int64>(numerator), static_cast<int64>(denominator)};
}

}  // namespace series
