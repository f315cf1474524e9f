#include "host/Kestova/Subject.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <mutex>

#include "calls/CallList.h"
#include "host/Kestova/ThreadSafe.h"

namespace Kestova {

// Shared by the subject and its rounds of calls, because an observer may destroy the subject.
struct Subject::State : boost::intrusive_ref_counter<Subject::State> {
  enum class To { All, Undelayed, Delayed };

  struct Attached {
    Observer* observer;
    bool isDelayed;
    bool operator==(const Attached& other) const { return observer == other.observer; }
  };

  void attach(const Attached& attached) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (!observers.contains(attached)) observers.add(attached);
  }

  void notify() {
    std::unique_lock<std::mutex> lock(mutex);
    if (disablers != 0) isPending = true;
    deliver(lock, disablers != 0 ? To::Undelayed : To::All);
  }

  void enable() {
    std::unique_lock<std::mutex> lock(mutex);
    if (--disablers != 0 || !isPending) return;
    isPending = false;
    deliver(lock, To::Delayed);
  }

  void deliver(std::unique_lock<std::mutex>& lock, To whom) {
    calls::CallList<Attached>::Round round(observers);
    while (const Attached* const next = round.next(observers)) {
      if (whom != To::All && next->isDelayed != (whom == To::Delayed)) continue;
      Observer* const observer = next->observer;
      lock.unlock();
      observer->changed();
      lock.lock();
    }
  }

  std::mutex mutex;  // guards what follows
  calls::CallList<Attached> observers;
  unsigned disablers = 0;
  bool isPending = false;
};

Subject::Subject(const boost::weak_ptr<const ThreadSafe>& owner) : m_owner(owner) {}

Subject::Subject(const Subject& other) : Observable(other), m_owner(other.m_owner) {}

Subject::~Subject() {
  const StatePointer last(m_state.load(), false);
  if (!last) return;
  const std::lock_guard<std::mutex> lock(last->mutex);
  last->observers = {};  // ends the rounds of calls in progress
}

Subject::State& Subject::state() {
  State* present = m_state.load(std::memory_order_acquire);
  if (present == nullptr) {
    StatePointer made(new State);
    if (m_state.compare_exchange_strong(present, made.get())) present = made.detach();
  }
  return *present;
}

void Subject::attach(Observer* observer) {
  state().attach({observer, true});
}

void Subject::attachWithoutNotifyDelay(Observer* observer) {
  state().attach({observer, false});
}

void Subject::detach(Observer* observer) {
  State* const present = m_state.load(std::memory_order_acquire);
  if (present == nullptr) return;
  const std::lock_guard<std::mutex> lock(present->mutex);
  present->observers.remove({observer, true});
}

void Subject::notify() {
  if (const StatePointer present = m_state.load(std::memory_order_acquire)) present->notify();
}

Subject::NotifyDisabler Subject::disableNotifies() {
  State& present = state();
  const std::lock_guard<std::mutex> lock(present.mutex);
  ++present.disablers;
  return NotifyDisabler(this);
}

Subject::NotifyDisabler::NotifyDisabler(NotifyDisabler&& other) noexcept
    : m_subject(other.m_subject) {
  other.m_subject = nullptr;
}

Subject::NotifyDisabler::~NotifyDisabler() {
  try {
    release();
  } catch (...) {  // an exception during unwinding would end the process
  }
}

void Subject::NotifyDisabler::release() {
  if (m_subject == nullptr) return;
  Subject* const subject = m_subject;
  m_subject = nullptr;
  const StatePointer state(&subject->state());
  state->enable();
}

}  // namespace Kestova
