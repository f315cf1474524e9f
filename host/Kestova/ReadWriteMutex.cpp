#include "host/Kestova/ReadWriteMutex.h"

#include <cstdio>
#include <utility>

#include "host/Kestova/KestovaException.h"

namespace Kestova {

thread_local ReadWriteMutex::ReadHold* ReadWriteMutex::t_readHolds = nullptr;

bool ReadWriteMutex::isWriter() const {
  // Only this thread stores its own identity, so a relaxed load suffices.
  return m_writer.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

// Called by the thread that owns the list, which rarely has more than two entries.
bool ReadWriteMutex::isAmong(const ReadHold* holds) const {
  while (holds != nullptr && holds->mutex != this) holds = holds->next;
  return holds != nullptr;
}

// Counts this thread as a reader, after it has waited for a writer if there is one. If this thread
// is the writer, counts one more lock of it and returns false.
bool ReadWriteMutex::enter() {
  if ((m_readers.fetch_add(1, std::memory_order_acquire) & kWriting) == 0) return true;
  if (isWriter()) {
    m_readers.fetch_sub(1, std::memory_order_relaxed);
    ++m_holds;
    return false;
  }
  leave();
  const std::lock_guard<std::mutex> gate(m_gate);  // behind it nobody writes
  m_readers.fetch_add(1, std::memory_order_acquire);
  return true;
}

void ReadWriteMutex::leave() {
  if (m_readers.fetch_sub(1, std::memory_order_release) != (kWriting | 1U)) return;
  const std::lock_guard<std::mutex> lock(m_exit);
  m_lastReaderLeft.notify_one();
}

void ReadWriteMutex::lockRead(ReadHold& hold) {
  ReadHold*& holds = t_readHolds;
  if (!isAmong(holds) && !enter()) return;
  hold.mutex = this;
  hold.next = holds;
  holds = &hold;
}

void ReadWriteMutex::unlockRead(ReadHold& hold) {
  if (hold.mutex == nullptr) {
    unlockWrite();
    return;
  }
  ReadHold*& holds = t_readHolds;
  ReadHold** link = &holds;
  while (*link != &hold) link = &(*link)->next;
  *link = hold.next;
  if (!isAmong(holds)) leave();
}

void ReadWriteMutex::lockWrite() {
  if (!isWriter()) {
    if (isAmong(t_readHolds)) {
      static constexpr char kComplaint[] = "write lock asked for while holding only a read lock";
      std::fprintf(stderr, "ReadWriteMutex: assertion failed: %s\n", kComplaint);
      throw KestovaException(kComplaint);
    }
    m_gate.lock();
    m_readers.fetch_or(kWriting, std::memory_order_acquire);
    std::unique_lock<std::mutex> lock(m_exit);
    m_lastReaderLeft.wait(lock,
                          [this] { return m_readers.load(std::memory_order_acquire) == kWriting; });
    m_writer.store(std::this_thread::get_id(), std::memory_order_relaxed);
  }
  ++m_holds;
}

void ReadWriteMutex::unlockWrite() {
  if (--m_holds != 0) return;
  m_writer.store({}, std::memory_order_relaxed);
  m_readers.fetch_and(~kWriting, std::memory_order_release);
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
