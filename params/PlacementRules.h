// The rules by which keyframes stand beside each other, each in one place. Exact; they never throw.
#pragma once

#include "host/Kestova/RationalTime.h"

namespace Kestova {

/// True when `time` lies strictly inside the lead-in of the keyframe at `next`.
inline bool isInsideLeadIn(const RationalTime& time, const RationalTime& next,
                           const RationalTime& leadInLength) {
  return compareWithDifference(time, next, leadInLength) > 0;
}

/// True when the lead-in of a keyframe at `time` reaches back past the keyframe at `previous`.
inline bool reachesPast(const RationalTime& previous, const RationalTime& time,
                        const RationalTime& leadInLength) {
  return compareWithDifference(previous, time, leadInLength) > 0;
}

}  // namespace Kestova
