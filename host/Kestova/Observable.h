// An object that notifies observers of its changes.
#pragma once

namespace Kestova {

/// Called for changes, by the thread that makes them.
class Observer {
 public:
  virtual ~Observer() = default;

  /// Called after the observed object changed. It may attach and detach observers, itself included,
  /// and notify again. An exception ends the round and propagates to the caller of the operation;
  /// the change itself is kept.
  virtual void changed() = 0;
};

/// Observers are not owned: an observer detaches before it is destroyed.
class Observable {
 public:
  virtual ~Observable() = default;

  /// Appends `observer`. Has no effect if it is already attached.
  virtual void attach(Observer* observer) = 0;

  /// Appends an observer that is called for each change even during a batch of changes.
  virtual void attachWithoutNotifyDelay(Observer* observer) = 0;

  /// Removes `observer`. Has no effect if it is not attached.
  virtual void detach(Observer* observer) = 0;

  /// Calls the observers in the order in which they were attached. An observer that is detached
  /// during the round is not called any more; one that is attached during it is first called for
  /// the next change.
  virtual void notify() = 0;
};

}  // namespace Kestova
