// Times are moved exactly, and parts of a timeline stand where the edit put them.
#include "tools/keep/EditList.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#include "tests/keep/Exact.h"
#include "tools/recording/Dice.h"

namespace {

using keep::Piece;
using keep::Segment;
using keep::segmentsOf;
using keep::TimeShift;
using series::ExactSeconds;
using testing_support::exact;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string refusalOf(const std::vector<Piece>& pieces, const ExactSeconds& shift = {}) {
  try {
    segmentsOf(pieces, shift);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "accepted";
}

TEST(TimeShift, RoundsAtMostToTheNextDouble) {
  recording::Dice dice(1);
  const auto below = [&dice](std::int64_t limit) {
    return static_cast<std::int64_t>(dice.bits() % static_cast<std::uint64_t>(limit));
  };
  constexpr std::int64_t kDenominators[] = {1, 25, 1000, 30000, 1'000'000'007};
  const testing_support::Exact kCancelled("10000000000000000000000000");
  for (int round = 0; round < 5000; ++round) {
    const auto denominator = kDenominators[below(5)];
    const ExactSeconds shift{below(std::int64_t{1} << (1 + below(61))) * (below(2) == 0 ? 1 : -1),
                             denominator};
    const TimeShift move(shift);
    // Also times that nearly cancel the shift.
    const double near =
        -exact(shift).convert_to<double>() + std::ldexp(static_cast<double>(below(1000)), -30);
    for (const double seconds : {0.0, static_cast<double>(below(1 << 20)) / 1000.0, near}) {
      const auto expected = testing_support::Exact(seconds) + exact(shift);
      const double moved = move(seconds);
      // What is left of two numbers that cancel is as exact as they are.
      const testing_support::Exact error = abs(testing_support::Exact(moved) - expected);
      EXPECT_TRUE(testing_support::isWithinOneUlp(moved, expected) ||
                  error * kCancelled < abs(exact(shift)))
          << shift.numerator << "/" << shift.denominator << " + " << seconds;
    }
  }
}

TEST(TimeShift, KeepsTimesThatAreNoNumbers) {
  const TimeShift move(ExactSeconds{-1, 3});
  EXPECT_TRUE(std::isnan(move(std::nan(""))));
  EXPECT_EQ(move(kInfinity), kInfinity);
  EXPECT_EQ(move(-kInfinity), -kInfinity);
  EXPECT_EQ(TimeShift()(0.1), 0.1);
}

TEST(Segments, StandInTheOrderOfTheEditedTimeline) {
  const auto segments = segmentsOf(
      {{{5, 1}, {{7, 1}}, {3, 1}}, {{9, 1}, {}, {5, 1}}, {{1, 3}, {{10, 3}}, {0, 1}}}, {1, 2});
  ASSERT_EQ(segments.size(), 3U);
  EXPECT_EQ(segments[0].start, 0.5);
  EXPECT_EQ(segments[0].end, 3.5);
  EXPECT_EQ(segments[1].start, 3.5);
  EXPECT_EQ(segments[1].moved(6), 4.5);
  EXPECT_EQ(segments[2].moved(kInfinity), kInfinity);
  EXPECT_EQ(segments[2].end, kInfinity);
  // Rounding moves no record in front of its segment.
  EXPECT_GE(segments[0].moved(segments[0].range.from()), segments[0].start);
}

TEST(Segments, OfNoPiecesAreOneOfAllTimes) {
  const auto segments = segmentsOf({}, {-1, 1});
  ASSERT_EQ(segments.size(), 1U);
  EXPECT_FALSE(segments[0].hasStart());
  EXPECT_TRUE(segments[0].range.isUnbounded());
  EXPECT_EQ(segments[0].moved(-5), -6);
}

TEST(Segments, LeaveOutPiecesWithoutALength) {
  EXPECT_TRUE(segmentsOf({{{5, 1}, {{5, 1}}, {0, 1}}}, {}).empty());
}

TEST(Segments, RefuseWhatCannotStandInOneTimeline) {
  EXPECT_EQ(refusalOf({{{2, 1}, {{1, 1}}, {}}}), "the range ends before it begins");
  EXPECT_EQ(refusalOf({{{0, 1}, {{2, 1}}, {}}, {{5, 2}, {{3, 1}}, {1, 1}}}),
            "the part from 5/2 s of the recording begins before the one in front of it ends");
  EXPECT_EQ(refusalOf({{{0, 1}, {}, {}}, {{5, 1}, {{6, 1}}, {1, 1}}}),
            "the part from 5 s of the recording begins before the one in front of it ends");
  constexpr auto kMax = std::numeric_limits<ZRKMetaData::int64>::max();
  EXPECT_EQ(refusalOf({{{0, 1}, {{1, 1}}, {kMax, 1}}}, {1, 1}),
            "a sum of times does not fit into 64 bits");
  EXPECT_EQ(refusalOf(std::vector<Piece>(10'001)), "10001 parts; at most 10000 are read");
}

}  // namespace
