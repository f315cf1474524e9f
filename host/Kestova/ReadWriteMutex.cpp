#include "host/Kestova/ReadWriteMutex.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "host/Kestova/KestovaException.h"

namespace Kestova {

namespace {

struct ReadHold {
  const ReadWriteMutex* mutex;
  unsigned count;
};

// The mutexes that this thread reads under. A thread rarely holds more than one.
std::vector<ReadHold>& readHolds() {
  thread_local std::vector<ReadHold> holds;
  return holds;
}

std::vector<ReadHold>::iterator findHold(const ReadWriteMutex* mutex) {
  auto& holds = readHolds();
  return std::find_if(holds.begin(), holds.end(),
                      [mutex](const ReadHold& hold) { return hold.mutex == mutex; });
}

}  // namespace

bool ReadWriteMutex::isWriter() const {
  // Only this thread ever stores its own identity here, so any order of loads sees it.
  return m_writer.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

void ReadWriteMutex::lockRead() {
  if (isWriter()) {
    ++m_holds;
    return;
  }
  const auto hold = findHold(this);
  if (hold != readHolds().end()) {
    ++hold->count;
    return;
  }
  readHolds().push_back({this, 1});  // first, since it may run out of memory
  if (m_gateIsClosed.load()) {
    m_gate.lock();
    m_gate.unlock();
  }
  m_lock.lock_shared();
}

void ReadWriteMutex::unlockRead() {
  if (isWriter()) {
    unlockWrite();
    return;
  }
  const auto hold = findHold(this);
  if (--hold->count != 0) return;
  readHolds().erase(hold);
  m_lock.unlock_shared();
}

void ReadWriteMutex::lockWrite() {
  if (!isWriter()) {
    if (findHold(this) != readHolds().end()) {
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
  if (m_mutex) m_mutex->lockRead();
}

ReadWriteMutex::ScopedReadLock::~ScopedReadLock() {
  if (m_mutex) m_mutex->unlockRead();
}

ReadWriteMutex::ScopedWriteLock::ScopedWriteLock(boost::shared_ptr<ReadWriteMutex> mutex)
    : m_mutex(std::move(mutex)) {
  if (m_mutex) m_mutex->lockWrite();
}

ReadWriteMutex::ScopedWriteLock::~ScopedWriteLock() {
  if (m_mutex) m_mutex->unlockWrite();
}

}  // namespace Kestova
