// What differs between the value types of parameters.
#pragma once

#include <algorithm>
#include <list>
#include <string>

#include "host/Kestova/ValueTypes.h"

namespace Kestova {

/// Equality in which NaN equals NaN, so that a copy is always equal to its original.
inline bool isSameNumber(double left, double right) {
  return left == right || (left != left && right != right);
}

template <class T>
bool isSameValue(const T& left, const T& right) {
  return left == right;
}
inline bool isSameValue(double left, double right) {
  return isSameNumber(left, right);
}
inline bool isSameValue(const Point& left, const Point& right) {
  return isSameNumber(left.x, right.x) && isSameNumber(left.y, right.y) &&
         isSameNumber(left.z, right.z);
}
inline bool isSameValue(const Rect<float>& left, const Rect<float>& right) {
  return isSameNumber(left.x, right.x) && isSameNumber(left.y, right.y) &&
         isSameNumber(left.width, right.width) && isSameNumber(left.height, right.height);
}
inline bool isSameValue(const std::list<Rect<float>>& left, const std::list<Rect<float>>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const auto& a, const auto& b) { return isSameValue(a, b); });
}

/// Of each of the types that KESTOVA_FOR_EACH_VALUE_TYPE lists.
template <class T>
struct ValueTraits {
  /// The value to store when `value` is asked for. A type could adjust it here; none does.
  static const T& verifyValue(const T& value) { return value; }

  /// Without tolerance.
  static bool similarToValue(const T& left, const T& right) { return isSameValue(left, right); }
};

}  // namespace Kestova
