// The times that stand for "no keyframe before" and "no keyframe after".
#pragma once

#include <limits>

#include "host/Kestova/RationalTime.h"

namespace Kestova {

inline RationalTime beforeAllTimes() {
  return RationalTime(std::numeric_limits<int64>::min());
}
inline RationalTime afterAllTimes() {
  return RationalTime(std::numeric_limits<int64>::max());
}

}  // namespace Kestova
