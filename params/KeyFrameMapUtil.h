// Neighbours in a time-ordered map of keyframes.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <limits>

#include "host/Kestova/RationalTime.h"
#include "params/ChunkedMap.h"
#include "params/KeyFrame.h"

namespace Kestova {

/// The keyframes of a parameter by their times, at most one at a time.
template <class T>
using KeyFrameMap = ChunkedMap<boost::shared_ptr<KeyFrame<T>>>;

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
  using Entry = typename KeyFrameMap<T>::const_iterator;

  virtual ~KeyFrameMapUtil() = default;

  /// The last time strictly before the time that `notBefore` is the lower bound of, or
  /// `beforeAllTimes`.
  RationalTime previousTime(const KeyFrameMap<T>& keyFrames, Entry notBefore) const {
    return notBefore == keyFrames.begin() ? beforeAllTimes() : notBefore.previous().time();
  }

  /// The first time strictly after `time`, whose lower bound is `notBefore`, or `afterAllTimes`.
  RationalTime nextTime(const KeyFrameMap<T>& keyFrames, Entry notBefore,
                        const RationalTime& time) const {
    if (notBefore != keyFrames.end() && notBefore.time() == time) ++notBefore;
    return notBefore == keyFrames.end() ? afterAllTimes() : notBefore.time();
  }

  RationalTime firstTime(const KeyFrameMap<T>& keyFrames) const {
    return keyFrames.empty() ? afterAllTimes() : keyFrames.begin().time();
  }
};

}  // namespace Kestova
