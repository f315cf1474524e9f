#include "host/Kestova/Ratio.h"

#include <boost/rational.hpp>
#include <limits>
#include <stdexcept>

namespace Kestova {

namespace {

__extension__ using uint128 = unsigned __int128;

uint128 magnitude(int128 number) {
  return number < 0 ? uint128{0} - static_cast<uint128>(number) : static_cast<uint128>(number);
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

}  // namespace Kestova
