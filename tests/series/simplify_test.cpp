// Dropping records that change nothing under step interpolation, or little.
#include "tools/series/Simplify.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/Streams.h"
#include "tools/recording/Dice.h"

namespace {

using testing_support::RecordTypeNames;
using testing_support::RecordTypes;
using testing_support::shown;
using ZRKMetaData::CursorImage;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

template <class Record>
struct Timed {
  double seconds;
  Record record;
};

template <class Record>
std::vector<Timed<Record>> simplified(const std::vector<Timed<Record>>& records, double tolerance) {
  std::vector<Timed<Record>> kept;
  series::Simplifier<Record> simplifier(tolerance);
  const auto keep = [&kept](double seconds, const Record& record) {
    kept.push_back({seconds, record});
  };
  for (const auto& [seconds, record] : records) simplifier.add(seconds, record, keep);
  simplifier.finish(keep);
  EXPECT_EQ(simplifier.droppedCount(), records.size() - kept.size());
  return kept;
}

// Of the last record at or before the time; before the first time, of the first.
template <class Record>
const Record& valueAt(const std::vector<Timed<Record>>& records, double seconds) {
  double first = kInfinity;
  for (const auto& timed : records) first = std::min(first, timed.seconds);
  const Record* value = nullptr;
  for (const auto& timed : records) {
    if (timed.seconds <= std::max(seconds, first)) value = &timed.record;
  }
  return *value;
}

// Few values, so that they repeat and lie close together.
template <class Record>
Record drawn(unsigned dice) {
  const int small = static_cast<int>(dice % 7);
  if constexpr (std::is_arithmetic_v<Record>) {
    return static_cast<Record>(small);
  } else if constexpr (std::is_same_v<Record, std::string>) {
    return std::string(static_cast<std::size_t>(small / 3), 'x');
  } else if constexpr (std::is_same_v<Record, ZRKMetaData::Rect>) {
    return {small, 0, small % 2, 0};
  } else if constexpr (std::is_same_v<Record, CursorImage>) {
    return {static_cast<ZRKMetaData::uint64>(small / 3), 0, 0, 0, nullptr};
  } else {
    return {small, small % 2};
  }
}

template <class T>
class Simplified : public testing::Test {};
TYPED_TEST_SUITE(Simplified, RecordTypes, RecordTypeNames);

TYPED_TEST(Simplified, HoldsTheSameValueAtEveryTimeOrOneWithinTheTolerance) {
  recording::Dice dice(7);
  for (int stream = 0; stream < 60; ++stream) {
    std::vector<Timed<TypeParam>> records;
    double seconds = -1;
    for (int n = 0; n < 40; ++n) {
      seconds += dice.below(3) / 4.0;
      records.push_back({seconds, drawn<TypeParam>(static_cast<unsigned>(dice.bits()))});
    }
    for (const double tolerance : {0.0, 1.0, 2.5}) {
      const auto kept = simplified(records, tolerance);
      EXPECT_EQ(simplified(kept, tolerance).size(), kept.size());
      if (series::kIsHeld<TypeParam>) {
        EXPECT_LT(kept.size(), records.size());
      }
      for (const auto& timed : records) {
        for (const double time : {std::nextafter(timed.seconds, -kInfinity), timed.seconds,
                                  std::nextafter(timed.seconds, kInfinity)}) {
          const auto& was = valueAt(records, time);
          const auto& is = valueAt(kept, time);
          if constexpr (series::kIsHeld<TypeParam>) {
            EXPECT_TRUE(series::isDroppable(is, was, tolerance)) << shown(was) << shown(is);
          }
          if (tolerance == 0) {
            EXPECT_EQ(shown(is), shown(was));
          }
        }
      }
    }
  }
}

TEST(Simplifier, KeepsEveryKeystroke) {
  const ZRKMetaData::KeyStroke key('l', 0);
  EXPECT_EQ(simplified<ZRKMetaData::KeyStroke>({{1, key}, {1, key}, {2, key}}, 5).size(), 3U);
}

TEST(Simplifier, KeepsTheBytesOfImagesThatLaterRecordsShow) {
  const auto image = [](ZRKMetaData::uint64 id, char byte) {
    return CursorImage(id, 9, 0, 0, new unsigned char[1]{static_cast<unsigned char>(byte)});
  };
  const auto reference = [](ZRKMetaData::uint64 id) { return CursorImage(id, 0, 0, 0, nullptr); };
  const auto kept = simplified<CursorImage>({{0, image(1, 'a')},
                                             {1, reference(1)},   // dropped: already shown
                                             {2, image(1, 'a')},  // dropped: the same image
                                             {3, image(1, 'b')},
                                             {4, image(2, 'c')},  // never shown at 4
                                             {4, reference(1)},
                                             {5, reference(2)}},
                                            0);
  std::string text;
  for (const auto& timed : kept) text += " " + shown(timed.record).substr(0, 3);
  EXPECT_EQ(text, " 1:9 1:9 2:9 1:0 2:0");
}

TEST(Tolerance, ComparesWithoutRounding) {
  const double step = std::nextafter(1.0, 2.0) - 1;
  const struct {
    double left, right, tolerance;
    bool isWithin;
  } cases[] = {{1, 2, 1, true},
               {1, 2, std::nextafter(1.0, 0), false},
               // 1 - (-2^-60) is above 1, but rounds to it; 1 - 2^-60 is below.
               {1, -0x1p-60, 1, false},
               {1, 0x1p-60, 1, true},
               {1 + step, 1, step, true},
               {0.0, -0.0, 0, true},
               {kNan, kNan, 0, true},
               {kNan, 0, 1e308, false},
               {kInfinity, kInfinity, 0, true},
               {kInfinity, -kInfinity, 1e308, false},
               {1e308, -1e308, 1.7e308, false}};
  for (const auto& row : cases) {
    EXPECT_EQ(series::isWithin(row.left, row.right, row.tolerance), row.isWithin)
        << row.left << " " << row.right << " " << row.tolerance;
    EXPECT_EQ(series::isWithin(row.right, row.left, row.tolerance), row.isWithin);
  }
  EXPECT_FALSE(series::isWithin(INT64_MIN, INT64_MAX, 0x1.fffffffffffffp63));
  EXPECT_TRUE(series::isWithin(INT64_MIN, INT64_MAX, 0x1p64));
  EXPECT_TRUE(series::isWithin(std::int64_t{-3}, std::int64_t{2}, 5.9));
  EXPECT_FALSE(series::isWithin(std::int64_t{-3}, std::int64_t{3}, 5.9));
}

}  // namespace
