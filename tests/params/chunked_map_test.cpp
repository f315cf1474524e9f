#include "params/ChunkedMap.h"
#include "tools/recording/Dice.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <utility>

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
