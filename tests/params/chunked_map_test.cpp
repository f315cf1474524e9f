#include "params/ChunkedMap.h"
#include "tools/recording/Dice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <utility>
#include <vector>

namespace Kestova {
namespace {

using Map = ChunkedMap<int>;
using Model = std::map<RationalTime, int>;
using Random = recording::Dice;

void expectSame(const Map& map, const Model& model) {
  ASSERT_EQ(map.size(), model.size());
  ASSERT_EQ(map.empty(), model.empty());
  auto entry = map.begin();
  for (const auto& [time, value] : model) {
    ASSERT_EQ(entry.time(), time);
    ASSERT_EQ(entry.value(), value);
    ASSERT_EQ(map.lowerBound(time).position(), entry.position());
    ++entry;
  }
  ASSERT_EQ(entry, map.end());
  for (auto expected = model.rbegin(); expected != model.rend(); ++expected) {
    --entry;
    ASSERT_EQ(entry.time(), expected->first);
  }
}

// The order of the times of a sequence of insertions.
struct Order {
  const char* name;
  RationalTime (*time)(int number, Random& random);
};

const Order kOrders[] = {
    {"InTimeOrder", [](int number, Random&) { return RationalTime(number); }},
    {"InReverse", [](int number, Random&) { return RationalTime(-number); }},
    {"FromBothEnds",
     [](int number, Random&) { return RationalTime(number % 2 ? -number : number); }},
    {"Shuffled", [](int, Random& random) { return RationalTime(random.below(2000)); }},
    {"ShuffledThirds",
     [](int, Random& random) { return RationalTime(random.below(2000) - 1000, 3); }},
    // Few chunks have a time that is not whole.
    {"RarelyHalves",
     [](int number, Random& random) {
       return RationalTime(2 * random.below(1000) + (number % 100 == 0 ? 1 : 0), 2);
     }},
};

class ChunkedMaps : public testing::TestWithParam<Order> {};

TEST_P(ChunkedMaps, AgreeWithAStandardMap) {
  Random random(1);
  Map map;
  Model model;
  for (int number = 0; number < 1000; ++number) {
    const RationalTime time = GetParam().time(number, random);
    const auto entry = map.lowerBound(time);
    if (entry != map.end() && entry.time() == time) {
      EXPECT_EQ(map.exchange(entry, number), std::exchange(model[time], number));
    } else {
      map.insert(entry, time, number);
      model[time] = number;
    }
    if (number % 100 == 50) expectSame(map, model);
  }
  expectSame(map, model);
  // Erases at random positions until the map is empty.
  while (!model.empty()) {
    const auto doomed = std::next(model.begin(), random.below(static_cast<int>(model.size())));
    EXPECT_EQ(map.erase(map.lowerBound(doomed->first)), doomed->second);
    model.erase(doomed);
    if (model.size() % 100 < 3) expectSame(map, model);
  }
}

TEST_P(ChunkedMaps, FindTheSameEntryWithAnyHint) {
  Random random(2);
  Map map;
  for (int number = 0; number < 500; ++number) {
    const RationalTime time = GetParam().time(number, random);
    const auto entry = map.lowerBound(time);
    if (entry == map.end() || entry.time() != time) map.insert(entry, time, number);
  }
  for (int number = 0; number < 5000; ++number) {
    const RationalTime time(random.below(8000) - 2000, 1 + random.below(3));
    const auto chunk = static_cast<std::uint32_t>(random.below(12));  // also past the end
    const auto index = static_cast<std::uint32_t>(random.below(70));
    EXPECT_EQ(map.lowerBound(time, {chunk, index}), map.lowerBound(time));
  }
  for (auto entry = map.begin(); entry != map.end(); ++entry) {
    const RationalTime after = entry.time() + RationalTime(1, 1000);
    EXPECT_EQ(map.lowerBound(after, entry.position()), std::next(entry));
  }
}

// A large map guesses from the times where an entry stands. `time` rises with the number.
struct LargeMap {
  const char* name;
  RationalTime (*time)(std::int64_t number);
};

constexpr int64 kEarliest = std::numeric_limits<int64>::min();
constexpr int64 kLatest = std::numeric_limits<int64>::max();

class LargeMaps : public testing::TestWithParam<LargeMap> {};

TEST_P(LargeMaps, FindEachEntryAndEachTimeBesideIt) {
  constexpr std::int64_t kCount = 20'000;
  Map map;
  Model model;
  for (std::int64_t number = 0; number < kCount; ++number) {
    const RationalTime time = GetParam().time(number);
    map.insert(map.end(), time, static_cast<int>(number));
    model.emplace_hint(model.end(), time, static_cast<int>(number));
  }
  const auto expectFound = [&map, &model](const RationalTime& time) {
    const auto found = map.lowerBound(time);
    const auto expected = model.lower_bound(time);
    ASSERT_EQ(found == map.end(), expected == model.end()) << time;
    if (found == map.end()) return;
    ASSERT_EQ(found.value(), expected->second) << time;
  };
  const auto clamped = [](int128 whole) {
    return RationalTime(static_cast<int64>(std::clamp<int128>(whole, kEarliest, kLatest)));
  };
  for (const auto& [time, number] : model) {
    expectFound(time);
    const int128 whole = time.numerator() / time.denominator();
    expectFound(clamped(whole - 1));
    expectFound(clamped(whole + 1));
  }
  Random random(4);
  for (int number = 0; number < 20'000; ++number)
    expectFound(RationalTime(static_cast<int64>(random.bits())));
}

INSTANTIATE_TEST_SUITE_P(
    Times, LargeMaps,
    testing::Values(
        LargeMap{"Even", [](std::int64_t n) { return RationalTime(2 * n); }},
        LargeMap{"Thirds", [](std::int64_t n) { return RationalTime(2 * n, 3); }},
        LargeMap{"EverFurtherApart", [](std::int64_t n) { return RationalTime(n * n * n); }},
        LargeMap{"InTwoGroups",
                 [](std::int64_t n) { return RationalTime(n < 10'000 ? n : 1'000'000'000 + n); }},
        LargeMap{"OverTheWholeRange",
                 [](std::int64_t n) { return RationalTime((n - 10'000) * 922'337'203'685'477); }},
        LargeMap{"AtBothEnds",
                 [](std::int64_t n) {
                   return RationalTime(n < 10'000 ? kEarliest + n : kLatest - 20'000 + n);
                 }},
        LargeMap{"EqualAsDoubles",
                 [](std::int64_t n) { return RationalTime(kLatest - 40 * 20'000 + n); }}),
    [](const auto& test) { return test.param.name; });

TEST(SortedSearches, FindTheLowerBoundFromAnyGuess) {
  for (std::size_t count : {0U, 1U, 2U, 9U, 100U}) {
    std::vector<int> values;
    for (std::size_t index = 0; index < count; ++index)
      values.push_back(static_cast<int>(index / 2 * 2));
    for (int value = -1; value <= static_cast<int>(count) + 1; ++value) {
      const auto expected = std::lower_bound(values.begin(), values.end(), value) - values.begin();
      for (std::size_t guess = 0; guess <= count; ++guess) {
        EXPECT_EQ(sortedLowerBoundNear(values.data(), count, value, guess),
                  static_cast<std::size_t>(expected))
            << value << " among " << count << " from " << guess;
      }
    }
  }
}

// The arrays of the two forms and of the values have three sizes; a map that frees its slabs before
// one of them is found by the address sanitizer.
TEST(ChunkedMapsOfBothForms, GiveBackTheirMemoryWhenReplaced) {
  Map map;
  for (int number = 0; number < 1000; ++number) {
    const RationalTime time(number, number < 500 ? 1 : 2);
    const auto next = map.lowerBound(time);
    if (next == map.end() || next.time() != time) map.insert(next, time, number);
  }
  map = Map();
  EXPECT_TRUE(map.empty());
}

INSTANTIATE_TEST_SUITE_P(Orders, ChunkedMaps, testing::ValuesIn(kOrders),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace Kestova
