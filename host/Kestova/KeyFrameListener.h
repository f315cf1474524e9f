// Told which keyframes come and go.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include "host/Kestova/Export.h"
#include "host/Kestova/RationalTime.h"

namespace Kestova {

class ParameterInterface;

/// Called in the thread that changes the parameter, under the lock that it holds, after the
/// parameter's observers. It may add and remove listeners, itself included, and change the
/// parameter again. What it throws ends the round and reaches the one who made the change, which
/// stands.
class KESTOVA_API KeyFrameListener {
 public:
  virtual ~KeyFrameListener();

  virtual void keyFrameAdded(const boost::shared_ptr<ParameterInterface>& parameter,
                             const RationalTime& time) = 0;
  virtual void keyFrameRemoved(const boost::shared_ptr<ParameterInterface>& parameter,
                               const RationalTime& time) = 0;
};

}  // namespace Kestova
