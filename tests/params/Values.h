// The eight value types under one suite, and the project they live in.
#pragma once

#include <gtest/gtest.h>

#include <boost/smart_ptr/make_shared.hpp>
#include <limits>
#include <string>
#include <vector>

#include "host/Kestova/KeyFrameException.h"
#include "host/Kestova/ThreadSafe.h"
#include "host/Kestova/ValueTypes.h"
#include "params/LeftParameter.h"

namespace Kestova {

using ValueTypes = testing::Types<int, double, int64, std::string, Point, Rect<float>,
                                  std::list<Rect<float>>, KeystrokeData>;

/// Value number `n` of a type; different numbers give different values.
template <class T>
T valueOf(int n) {
  return static_cast<T>(n);
}
template <>
inline std::string valueOf(int n) {
  return "text " + std::to_string(n);
}
template <>
inline Point valueOf(int n) {
  return {1.0 * n, 2.0 * n, 0.0};
}
template <>
inline Rect<float> valueOf(int n) {
  return {1.0F, 2.0F, 3.0F, static_cast<float>(n)};
}
template <>
inline std::list<Rect<float>> valueOf(int n) {
  return std::list<Rect<float>>(2, valueOf<Rect<float>>(n));
}
template <>
inline KeystrokeData valueOf(int n) {
  KeystrokeData data;
  data.setCharacter(65);
  data.setEventFlags(n);
  return data;
}

inline const RationalTime kBeforeAll(std::numeric_limits<int64>::min());
inline const RationalTime kAfterAll(std::numeric_limits<int64>::max());

/// A time written short: T(3) or T(21, 2).
inline RationalTime T(int64 numerator, int64 denominator = 1) {
  return {numerator, denominator};
}

/// Counts its calls.
class Counter final : public Observer {
 public:
  void changed() override { ++count; }
  int take() { return std::exchange(count, 0); }
  int count = 0;
};

/// A parameter in a project.
template <class Value>
class Fixture : public testing::Test {
 protected:
  using Parameter = LeftParameter<Value>;

  void add(std::initializer_list<int64> times) {
    for (const int64 time : times) {
      shared->addKeyFrame(T(time), valueOf<Value>(static_cast<int>(time)), T(0));
    }
  }

  std::vector<RationalTime> times() const { return *shared->keyFrameTimes(); }

  boost::shared_ptr<ThreadSafe> project = boost::make_shared<ThreadSafe>();
  boost::shared_ptr<Parameter> shared = boost::make_shared<Parameter>(project, "name", nullptr);
};

/// Runs `action` and expects a KeyFrameException at `time` with `message`.
template <class Action>
void expectRefusal(const RationalTime& time, const std::string& message, Action action) {
  try {
    action();
    ADD_FAILURE() << "was not refused";
  } catch (const KeyFrameException& refusal) {
    EXPECT_EQ(refusal.time(), time);
    EXPECT_EQ(refusal.what(), message);
  }
}

}  // namespace Kestova
