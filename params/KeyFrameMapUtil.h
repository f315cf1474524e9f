// Neighbours in a time-ordered map of keyframes.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <limits>
#include <map>

#include "host/Kestova/RationalTime.h"
#include "params/KeyFrame.h"

namespace Kestova {

/// The keyframes of a parameter by their times, at most one at a time.
template <class T>
using KeyFrameMap = std::map<RationalTime, boost::shared_ptr<KeyFrame<T>>>;

/// What stands for "no keyframe before" and "no keyframe after".
inline RationalTime beforeAllTimes() {
  return RationalTime(std::numeric_limits<int64>::min());
}
inline RationalTime afterAllTimes() {
  return RationalTime(std::numeric_limits<int64>::max());
}

/// Has no state. The caller holds the lock that guards the map.
template <class T>
class KeyFrameMapUtil {
 public:
  virtual ~KeyFrameMapUtil() = default;

  /// The last time strictly before `time`, or `beforeAllTimes`.
  RationalTime previousTime(const KeyFrameMap<T>& keyFrames, const RationalTime& time) const {
    const auto notBefore = keyFrames.lower_bound(time);
    return notBefore == keyFrames.begin() ? beforeAllTimes() : std::prev(notBefore)->first;
  }

  /// The first time strictly after `time`, or `afterAllTimes`.
  RationalTime nextTime(const KeyFrameMap<T>& keyFrames, const RationalTime& time) const {
    const auto after = keyFrames.upper_bound(time);
    return after == keyFrames.end() ? afterAllTimes() : after->first;
  }

  RationalTime firstTime(const KeyFrameMap<T>& keyFrames) const {
    return keyFrames.empty() ? afterAllTimes() : keyFrames.begin()->first;
  }
};

}  // namespace Kestova
