// The rule that decides where a keyframe may be placed.
#pragma once

#include "params/ExactTime.h"
#include "params/TimeLimits.h"

namespace Kestova {

/// The keyframe after a time. The default stands for none.
struct NextKeyFrame {
  RationalTime time = afterAllTimes();
  RationalTime leadInLength;
};

/// True when a keyframe at `time` fits between its neighbours: `time` is not strictly inside the
/// lead-in of the next keyframe, and its own lead-in does not reach past the time of the previous
/// keyframe (`beforeAllTimes` when there is none). Exact; never throws.
inline bool fitsBetween(const RationalTime& previous, const NextKeyFrame& next,
                        const RationalTime& time, const RationalTime& leadInLength) {
  return compareWithDifference(time, next.time, next.leadInLength) <= 0 &&
         compareWithDifference(previous, time, leadInLength) <= 0;
}

}  // namespace Kestova
