// An observable whose changes can be told as one batch. Idle, it takes no more room than its owner
// and one pointer, since every keyframe carries one.
#pragma once

#include <atomic>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include "host/Kestova/Export.h"
#include "host/Kestova/Observable.h"

namespace Kestova {

class ThreadSafe;

/// attach and detach may be called from any thread. notify runs its calls in the calling thread and
/// holds no lock of the subject during them; an observer that another thread detaches may still be
/// in a call when detach returns, unless both threads hold the project's lock. An observer may
/// destroy the subject during its call; the observers behind it are then not called.
class KESTOVA_API Subject : public Observable {
 public:
  /// Holds back the notifications of a subject while it lives. Guards nest; the release of the
  /// outermost one sends one notification for all that came meanwhile, if any came, to the
  /// observers that wait for it. The subject must outlive its guards.
  class KESTOVA_API NotifyDisabler {
   public:
    NotifyDisabler(NotifyDisabler&& other) noexcept;
    NotifyDisabler(const NotifyDisabler&) = delete;
    NotifyDisabler& operator=(const NotifyDisabler&) = delete;
    NotifyDisabler& operator=(NotifyDisabler&&) = delete;

    /// Releases like `release`, but swallows what an observer throws.
    ~NotifyDisabler();

    /// Ends the hold now; what an observer throws reaches the caller. Nothing when already ended.
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

  /// True until the first attach or disableNotifies: notify calls nobody.
  bool isIdle() const { return m_state.load(std::memory_order_relaxed) == nullptr; }

 protected:
  const boost::weak_ptr<const ThreadSafe>& owner() const { return m_owner; }

 private:
  struct State;
  using StatePointer = boost::intrusive_ptr<State>;
  State& state();

  const boost::weak_ptr<const ThreadSafe> m_owner;
  std::atomic<State*> m_state{nullptr};  // made when first needed, then kept
};

}  // namespace Kestova
