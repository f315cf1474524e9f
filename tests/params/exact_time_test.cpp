#include <gtest/gtest.h>

#include <boost/rational.hpp>
#include <limits>

#include "params/ExactTime.h"

namespace Kestova {
namespace {

constexpr int64 kLowest = std::numeric_limits<int64>::min();
constexpr int64 kHighest = std::numeric_limits<int64>::max();

// Compared with arithmetic that cannot overflow for small numbers, and at the extremes.
TEST(ExactTime, ComparesWithDifferencesExactly) {
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
  EXPECT_EQ(compareWithDifference(low, low, one), 1);  // low - 1 is lower
  EXPECT_EQ(compareWithDifference(high, high, low), -1);
  EXPECT_EQ(compareWithDifference(low, low, RationalTime(0)), 0);
  EXPECT_EQ(
      compareWithDifference(RationalTime(1, kHighest), RationalTime(kHighest, kHighest - 1), one),
      -1);  // 1 / max against 1 / (max - 1)
}

TEST(ExactTime, ComparesDifferencesWithOneFrame) {
  const SafeRational rate(30000, 1001);  // one frame is 1001/30000
  EXPECT_TRUE(isLessThanOneFrame(RationalTime(1), RationalTime(31000, 30000), rate));
  EXPECT_FALSE(isLessThanOneFrame(RationalTime(1), RationalTime(31001, 30000), rate));
  EXPECT_FALSE(isLessThanOneFrame(RationalTime(kLowest), RationalTime(kHighest), rate));
  EXPECT_TRUE(isLessThanOneFrame(RationalTime(kHighest), RationalTime(kLowest), rate));
  EXPECT_TRUE(isLessThanOneFrame(RationalTime(0), RationalTime(kHighest, 2), SafeRational(0, 1)));
}

}  // namespace
}  // namespace Kestova
