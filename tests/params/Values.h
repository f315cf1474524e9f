// Values of the eight types, and a fixture with a parameter in a project.
#pragma once

#include <gtest/gtest.h>

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <initializer_list>
#include <limits>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "host/Kestova/KeyFrameException.h"
#include "host/Kestova/Observable.h"
#include "host/Kestova/RationalTime.h"
#include "host/Kestova/ThreadSafe.h"
#include "host/Kestova/ValueTypes.h"
#include "params/LeftParameter.h"
#include "params/ValueTraits.h"

namespace Kestova {

using ValueTypes = testing::Types<int, double, int64, std::string, Point, Rect<float>,
                                  std::list<Rect<float>>, KeystrokeData>;

/// Names the cases of a typed suite.
struct TypeNames {
  template <class T>
  static std::string GetName(int /*index*/) {
    return ValueTraits<T>::kTypeName;
  }
};

/// A value of a type; different numbers make different values.
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

/// time(3) or time(21, 2).
inline RationalTime time(int64 numerator, int64 denominator = 1) {
  return {numerator, denominator};
}

/// Counts the calls since the last `take`.
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
    for (const int64 frame : times) {
      shared->addKeyFrame(time(frame), valueOf<Value>(static_cast<int>(frame)), time(0));
    }
  }

  std::vector<RationalTime> times() const { return *shared->keyFrameTimes(); }

  boost::shared_ptr<ThreadSafe> project = boost::make_shared<ThreadSafe>();
  boost::shared_ptr<Parameter> shared = boost::make_shared<Parameter>(project, "name", nullptr);
};

/// Expects that `action` throws a KeyFrameException at `refusedAt` with `message`.
template <class Action>
void expectRefusal(const RationalTime& refusedAt, const std::string& message, Action action) {
  try {
    action();
    ADD_FAILURE() << "was not refused";
  } catch (const KeyFrameException& refusal) {
    EXPECT_EQ(refusal.time(), refusedAt);
    EXPECT_EQ(refusal.what(), message);
  }
}

}  // namespace Kestova
