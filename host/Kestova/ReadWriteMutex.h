// The lock of a project. Many threads may read, one may write.
//
// The thread that holds the write lock may take it again and may take read locks; the exclusive
// hold ends with the last of them. A thread that holds a read lock may take more of them even while
// a writer waits. A waiting writer is not starved: once it waits, threads that hold nothing queue
// behind it. Asking for the write lock while holding only a read lock can never succeed; it is
// reported on standard error and throws KestovaException instead of waiting for ever.
//
// Locks belong to the thread that took them and are released by it.
#pragma once

#include <atomic>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <mutex>
#include <shared_mutex>
#include <thread>

#include "host/Kestova/Export.h"

namespace Kestova {

class KESTOVA_API ReadWriteMutex {
  // One hold of a thread, in the list of all that it has. It lives in the lock object: a
  // thread-local container would need a destructor, which on some platforms runs after its memory
  // is gone.
  struct ReadHold {
    const ReadWriteMutex* mutex = nullptr;
    ReadHold* next = nullptr;
  };

 public:
  /// Holds a read lock for the life of the object and keeps what owns the mutex alive as long. An
  /// empty pointer stands for an object without a project: there is nobody to lock against.
  class KESTOVA_API ScopedReadLock {
   public:
    explicit ScopedReadLock(boost::shared_ptr<ReadWriteMutex> mutex);
    ~ScopedReadLock();
    ScopedReadLock(const ScopedReadLock&) = delete;
    ScopedReadLock& operator=(const ScopedReadLock&) = delete;

   private:
    const boost::shared_ptr<ReadWriteMutex> m_mutex;
    ReadHold m_hold;
  };

  /// The same for the write lock.
  class KESTOVA_API ScopedWriteLock {
   public:
    explicit ScopedWriteLock(boost::shared_ptr<ReadWriteMutex> mutex);
    ~ScopedWriteLock();
    ScopedWriteLock(const ScopedWriteLock&) = delete;
    ScopedWriteLock& operator=(const ScopedWriteLock&) = delete;

   private:
    const boost::shared_ptr<ReadWriteMutex> m_mutex;
  };

  ReadWriteMutex() = default;
  ReadWriteMutex(const ReadWriteMutex&) = delete;
  ReadWriteMutex& operator=(const ReadWriteMutex&) = delete;

 private:
  void lockRead(ReadHold& hold);
  void unlockRead(ReadHold& hold);
  void lockWrite();
  void unlockWrite();

  bool isWriter() const;
  bool isAmong(const ReadHold* holds) const;

  static thread_local ReadHold* t_readHolds;

  // Self-synchronised. A writer holds the gate from its wait to its release, so that readers who
  // come while it waits stand at the gate instead of joining those it waits for.
  std::mutex m_gate;
  std::shared_mutex m_lock;
  std::atomic<bool> m_gateIsClosed{false};
  std::atomic<std::thread::id> m_writer{};

  unsigned m_holds = 0;  // of the writing thread; guarded by the write lock
};

}  // namespace Kestova
