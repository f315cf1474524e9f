// Finds neighbours in a time-ordered map of keyframes.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include "host/Kestova/RationalTime.h"
#include "params/ChunkedMap.h"
#include "params/KeyFrame.h"
#include "params/TimeLimits.h"

namespace Kestova {

/// The keyframes of a parameter, at most one per time.
template <class T>
using KeyFrameMap = ChunkedMap<boost::shared_ptr<KeyFrame<T>>>;

/// Stateless. The caller holds the lock that guards the map.
template <class T>
class KeyFrameMapUtil {
 public:
  using Entry = typename KeyFrameMap<T>::const_iterator;

  virtual ~KeyFrameMapUtil() = default;

  /// The time of the entry before `notBefore`, or `beforeAllTimes`. For the lower bound of a time
  /// this is the last time strictly before it.
  RationalTime previousTime(const KeyFrameMap<T>& keyFrames, Entry notBefore) const {
    return notBefore == keyFrames.begin() ? beforeAllTimes() : notBefore.previousTime();
  }

  /// The first time strictly after `time`, or `afterAllTimes`. Requires: `notBefore` is the lower
  /// bound of `time`.
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
