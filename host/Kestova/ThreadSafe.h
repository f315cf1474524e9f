// The object, usually the project, whose lock guards everything that belongs to it.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include "host/Kestova/Export.h"
#include "host/Kestova/ReadWriteMutex.h"

namespace Kestova {

class KESTOVA_API ThreadSafe {
 public:
  ThreadSafe();
  virtual ~ThreadSafe();
  ThreadSafe(const ThreadSafe&) = delete;
  ThreadSafe& operator=(const ThreadSafe&) = delete;

  /// The lock of everything that this object owns. Locking is no change of the object.
  ReadWriteMutex& readWriteMutex() const { return m_mutex; }

 private:
  mutable ReadWriteMutex m_mutex;
};

/// The lock of what belongs to `owner`. It keeps the owner alive; null, which stands for no lock at
/// all, when there is no owner or it has gone.
KESTOVA_API boost::shared_ptr<ReadWriteMutex> lockOf(
    const boost::weak_ptr<const ThreadSafe>& owner);

}  // namespace Kestova
