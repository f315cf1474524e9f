// A part of a project, guarded by the project's lock.
#pragma once

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

  /// The lock of the project. What is handed out keeps the project alive; it is null, and stands
  /// for no lock at all, when there is no project or it has gone.
  virtual boost::shared_ptr<ReadWriteMutex> mutex() const;

  /// The project.
  virtual boost::weak_ptr<const ThreadSafe> projectMutex() const = 0;

  /// Hooks for hosts; the parts that are built here do nothing and answer false.
  virtual void interfaceHook() = 0;
  virtual bool interfaceQuery() const = 0;

 protected:
  SubProject() = default;
  SubProject(const SubProject&) = default;
  SubProject& operator=(const SubProject&) = default;
};

}  // namespace Kestova
