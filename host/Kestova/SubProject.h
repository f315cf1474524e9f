// A part of a project, guarded by the project's lock.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include "host/Kestova/Cloneable.h"
#include "host/Kestova/Export.h"
#include "host/Kestova/KvObject.h"
#include "host/Kestova/MetaDatable.h"
#include "host/Kestova/XMLable.h"

namespace Kestova {

class KESTOVA_API SubProject : public KvObject,
                               public XMLable,
                               public MetaDatable,
                               public Cloneable {
 public:
  ~SubProject() override;

  /// Returns the lock of the project. The pointer keeps the project alive. It is null, and locks
  /// nothing, if there is no project or it was destroyed.
  virtual boost::shared_ptr<ReadWriteMutex> mutex() const;

  /// Returns the project.
  virtual boost::weak_ptr<const ThreadSafe> projectMutex() const = 0;

  /// Hooks for hosts. The classes of this module do nothing and return false.
  virtual void interfaceHook() = 0;
  virtual bool interfaceQuery() const = 0;

 protected:
  SubProject() = default;
  SubProject(const SubProject&) = default;
  SubProject& operator=(const SubProject&) = default;
};

}  // namespace Kestova
