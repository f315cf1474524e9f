// The operations of a parameter that do not depend on the type of its values.
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
/// Locks: operations marked (read lock) hold the project's read lock until they return. Operations
/// that change the parameter take no lock: the caller holds the project's write lock. For all
/// others the caller holds the project's lock, unless no other thread can access the parameter.
///
/// The host depends on the order of the virtual operations.
class ParameterInterface : public SubProject, public Observable {
 public:
  void interfaceHook() override {}
  bool interfaceQuery() const override { return false; }

  /// The text of the identifier.
  virtual std::string name() const = 0;

  /// The range from the first keyframe to the last. Without keyframes the start is INT64_MAX and
  /// the length 0. A keyframe at INT64_MAX is ignored. Throws std::overflow_error when the length
  /// does not fit.
  virtual Range<RationalTime> keyFrameRange() const = 0;

  /// Moves by `offset` every keyframe whose time satisfies `predicate`: removes all of them, then
  /// adds new keyframes, without metadata and own interpolaters, in time order. Observers get one
  /// notification for the batch and one for the operation. Throws KeyFrameException when a new
  /// keyframe does not fit; the keyframes before it are moved, the others removed, and nothing is
  /// rolled back. Throws std::bad_function_call for an empty predicate when there is a keyframe.
  virtual void shiftKeyFrames(const RationalTime& offset,
                              const std::function<bool(const RationalTime&)>& predicate) = 0;

  virtual std::uint32_t numKeyFrames() const = 0;

  /// All times, ascending. The caller owns the vector.
  virtual boost::shared_ptr<std::vector<RationalTime>> keyFrameTimes() const = 0;

  /// Moves the keyframe at `from` to `to`. Throws KeyFrameException, having changed nothing: at
  /// `from` when there is no keyframe; at `to` when it has a keyframe, when it is strictly inside
  /// the lead-in of the next keyframe, or when the lead-in would reach past the previous keyframe.
  /// The moving keyframe is not its own neighbour, except from INT64_MAX, which also stands for "no
  /// next keyframe". Keyframe listeners are not called.
  virtual void moveKeyFrame(const RationalTime& from, const RationalTime& to) = 0;

  /// The time of the last keyframe strictly before `time`, or INT64_MIN. (read lock)
  virtual RationalTime previousKeyFrameTime(const RationalTime& time) const = 0;

  /// The time of the first keyframe strictly after `time`, or INT64_MAX. (read lock)
  virtual RationalTime nextKeyFrameTime(const RationalTime& time) const = 0;

  /// True when there is a keyframe at exactly this time. (read lock)
  virtual bool keyFrameExists(const RationalTime& time) const = 0;

  /// Passes a shared pointer to this parameter to the visitor's operation for its class. Throws
  /// boost::bad_weak_ptr when no shared pointer owns the parameter.
  virtual void accept(ParameterVisitor& visitor) = 0;
  virtual void accept(ConstParameterVisitor& visitor) const = 0;

  /// A hook for hosts; does nothing.
  virtual void interfaceHook2() = 0;

  /// True when the values at the two times differ.
  virtual bool valueChanges(const RationalTime& time1, const RationalTime& time2) const = 0;

  /// Sets the source of the edit rate of this parameter's times. It is not owned and may be null.
  virtual void setEditRateSource(const EditRateSource* source) = 0;
};

}  // namespace Kestova
