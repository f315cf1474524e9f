// The object, usually the project, whose lock guards everything that it owns.
#pragma once

#include "host/Kestova/Export.h"
#include "host/Kestova/ReadWriteMutex.h"

namespace Kestova {

class KESTOVA_API ThreadSafe {
 public:
  ThreadSafe();
  virtual ~ThreadSafe();
  ThreadSafe(const ThreadSafe&) = delete;
  ThreadSafe& operator=(const ThreadSafe&) = delete;

  /// The lock of everything that this object owns. Locking does not count as a change.
  ReadWriteMutex& readWriteMutex() const { return m_mutex; }

 private:
  mutable ReadWriteMutex m_mutex;
};

}  // namespace Kestova
