#include <gtest/gtest.h>

#include <boost/rational.hpp>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>

#include "host/Kestova/RationalTime.h"
#include "host/Kestova/SafeRational.h"

namespace Kestova {
namespace {

constexpr int64 kLowest = std::numeric_limits<int64>::min();
constexpr int64 kHighest = std::numeric_limits<int64>::max();

std::string text(const RationalTime& time) {
  std::ostringstream out;
  out << time;
  return out.str();
}

TEST(RationalTime, IsReducedWithAPositiveDenominator) {
  EXPECT_EQ(text(RationalTime()), "0");
  EXPECT_EQ(text(RationalTime(20, 2)), "10");
  EXPECT_EQ(text(RationalTime(42, 4)), "21/2");
  EXPECT_EQ(text(RationalTime(3, -6)), "-1/2");
  EXPECT_EQ(text(RationalTime(0, -6)), "0");
  EXPECT_EQ(text(RationalTime(kLowest, kLowest)), "1");
  EXPECT_EQ(text(RationalTime(kLowest, 1)), "-9223372036854775808");
  EXPECT_THROW(RationalTime(1, 0), boost::bad_rational);
  EXPECT_THROW(RationalTime(kLowest, -1), std::overflow_error);
  EXPECT_THROW(RationalTime(1, kLowest), std::overflow_error);
}

TEST(RationalTime, IsOrderedExactlyAtTheExtremes) {
  // Ascending. Neighbours differ by less than the precision of a double.
  const RationalTime times[] = {
      RationalTime(kLowest),      RationalTime(kLowest + 1),
      RationalTime(-1, 2),        RationalTime(0),
      RationalTime(1, kHighest),  RationalTime(1, kHighest - 1),
      RationalTime(1, 3),         RationalTime(kHighest / 3 + 1, kHighest),
      RationalTime(kHighest - 1), RationalTime(kHighest),
  };
  for (const RationalTime& a : times) {
    for (const RationalTime& b : times) {
      EXPECT_EQ(a < b, &a < &b) << text(a) << " " << text(b);
      EXPECT_EQ(a == b, &a == &b);
      EXPECT_EQ(a != b, &a != &b);
      EXPECT_EQ(a > b, &a > &b);
      EXPECT_EQ(a <= b, &a <= &b);
      EXPECT_EQ(a >= b, &a >= &b);
    }
  }
}

TEST(RationalTime, AddsAndSubtractsOrThrowsOverflowError) {
  EXPECT_EQ(RationalTime(1, 3) + RationalTime(1, 6), RationalTime(1, 2));
  EXPECT_EQ(RationalTime(1, 3) - RationalTime(1, 2), RationalTime(-1, 6));
  EXPECT_EQ(RationalTime(kHighest) + RationalTime(kLowest), RationalTime(-1));
  EXPECT_EQ(RationalTime(-1) - RationalTime(kLowest), RationalTime(kHighest));
  EXPECT_THROW(RationalTime(kHighest) + RationalTime(1), std::overflow_error);
  EXPECT_THROW(RationalTime(kLowest) - RationalTime(1, 2), std::overflow_error);
  EXPECT_THROW(RationalTime(1, kHighest) + RationalTime(1, kHighest - 1), std::overflow_error);
}

TEST(SafeRational, ConvertsARateToLowestTerms) {
  EXPECT_EQ(SafeRational(boost::rational<unsigned int>(50, 2)).numerator(), 25);
}

}  // namespace
}  // namespace Kestova
