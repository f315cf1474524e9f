// The lock of a project: many readers or one writer.
//
// The thread that holds the write lock may take it again and may take read locks; it keeps
// exclusive access until it releases the last of them. A thread that holds a read lock may take
// further read locks even while a writer waits. A waiting writer is not starved: threads without a
// lock queue behind it. Requesting the write lock while holding only a read lock would deadlock; it
// is reported on standard error and throws KestovaException instead.
//
// The thread that takes a lock releases it.
#pragma once

#include <atomic>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "host/Kestova/Export.h"

namespace Kestova {

class KESTOVA_API ReadWriteMutex {
  // One read lock of a thread, in the thread's list of read locks. It is a member of the lock
  // object, because a thread-local container would need a destructor, which on some platforms runs
  // after its memory is freed.
  struct ReadHold {
    const ReadWriteMutex* mutex = nullptr;  // null under the thread's own write lock
    ReadHold* next = nullptr;
  };

 public:
  /// Holds a read lock and a reference to the owner of the mutex during the lifetime of the object.
  /// A null pointer locks nothing: it stands for an object without a project. The constructor waits
  /// without a time limit.
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

  /// The same for the write lock. The constructor throws KestovaException in a thread that holds
  /// only a read lock of this mutex.
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

  bool enter();
  void leave();
  bool isWriter() const;
  bool isAmong(const ReadHold* holds) const;

  static constexpr std::uint32_t kWriting = std::uint32_t{1} << 31U;

  static thread_local ReadHold* t_readHolds;

  // The number of reading threads, and kWriting while a writer waits or writes. To take a read lock
  // costs one operation on it if nobody writes, and to release it another. For a short time it also
  // counts a thread that finds a writer there.
  std::atomic<std::uint32_t> m_readers{0};

  // A writer holds the gate from the start of its wait to its release, so that new readers wait at
  // the gate and do not delay the writer.
  std::mutex m_gate;

  // Where a writer waits for the readers to leave.
  std::mutex m_exit;
  std::condition_variable m_lastReaderLeft;

  std::atomic<std::thread::id> m_writer{};
  unsigned m_holds = 0;  // locks of the writing thread; guarded by the write lock
};

}  // namespace Kestova
