// Receives the times of keyframes that are added and removed.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include "host/Kestova/Export.h"
#include "host/Kestova/RationalTime.h"

namespace Kestova {

class ParameterInterface;

/// Called by the thread that changes the parameter, under the lock that it holds, after the
/// observers of the parameter. A listener may add and remove listeners, itself included, and change
/// the parameter again. An exception of a listener ends the round and propagates to the caller of
/// the operation; the change itself is kept.
class KESTOVA_API KeyFrameListener {
 public:
  virtual ~KeyFrameListener();

  // Called when `parameter`, never null, has a new keyframe at `time`, or none any more. The time
  // is in the unit of the parameter.
  virtual void keyFrameAdded(const boost::shared_ptr<ParameterInterface>& parameter,
                             const RationalTime& time) = 0;
  virtual void keyFrameRemoved(const boost::shared_ptr<ParameterInterface>& parameter,
                               const RationalTime& time) = 0;
};

}  // namespace Kestova
