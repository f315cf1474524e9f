#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "loader/FrameNumber.h"

namespace loader {
namespace {

using Rate = boost::rational<unsigned int>;

TEST(FrameNumber, RoundsToTheNearestFrameAndHalvesUp) {
  struct Row {
    Rate rate;
    double seconds;
    Kestova::int64 frame;
  };
  for (const Row& row : {
           Row{30, 0.0, 0},
           Row{30, 1.0 / 60, 1},
           Row{30, 0.0166, 0},
           Row{30, 0.010, 0},
           Row{30, 0.012, 0},
           Row{{30000, 1001}, 1.0, 30},
           Row{1, 2.5, 3},
           Row{1, 2.49, 2},
           Row{30, -0.02, 0},
           Row{1, -0.7, 0},
           Row{1, -1.6, -1},
           Row{1, -1.5, -1},
           Row{1, -2.5, -2},
           Row{{4294967295, 1}, 1.0, 4294967295},
           Row{{1, 4294967295}, 4294967295.0, 1},
           // The sum after adding 0.5 is rounded: the largest double below 1/2 becomes 1.
           Row{1, std::nextafter(0.5, 0.0), 1},
           Row{1, -0x1p63, std::numeric_limits<Kestova::int64>::min()},
           Row{1, std::nextafter(0x1p63, 0.0), 9223372036854774784},
       }) {
    EXPECT_EQ(frameNumber(framesPerSecond(row.rate), row.seconds), row.frame) << row.seconds;
  }
}

TEST(FrameNumber, IsAbsentOutsideInt64) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double seconds : {std::nan(""), infinity, -infinity, 0x1p63, -0x1.8p63, 1e300}) {
    EXPECT_EQ(frameNumber(1, seconds), std::nullopt) << seconds;
  }
}

}  // namespace
}  // namespace loader
