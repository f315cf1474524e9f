#include "host/Kestova/ReadWriteMutex.h"

#include <cstdio>
#include <utility>

#include "host/Kestova/KestovaException.h"

namespace Kestova {

thread_local ReadWriteMutex::ReadHold* ReadWriteMutex::t_readHolds = nullptr;

bool ReadWriteMutex::isWriter() const {
  // Only this thread ever stores its own identity here, so any order of loads sees it.
  return m_writer.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

// By this thread. It rarely holds more than one or two locks.
bool ReadWriteMutex::isRead() const {
  for (const ReadHold* hold = t_readHolds; hold != nullptr; hold = hold->next) {
    if (hold->mutex == this) return true;
  }
  return false;
}

void ReadWriteMutex::lockRead(ReadHold& hold) {
  if (isWriter()) {
    ++m_holds;
    return;
  }
  if (!isRead()) {
    if (m_gateIsClosed.load()) {
      m_gate.lock();
      m_gate.unlock();
    }
    m_lock.lock_shared();
  }
  hold.mutex = this;
  hold.next = t_readHolds;
  t_readHolds = &hold;
}

void ReadWriteMutex::unlockRead(ReadHold& hold) {
  if (isWriter()) {
    unlockWrite();
    return;
  }
  ReadHold** place = &t_readHolds;
  while (*place != &hold) place = &(*place)->next;
  *place = hold.next;
  if (!isRead()) m_lock.unlock_shared();
}

void ReadWriteMutex::lockWrite() {
  if (!isWriter()) {
    if (isRead()) {
      static constexpr char kComplaint[] = "write lock asked for while holding only a read lock";
      std::fprintf(stderr, "ReadWriteMutex: assertion failed: %s\n", kComplaint);
      throw KestovaException(kComplaint);
    }
    m_gate.lock();
    m_gateIsClosed = true;
    m_lock.lock();
    m_writer.store(std::this_thread::get_id(), std::memory_order_relaxed);
  }
  ++m_holds;
}

void ReadWriteMutex::unlockWrite() {
  if (--m_holds != 0) return;
  m_writer.store({}, std::memory_order_relaxed);
  m_lock.unlock();
  m_gateIsClosed = false;
  m_gate.unlock();
}

ReadWriteMutex::ScopedReadLock::ScopedReadLock(boost::shared_ptr<ReadWriteMutex> mutex)
    : m_mutex(std::move(mutex)) {
  if (m_mutex) m_mutex->lockRead(m_hold);
}

ReadWriteMutex::ScopedReadLock::~ScopedReadLock() {
  if (m_mutex) m_mutex->unlockRead(m_hold);
}

ReadWriteMutex::ScopedWriteLock::ScopedWriteLock(boost::shared_ptr<ReadWriteMutex> mutex)
    : m_mutex(std::move(mutex)) {
  if (m_mutex) m_mutex->lockWrite();
}

ReadWriteMutex::ScopedWriteLock::~ScopedWriteLock() {
  if (m_mutex) m_mutex->unlockWrite();
}

}  // namespace Kestova
