// Times as fractions of any size, to compare rounded ones with.
#pragma once

#include <boost/multiprecision/cpp_int.hpp>

#include "tools/series/TimeRange.h"

namespace testing_support {

using Exact = boost::multiprecision::cpp_rational;

inline Exact exact(const series::ExactSeconds& time) {
  return Exact(boost::multiprecision::cpp_int(time.numerator), time.denominator);
}

/// Whether `time` is one of the two doubles around `expected`, or next to them.
inline bool isWithinOneUlp(double time, const Exact& expected) {
  return Exact(std::nextafter(time, -INFINITY)) <= expected &&
         expected <= Exact(std::nextafter(time, INFINITY));
}

}  // namespace testing_support
