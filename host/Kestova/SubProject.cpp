#include "host/Kestova/SubProject.h"

#include "host/Kestova/ThreadSafe.h"

namespace Kestova {

SubProject::~SubProject() = default;

boost::shared_ptr<ReadWriteMutex> SubProject::mutex() const {
  return lockOf(projectMutex());
}

}  // namespace Kestova
