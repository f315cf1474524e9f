// An observable that can send one notification for a batch of changes. Every keyframe is one, so
// its size without observers is its owner and one pointer.
#pragma once

#include <atomic>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include "host/Kestova/Export.h"
#include "host/Kestova/Observable.h"

namespace Kestova {

class ThreadSafe;

/// attach and detach may be called from any thread. notify calls the observers on the calling
/// thread and holds no lock of the subject during the calls: a call to an observer may still be
/// running when another thread returns from detach, unless both threads hold the project's lock. An
/// observer may destroy the subject during its call; the observers after it are then not called.
class KESTOVA_API Subject : public Observable {
 public:
  /// Delays the notifications of a subject during its lifetime. Guards nest. Releasing the
  /// outermost one sends one notification for all that were delayed, if there were any, to the
  /// observers that were attached with delay. The subject must outlive its guards.
  class KESTOVA_API NotifyDisabler {
   public:
    NotifyDisabler(NotifyDisabler&& other) noexcept;
    NotifyDisabler(const NotifyDisabler&) = delete;
    NotifyDisabler& operator=(const NotifyDisabler&) = delete;
    NotifyDisabler& operator=(NotifyDisabler&&) = delete;

    /// Calls `release` and discards what an observer throws.
    ~NotifyDisabler();

    /// Ends the delay now. What an observer throws propagates. A second call does nothing.
    void release();

   private:
    friend class Subject;
    explicit NotifyDisabler(Subject* subject) : m_subject(subject) {}

    Subject* m_subject;
  };

  explicit Subject(const boost::weak_ptr<const ThreadSafe>& owner);

  /// A copy has the owner and no observers.
  Subject(const Subject& other);
  Subject& operator=(const Subject&) = delete;
  ~Subject() override;

  void attach(Observer* observer) override;
  void attachWithoutNotifyDelay(Observer* observer) override;
  void detach(Observer* observer) override;
  void notify() override;

  NotifyDisabler disableNotifies();

 protected:
  const boost::weak_ptr<const ThreadSafe>& owner() const { return m_owner; }

 private:
  struct State;
  using StatePointer = boost::intrusive_ptr<State>;
  State& state();

  const boost::weak_ptr<const ThreadSafe> m_owner;
  std::atomic<State*> m_state{nullptr};  // created on first use
};

}  // namespace Kestova
