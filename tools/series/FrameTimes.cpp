#include "tools/series/FrameTimes.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/series/ExactFraction.h"

namespace series {

using ZRKMetaData::int64;

namespace {

int128 flooredQuotient(int128 numerator, int128 denominator) {
  const int128 quotient = numerator / denominator;
  return numerator % denominator < 0 ? quotient - 1 : quotient;
}

// As frameShownAt, but right within all of 65 bits. Further out the nearest power of two.
int128 frameAt(double seconds, const FrameRate& rate) {
  constexpr int128 kLimit = int128{1} << 64;
  const double estimate = seconds * rate.numerator() / rate.denominator();
  if (estimate >= 0x1p64) return kLimit;
  if (estimate <= -0x1p64) return -kLimit;

  int exponent = 0;
  constexpr int kMantissaBits = 53;
  const auto mantissa =
      static_cast<int64>(std::ldexp(std::frexp(seconds, &exponent), kMantissaBits));
  exponent -= kMantissaBits;
  // The product has at most 53 + 32 bits. With a positive exponent it stays below 2^64 * 2^32,
  // because the estimate does.
  const int128 product = int128{mantissa} * rate.numerator();
  constexpr int kMaxShift = 90;  // further on the denominator exceeds any product
  if (exponent < -kMaxShift) return product < 0 ? -1 : 0;
  if (exponent < 0) return flooredQuotient(product, int128{rate.denominator()} << -exponent);
  return flooredQuotient(product * (int128{1} << exponent), rate.denominator());
}

}  // namespace

int64 frameShownAt(double seconds, const FrameRate& rate) {
  using Limits = std::numeric_limits<int64>;
  return static_cast<int64>(
      std::clamp(frameAt(seconds, rate), int128{Limits::min()}, int128{Limits::max()}));
}

double startOfFrame(int64 frame, const FrameRate& rate) {
  // Off by few units in the last place, because each operation rounds once.
  double seconds = static_cast<double>(frame) * rate.denominator() / rate.numerator();
  while (frameAt(seconds, rate) < frame) seconds = std::nextafter(seconds, INFINITY);
  for (;;) {
    const double before = std::nextafter(seconds, -INFINITY);
    if (frameAt(before, rate) < frame) return seconds;
    seconds = before;
  }
}

}  // namespace series
