#include "host/Kestova/SubProject.h"

#include "host/Kestova/ThreadSafe.h"

namespace Kestova {

SubProject::~SubProject() = default;

boost::shared_ptr<ReadWriteMutex> SubProject::mutex() const {
  const boost::weak_ptr<const ThreadSafe> owner = projectMutex();
  const boost::shared_ptr<const ThreadSafe> project = owner.lock();
  if (!project) return {};
  return {project, &project->readWriteMutex()};
}

}  // namespace Kestova
