#include "params/ChunkedMap.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace Kestova {
namespace {

using Map = ChunkedMap<int>;
using Model = std::map<RationalTime, int>;

class Dice {
 public:
  explicit Dice(unsigned seed) : m_engine(seed) {}
  std::uint32_t index(unsigned bound) { return static_cast<std::uint32_t>(m_engine() % bound); }
  int operator()(unsigned bound) { return static_cast<int>(index(bound)); }

 private:
  std::mt19937 m_engine;
};

void expectSame(const Map& map, const Model& model) {
  ASSERT_EQ(map.size(), model.size());
  ASSERT_EQ(map.empty(), model.empty());
  auto entry = map.begin();
  for (const auto& [time, value] : model) {
    ASSERT_EQ(entry.time(), time);
    ASSERT_EQ(entry.value(), value);
    ASSERT_EQ(map.lowerBound(time).place(), entry.place());
    ++entry;
  }
  ASSERT_EQ(entry, map.end());
  for (auto expected = model.rbegin(); expected != model.rend(); ++expected) {
    --entry;
    ASSERT_EQ(entry.time(), expected->first);
  }
}

// How times come: the times of a run of additions, by the number of the addition.
struct Order {
  const char* name;
  int (*time)(int number, Dice& random);
};

const Order kOrders[] = {
    {"InTimeOrder", [](int number, Dice&) { return number; }},
    {"InReverse", [](int number, Dice&) { return -number; }},
    {"FromBothEnds", [](int number, Dice&) { return number % 2 == 0 ? number : -number; }},
    {"Shuffled", [](int, Dice& random) { return random(2000); }},
};

class ChunkedMaps : public testing::TestWithParam<Order> {};

TEST_P(ChunkedMaps, AgreeWithAPlainMap) {
  Dice random(1);
  Map map;
  Model model;
  for (int number = 0; number < 1000; ++number) {
    const RationalTime time(GetParam().time(number, random));
    const auto place = map.lowerBound(time);
    if (place != map.end() && place.time() == time) {
      EXPECT_EQ(map.exchange(place, number), std::exchange(model[time], number));
    } else {
      map.insert(place, time, number);
      model[time] = number;
    }
    if (number % 100 == 50) expectSame(map, model);
  }
  expectSame(map, model);
  // Erased from places all over, until little and then nothing is left.
  while (!model.empty()) {
    const auto doomed = std::next(model.begin(), random(static_cast<unsigned>(model.size())));
    EXPECT_EQ(map.erase(map.lowerBound(doomed->first)), doomed->second);
    model.erase(doomed);
    if (model.size() % 100 < 3) expectSame(map, model);
  }
}

TEST_P(ChunkedMaps, FindTheSameWhereverTheLookBegins) {
  Dice random(2);
  Map map;
  for (int number = 0; number < 500; ++number) {
    const RationalTime time(3 * GetParam().time(number, random));
    const auto place = map.lowerBound(time);
    if (place == map.end() || place.time() != time) map.insert(place, time, number);
  }
  for (int number = 0; number < 5000; ++number) {
    const RationalTime time(random(8000) - 2000);
    const Map::Place near{random.index(12), random.index(70)};  // also where nothing is
    EXPECT_EQ(map.lowerBound(time, near), map.lowerBound(time));
  }
  for (auto entry = map.begin(); entry != map.end(); ++entry) {
    const RationalTime behind = entry.time() + RationalTime(1, 2);
    EXPECT_EQ(map.lowerBound(behind, entry.place()), std::next(entry));
  }
}

INSTANTIATE_TEST_SUITE_P(Orders, ChunkedMaps, testing::ValuesIn(kOrders),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace Kestova
