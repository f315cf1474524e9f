// Seconds and frames, converted without rounding.
#include "tools/recording/Dice.h"
#include "tools/series/FrameTimes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using series::FrameRate;
using series::frameShownAt;
using series::startOfFrame;
using ZRKMetaData::int64;

constexpr int64 kMax = std::numeric_limits<int64>::max();
constexpr int64 kMin = std::numeric_limits<int64>::min();

struct Shown {
  const char* name;
  double seconds;
  FrameRate rate;
  int64 frame;
};

class FrameTimes : public testing::TestWithParam<Shown> {};

TEST_P(FrameTimes, FrameIsTheGreatestThatHasBegun) {
  const Shown& shown = GetParam();
  EXPECT_EQ(frameShownAt(shown.seconds, shown.rate), shown.frame);
}

const Shown kShown[] = {
    {"Zero", 0, 30, 0},
    {"NegativeZero", -0.0, 30, 0},
    {"OnAFrame", 2.5, 30, 75},
    {"DoubleAboveATenth", 0.1, 10, 1},       // the double 0.1 is above 1/10
    {"DoubleBelowThreeTenths", 0.3, 10, 2},  // the double 0.3 is below 3/10
    {"BeforeAFrame", std::nextafter(2.5, 0), 30, 74},
    {"BeforeTheFirst", -0.001, 30, -1},
    {"DropRate", 1001, {30000, 1001}, 30000},
    {"BeforeAFrameOfTheDropRate", std::nextafter(1001.0, 0), {30000, 1001}, 29999},
    {"LeastPositive", 5e-324, 30, 0},
    {"LeastNegative", -5e-324, 30, -1},
    {"GreatestDoubleInRange", 0x1.fffffffffffffp62, 1, 0x7FFFFFFFFFFFFC00},
    {"FirstBeyond", 0x1p63, 1, kMax},
    {"LastWithin", -0x1p63, 1, kMin},
    {"SlowRateBeyond", 0x1p95, {1, 4294967295U}, kMax},
    {"SlowRateInRange", 0x1p93, {1, 2147483648U}, int64{1} << 62U},
    {"FastRate", 0x1p31, {4294967295U, 1}, kMax - 0x7FFFFFFF},
    {"Infinite", INFINITY, 30, kMax},
    {"NegativeInfinite", -INFINITY, 30, kMin},
};

INSTANTIATE_TEST_SUITE_P(All, FrameTimes, testing::ValuesIn(kShown),
                         [](const auto& test) { return test.param.name; });

TEST(FrameTimes, StartOfAFrameIsTheLeastDoubleThatShowsIt) {
  recording::Dice dice(7);
  for (const FrameRate& rate : {FrameRate(30), FrameRate(30000, 1001), FrameRate(7, 4294967291U),
                                FrameRate(4294967291U, 7), FrameRate(1)}) {
    for (int round = 0; round < 2000; ++round) {
      const auto frame = static_cast<int64>(dice.bits()) >> (24 + dice.below(40));
      const double start = startOfFrame(frame, rate);
      ASSERT_GE(frameShownAt(start, rate), frame) << frame;
      ASSERT_LT(frameShownAt(std::nextafter(start, -INFINITY), rate), frame) << frame;
    }
  }
}

TEST(FrameTimes, StartsOfExtremeFramesAreFinite) {
  for (const int64 frame : {kMax, kMin, int64{0}}) {
    EXPECT_TRUE(std::isfinite(startOfFrame(frame, {1, 4294967295U}))) << frame;
    EXPECT_TRUE(std::isfinite(startOfFrame(frame, {4294967295U, 1}))) << frame;
  }
}

}  // namespace
