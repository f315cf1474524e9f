#include "params/Slabs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "params/LargeBlock.h"
#include "tests/params/Values.h"
#include "tools/recording/Dice.h"

namespace Kestova {
namespace {

constexpr std::size_t kSize = 152;  // that of a keyframe of a point with its counts

std::vector<void*> allocated(Slabs& slabs, int count) {
  std::vector<void*> objects;
  for (int number = 0; number < count; ++number) {
    objects.push_back(slabs.allocate(kSize));
    std::memset(objects.back(), number, kSize);
  }
  return objects;
}

void deallocate(Slabs& slabs, const std::vector<void*>& objects) {
  for (void* const object : objects) slabs.deallocate(object, kSize);
}

TEST(Slabs, HaveSpaceOfItsOwnForEachObject) {
  const auto slabs = Slabs::create();
  constexpr int kCount = 60'000;
  static_assert(kCount * kSize > 3 * kHugePageSize);
  const auto objects = allocated(*slabs, kCount);
  for (int number = 0; number < kCount; ++number) {
    const auto* const bytes = static_cast<const unsigned char*>(objects[std::size_t(number)]);
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(bytes) % alignof(void*), 0U);
    ASSERT_EQ(bytes[0], number % 256);
    ASSERT_EQ(bytes[kSize - 1], number % 256);
  }
  deallocate(*slabs, objects);
}

TEST(Slabs, UseTheSpaceOfFreedObjectsFirst) {
  const auto slabs = Slabs::create();
  auto objects = allocated(*slabs, 1000);
  std::shuffle(objects.begin(), objects.end(), std::mt19937(1));
  std::vector<void*> freed(objects.begin() + 500, objects.end());
  deallocate(*slabs, freed);
  std::vector<void*> reused = allocated(*slabs, 500);
  std::sort(freed.begin(), freed.end());
  std::sort(reused.begin(), reused.end());
  EXPECT_EQ(reused, freed);
  objects.resize(500);
  deallocate(*slabs, objects);
  deallocate(*slabs, reused);
}

TEST(Slabs, OutliveObjectsOfEverySize) {
  for (const std::size_t first : {std::size_t{1}, kSize, 2 * kHugePageSize}) {
    for (const std::size_t second : {std::size_t{1}, kSize, 2 * kHugePageSize}) {
      auto owner = Slabs::create();
      Slabs& slabs = *owner;
      slabs.deallocate(slabs.allocate(first), first);  // the slabs are empty again
      void* const one = slabs.allocate(first);
      void* const other = slabs.allocate(second);
      std::memset(one, 1, first);
      std::memset(other, 2, second);
      owner.reset();
      EXPECT_EQ(static_cast<unsigned char*>(one)[first - 1], 1);
      EXPECT_EQ(static_cast<unsigned char*>(other)[second - 1], 2);
      slabs.deallocate(one, first);
      slabs.deallocate(other, second);
    }
  }
}

TEST(Threads, FreeObjectsOfSlabsThatTheirOwnerHasReleased) {
  auto slabs = Slabs::create();
  Slabs& shared = *slabs;
  std::vector<std::thread> threads;
  for (unsigned number = 0; number < 4; ++number) {
    threads.emplace_back([&shared, objects = allocated(shared, 1000), number]() mutable {
      recording::Dice random(number);
      for (void* const object : objects) std::memset(object, static_cast<int>(number), kSize);
      for (int round = 0; round < 3000; ++round) {
        if (random.below(2) == 0 && objects.size() > 1) {
          shared.deallocate(objects.back(), kSize);
          objects.pop_back();
        } else {
          objects.push_back(shared.allocate(kSize));
          std::memset(objects.back(), static_cast<int>(number), kSize);
        }
      }
      for (void* const object : objects) {
        EXPECT_EQ(static_cast<unsigned char*>(object)[kSize - 1], number);
      }
      deallocate(shared, objects);
    });
  }
  slabs.reset();
  for (std::thread& thread : threads) thread.join();
}

template <class T>
class KeyFramesInSlabs : public Fixture<T> {};
TYPED_TEST_SUITE(KeyFramesInSlabs, ValueTypes, TypeNames);

TYPED_TEST(KeyFramesInSlabs, OutliveTheirParameter) {
  this->add({1, 2, 3, 4, 5});
  const auto third = this->shared->keyFrameAt(time(3));
  const boost::weak_ptr<KeyFrame<TypeParam>> first = this->shared->keyFrameAt(time(1));
  this->shared->removeKeyFrame(time(1));
  EXPECT_TRUE(first.expired());
  this->shared.reset();
  EXPECT_EQ(third->time(), time(3));
  EXPECT_EQ(third->value(), valueOf<TypeParam>(3));
}

}  // namespace
}  // namespace Kestova
