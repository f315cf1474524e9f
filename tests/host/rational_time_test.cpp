#include <gtest/gtest.h>

#include <boost/rational.hpp>
#include <limits>
#include <sstream>

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
  // Ascending; the neighbours differ by less than a double could tell.
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

TEST(RationalTime, AddsAndSubtractsOrSaysThatItCannot) {
  EXPECT_EQ(RationalTime(1, 3) + RationalTime(1, 6), RationalTime(1, 2));
  EXPECT_EQ(RationalTime(1, 3) - RationalTime(1, 2), RationalTime(-1, 6));
  EXPECT_EQ(RationalTime(kHighest) + RationalTime(kLowest), RationalTime(-1));
  EXPECT_EQ(RationalTime(-1) - RationalTime(kLowest), RationalTime(kHighest));
  EXPECT_THROW(RationalTime(kHighest) + RationalTime(1), std::overflow_error);
  EXPECT_THROW(RationalTime(kLowest) - RationalTime(1, 2), std::overflow_error);
  EXPECT_THROW(RationalTime(1, kHighest) + RationalTime(1, kHighest - 1), std::overflow_error);
}

// Against arithmetic that cannot overflow for small numbers, and at the ends for large ones.
TEST(RationalTime, IsComparedWithDifferencesExactly) {
  for (int64 a = -6; a <= 6; ++a) {
    for (int64 b = -6; b <= 6; ++b) {
      for (int64 c = -6; c <= 6; ++c) {
        const boost::rational<int64> left(a, 3);
        const boost::rational<int64> right =
            boost::rational<int64>(b, 2) - boost::rational<int64>(c, 5);
        EXPECT_EQ(compareWithDifference(RationalTime(a, 3), RationalTime(b, 2), RationalTime(c, 5)),
                  left < right ? -1 : (left > right ? 1 : 0));
      }
    }
  }
  const RationalTime low(kLowest);
  const RationalTime high(kHighest);
  const RationalTime one(1);
  EXPECT_EQ(compareWithDifference(low, low, one), 1);  // low - 1 is lower still
  EXPECT_EQ(compareWithDifference(high, high, low), -1);
  EXPECT_EQ(compareWithDifference(low, low, RationalTime(0)), 0);
  EXPECT_EQ(
      compareWithDifference(RationalTime(1, kHighest), RationalTime(kHighest, kHighest - 1), one),
      -1);  // 1 / max against 1 / (max - 1)
}

TEST(SafeRational, TellsWhatIsLessThanOneFrame) {
  const SafeRational rate(30000, 1001);  // one frame is 1001/30000
  EXPECT_TRUE(isLessThanOneFrame(RationalTime(1), RationalTime(31000, 30000), rate));
  EXPECT_FALSE(isLessThanOneFrame(RationalTime(1), RationalTime(31001, 30000), rate));
  EXPECT_FALSE(isLessThanOneFrame(RationalTime(kLowest), RationalTime(kHighest), rate));
  EXPECT_TRUE(isLessThanOneFrame(RationalTime(kHighest), RationalTime(kLowest), rate));
  EXPECT_TRUE(isLessThanOneFrame(RationalTime(0), RationalTime(kHighest, 2), SafeRational(0, 1)));
  EXPECT_EQ(SafeRational(boost::rational<unsigned int>(50, 2)).numerator(), 25);
}

}  // namespace
}  // namespace Kestova
