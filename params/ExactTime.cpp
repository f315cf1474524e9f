#include "params/ExactTime.h"

#include "host/Kestova/Integers.h"

namespace Kestova {

namespace {

__extension__ using Wide = __int128;
__extension__ using UnsignedWide = unsigned __int128;

// A sign and 192 bits of magnitude.
struct Product {
  int sign;
  UnsignedWide high;
  uint64 low;
};

UnsignedWide magnitude(Wide number) {
  const auto bits = static_cast<UnsignedWide>(number);
  return number < 0 ? UnsignedWide{0} - bits : bits;
}

int sign(Wide number) {
  return (number > 0) - (number < 0);
}

Product product(Wide wide, int64 narrow) {
  const UnsignedWide a = magnitude(wide);
  const auto b = static_cast<uint64>(magnitude(narrow));
  const UnsignedWide low = UnsignedWide{static_cast<uint64>(a)} * b;
  const UnsignedWide high = UnsignedWide{static_cast<uint64>(a >> 64U)} * b + (low >> 64U);
  return {sign(wide) * sign(narrow), high, static_cast<uint64>(low)};
}

int compareMagnitudes(const Product& left, const Product& right) {
  if (left.high != right.high) return left.high < right.high ? -1 : 1;
  return left.low == right.low ? 0 : left.low < right.low ? -1 : 1;
}

// The sign of a * b - c * d.
int compareProducts(Wide a, int64 b, Wide c, int64 d) {
  const Product left = product(a, b);
  const Product right = product(c, d);
  if (left.sign != right.sign) return left.sign < right.sign ? -1 : 1;
  return left.sign * compareMagnitudes(left, right);
}

// `later` - `earlier`, not reduced. Each numerator and denominator has 64 bits, so 128 suffice.
struct Difference {
  Difference(const RationalTime& later, const RationalTime& earlier)
      : numerator(Wide{later.numerator()} * earlier.denominator() -
                  Wide{earlier.numerator()} * later.denominator()),
        denominator(Wide{later.denominator()} * earlier.denominator()) {}

  Wide numerator;
  Wide denominator;
};

}  // namespace

int detail::compareAnyWithDifference(const RationalTime& time, const RationalTime& later,
                                     const RationalTime& earlier) {
  const Difference difference(later, earlier);
  return compareProducts(difference.denominator, time.numerator(), difference.numerator,
                         time.denominator());
}

bool isLessThanOneFrame(const RationalTime& earlier, const RationalTime& later,
                        const SafeRational& rate) {
  const Difference difference(later, earlier);
  return compareProducts(difference.numerator, rate.numerator(), difference.denominator,
                         rate.denominator()) < 0;
}

}  // namespace Kestova
