#include "host/Kestova/ThreadSafe.h"

#include <utility>

namespace Kestova {

ThreadSafe::ThreadSafe() = default;
ThreadSafe::~ThreadSafe() = default;

boost::shared_ptr<ReadWriteMutex> lockOf(const boost::weak_ptr<const ThreadSafe>& owner) {
  boost::shared_ptr<const ThreadSafe> project = owner.lock();
  if (!project) return {};
  ReadWriteMutex& mutex = project->readWriteMutex();
  return {std::move(project), &mutex};
}

}  // namespace Kestova
