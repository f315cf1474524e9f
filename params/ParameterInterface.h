// A parameter as far as it does not depend on the type of its values.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/Kestova/Observable.h"
#include "host/Kestova/Range.h"
#include "host/Kestova/RationalTime.h"
#include "host/Kestova/SubProject.h"

namespace Kestova {

class ConstParameterVisitor;
class EditRateSource;
class ParameterVisitor;

/// Times are in the unit of the parameter's owner; those of loaded parameters are frame numbers.
///
/// Locks: operations marked (read lock) hold the project's read lock for their whole run. Those
/// that change something take no lock: the caller holds the project's write lock. Of the others
/// the caller holds the project's lock unless nobody else can see the parameter.
///
/// The virtual operations stand in this order for the host.
class ParameterInterface : public SubProject, public Observable {
 public:
  void interfaceHook() override {}
  bool interfaceQuery() const override { return false; }

  /// The text of the identifier.
  virtual std::string name() const = 0;

  /// From the first keyframe to the last: its start and how long it is. Without keyframes the
  /// start is INT64_MAX and the length 0. A keyframe at INT64_MAX itself does not count. Throws
  /// std::overflow_error when the length does not fit.
  virtual Range<RationalTime> keyFrameRange() const = 0;

  /// Moves by `offset` every keyframe whose time satisfies `predicate`: removes them all, then adds
  /// new ones, without metadata and interpolaters of their own, in time order. Observers get one
  /// notification for the whole batch and one for the operation. A new keyframe that is refused
  /// (KeyFrameException) ends it with the others removed or moved: nothing is rolled back. An empty
  /// predicate throws std::bad_function_call when there is a keyframe to ask it about.
  virtual void shiftKeyFrames(const RationalTime& offset,
                              const std::function<bool(const RationalTime&)>& predicate) = 0;

  virtual std::uint32_t numKeyFrames() const = 0;

  /// All times, ascending. The vector is the caller's.
  virtual boost::shared_ptr<std::vector<RationalTime>> keyFrameTimes() const = 0;

  /// Moves the keyframe at `from` to `to`. Throws KeyFrameException, having changed nothing, at
  /// `from` when no keyframe is there, and at `to` when one is there already, when it lies strictly
  /// inside the lead-in of the next keyframe, or when the lead-in would reach past the previous
  /// one; the moving keyframe itself is no neighbour. Keyframe listeners are not told.
  virtual void moveKeyFrame(const RationalTime& from, const RationalTime& to) = 0;

  /// The time of the last keyframe strictly before `time`, INT64_MIN if none. (read lock)
  virtual RationalTime previousKeyFrameTime(const RationalTime& time) const = 0;

  /// The time of the first keyframe strictly after `time`, INT64_MAX if none. (read lock)
  virtual RationalTime nextKeyFrameTime(const RationalTime& time) const = 0;

  /// True when a keyframe has exactly this time. (read lock)
  virtual bool keyFrameExists(const RationalTime& time) const = 0;

  /// Passes a shared pointer to this parameter to the visitor's operation for its class. Throws
  /// boost::bad_weak_ptr when no shared pointer owns the parameter.
  virtual void accept(ParameterVisitor& visitor) = 0;
  virtual void accept(ConstParameterVisitor& visitor) const = 0;

  /// A hook for hosts; does nothing.
  virtual void interfaceHook2() = 0;

  /// True when the values at the two times differ.
  virtual bool valueChanges(const RationalTime& time1, const RationalTime& time2) const = 0;

  /// Sets what gives the edit rate of this parameter's times; it is not owned and may be null.
  virtual void setEditRateSource(const EditRateSource* source) = 0;
};

}  // namespace Kestova
