// The lock that guards a parameter: that of its owner.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <utility>

#include "host/Kestova/ThreadSafe.h"

namespace Kestova {

/// Returns the lock of `owner`, which the pointer keeps alive. Null, which locks nothing, if there
/// is no owner or it was destroyed.
inline boost::shared_ptr<ReadWriteMutex> lockOf(const boost::weak_ptr<const ThreadSafe>& owner) {
  boost::shared_ptr<const ThreadSafe> project = owner.lock();
  if (!project) return {};
  ReadWriteMutex& mutex = project->readWriteMutex();
  return {std::move(project), &mutex};
}

}  // namespace Kestova
