#include "host/Kestova/SubProject.h"

#include "host/Kestova/ThreadSafe.h"

namespace Kestova {

SubProject::~SubProject() = default;

boost::shared_ptr<ReadWriteMutex> SubProject::mutex() const {
  const boost::shared_ptr<const ThreadSafe> project = projectMutex().lock();
  if (!project) return {};
  return {project, &project->readWriteMutex()};
}

}  // namespace Kestova
