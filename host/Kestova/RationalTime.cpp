#include "host/Kestova/RationalTime.h"

namespace Kestova {

RationalTime operator+(const RationalTime& left, const RationalTime& right) {
  const Ratio& a = left.ratio();
  const Ratio& b = right.ratio();
  return RationalTime(
      reduced(int128{a.numerator} * b.denominator + int128{b.numerator} * a.denominator,
              int128{a.denominator} * b.denominator));
}

RationalTime operator-(const RationalTime& left, const RationalTime& right) {
  const WideRatio wide = difference(left.ratio(), right.ratio());
  return RationalTime(reduced(wide.numerator, wide.denominator));
}

std::ostream& operator<<(std::ostream& out, const RationalTime& time) {
  out << time.numerator();
  if (!time.isWhole()) out << '/' << time.denominator();
  return out;
}

}  // namespace Kestova
