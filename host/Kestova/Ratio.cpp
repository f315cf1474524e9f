#include "host/Kestova/Ratio.h"

#include <boost/rational.hpp>
#include <limits>
#include <stdexcept>

namespace Kestova {

namespace {

__extension__ using uint128 = unsigned __int128;

// A sign and 192 bits of magnitude.
struct Product {
  int sign;
  uint128 high;
  uint64 low;
};

uint128 magnitude(int128 number) {
  return number < 0 ? uint128{0} - static_cast<uint128>(number) : static_cast<uint128>(number);
}

int sign(int128 number) {
  return (number > 0) - (number < 0);
}

Product product(int128 wide, int64 narrow) {
  const uint128 a = magnitude(wide);
  const auto b = static_cast<uint64>(magnitude(narrow));
  const uint128 low = uint128{static_cast<uint64>(a)} * b;
  const uint128 high = uint128{static_cast<uint64>(a >> 64U)} * b + (low >> 64U);
  return {sign(wide) * sign(narrow), high, static_cast<uint64>(low)};
}

int compareMagnitudes(const Product& left, const Product& right) {
  if (left.high != right.high) return left.high < right.high ? -1 : 1;
  return left.low == right.low ? 0 : left.low < right.low ? -1 : 1;
}

uint128 greatestCommonDivisor(uint128 a, uint128 b) {
  while (b != 0) {
    const uint128 rest = a % b;
    a = b;
    b = rest;
  }
  return a;
}

}  // namespace

Ratio reduced(int128 numerator, int128 denominator) {
  if (denominator == 0) throw boost::bad_rational();
  const auto divisor =
      static_cast<int128>(greatestCommonDivisor(magnitude(numerator), magnitude(denominator)));
  numerator /= denominator < 0 ? -divisor : divisor;
  denominator /= denominator < 0 ? -divisor : divisor;
  using Limits = std::numeric_limits<int64>;
  if (numerator < Limits::min() || numerator > Limits::max() || denominator > Limits::max()) {
    throw std::overflow_error("rational time out of range");
  }
  return {static_cast<int64>(numerator), static_cast<int64>(denominator)};
}

int compareProducts(int128 a, int64 b, int128 c, int64 d) {
  const Product left = product(a, b);
  const Product right = product(c, d);
  if (left.sign != right.sign) return left.sign < right.sign ? -1 : 1;
  return left.sign * compareMagnitudes(left, right);
}

}  // namespace Kestova
