#include "host/Kestova/RationalTime.h"

#include "host/Kestova/NumberText.h"

namespace Kestova {

RationalTime operator+(const RationalTime& left, const RationalTime& right) {
  int64 whole = 0;
  if (left.isWhole() && right.isWhole() &&
      !__builtin_add_overflow(left.numerator(), right.numerator(), &whole)) {
    return RationalTime(whole);
  }
  const Ratio& a = left.ratio();
  const Ratio& b = right.ratio();
  return RationalTime(
      reduced(int128{a.numerator} * b.denominator + int128{b.numerator} * a.denominator,
              int128{a.denominator} * b.denominator));
}

RationalTime operator-(const RationalTime& left, const RationalTime& right) {
  int64 whole = 0;
  if (left.isWhole() && right.isWhole() &&
      !__builtin_sub_overflow(left.numerator(), right.numerator(), &whole)) {
    return RationalTime(whole);
  }
  const WideRatio wide = difference(left.ratio(), right.ratio());
  return RationalTime(reduced(wide.numerator, wide.denominator));
}

std::ostream& operator<<(std::ostream& out, const RationalTime& time) {
  return out << NumberText(time);
}

}  // namespace Kestova
