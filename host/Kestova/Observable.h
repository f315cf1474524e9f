// What tells its observers that it has changed.
#pragma once

namespace Kestova {

/// Told of changes, in the thread that makes them.
class Observer {
 public:
  virtual ~Observer() = default;

  /// The observed object has changed. It may attach and detach observers, itself included, and
  /// notify again. What it throws ends the round and reaches the one who made the change, which
  /// stands.
  virtual void changed() = 0;
};

/// Observers are not owned: one that goes away detaches first.
class Observable {
 public:
  virtual ~Observable() = default;

  /// Adds `observer` behind those already there. One that is there already stays as it is.
  virtual void attach(Observer* observer) = 0;

  /// Adds an observer that is told of each change even while others wait for the end of a batch.
  virtual void attachWithoutNotifyDelay(Observer* observer) = 0;

  virtual void detach(Observer* observer) = 0;

  /// Tells the observers, in order of attaching. One that is detached meanwhile is not called any
  /// more, one that is attached meanwhile waits for the next change.
  virtual void notify() = 0;
};

}  // namespace Kestova
