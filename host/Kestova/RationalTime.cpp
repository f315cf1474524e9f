#include "host/Kestova/RationalTime.h"

#include <string>

#include "host/Kestova/Ratio.h"
#include "text/NumberText.h"

namespace Kestova {

namespace {

// left + numerator / denominator, where no product exceeds 127 bits.
Ratio sum(const RationalTime& left, int128 numerator, int128 denominator) {
  return reduced(left.numerator() * denominator + numerator * left.denominator(),
                 left.denominator() * denominator);
}

}  // namespace

RationalTime::RationalTime(const Ratio& ratio)
    : m_numerator(ratio.numerator), m_denominator(ratio.denominator) {}

RationalTime::RationalTime(int64 numerator, int64 denominator)
    : RationalTime(reduced(numerator, denominator)) {}

RationalTime operator+(const RationalTime& left, const RationalTime& right) {
  int64 whole = 0;
  if (left.isWhole() && right.isWhole() &&
      !__builtin_add_overflow(left.numerator(), right.numerator(), &whole)) {
    return RationalTime(whole);
  }
  return RationalTime(sum(left, right.numerator(), right.denominator()));
}

RationalTime operator-(const RationalTime& left, const RationalTime& right) {
  int64 whole = 0;
  if (left.isWhole() && right.isWhole() &&
      !__builtin_sub_overflow(left.numerator(), right.numerator(), &whole)) {
    return RationalTime(whole);
  }
  return RationalTime(sum(left, -int128{right.numerator()}, right.denominator()));
}

std::ostream& operator<<(std::ostream& out, const RationalTime& time) {
  std::string text(text::NumberText(time.numerator()));
  if (!time.isWhole()) text.append("/").append(text::NumberText(time.denominator()));
  return out << text;
}

}  // namespace Kestova
