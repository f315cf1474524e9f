// A range: a start and a length, both in the unit of the value type.
#pragma once

#include "host/Kestova/Integers.h"
#include "host/Kestova/KvObject.h"

namespace Kestova {

/// Built for RationalTime and int64. A plain value.
template <class T>
class Range : public KvObject {
 public:
  Range() : start(0), length(0) {}
  Range(const T& start_, const T& length_) : start(start_), length(length_) {}

  T start;
  T length;
};

template <class T>
bool operator==(const Range<T>& left, const Range<T>& right) {
  return left.start == right.start && left.length == right.length;
}

}  // namespace Kestova
