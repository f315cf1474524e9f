// The interface of a keyframed parameter with values of one type.
#pragma once

#include <boost/smart_ptr/enable_shared_from_this.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <memory>
#include <string>

#include "host/Kestova/Identified.h"
#include "host/Kestova/Interpolater.h"
#include "host/Kestova/Json.h"
#include "host/Kestova/UiHints.h"
#include "host/Kestova/ValueBounds.h"
#include "params/KeyFrame.h"
#include "params/ParameterInterface.h"

namespace Kestova {

class KeyFrameListener;

/// Instantiated for the eight value types. Locks and the order of the operations: see
/// ParameterInterface. A KeyFrameException carries the time that was refused and the parameter's
/// name; an operation that throws it has changed nothing, unless it says otherwise.
///
/// An observer or listener may drop the last reference to the parameter. The operation that calls
/// it holds its own reference: it completes, calls the others, and the parameter is destroyed when
/// the operation returns. Requires: a parameter that no shared pointer owns, or to which another
/// thread attaches an observer during the operation, is not destroyed during it.
///
/// Placement of keyframes: a time is occupied when a keyframe has it or when it is strictly inside
/// the lead-in of the next keyframe. A lead-in may reach back to the time of the previous keyframe
/// but not past it.
///
///   with keyframes at 10 (lead-in 0) and 20 (lead-in 4)
///     add at 10 or 20          refused: occupied
///     add at 16, lead-in 0     fits: the start of the lead-in of 20
///     add at 17, lead-in 0     refused: inside the lead-in of 20
///     add at 15, lead-in 5     fits: reaches 10 exactly
///     add at 15, lead-in 6     refused: reaches past 10
template <class T>
class Parameter : public ParameterInterface,
                  public Identified,
                  public boost::enable_shared_from_this<Parameter<T>> {
 public:
  ~Parameter() override;

  /// Listeners are called when a keyframe is added or removed, after the observers and in the order
  /// in which they were added. They are not owned. A listener that is added twice is called twice;
  /// removing it removes both.
  virtual void addKeyFrameListener(KeyFrameListener* listener);
  virtual void removeKeyFrameListener(KeyFrameListener* listener);

  /// Writes the parameter as a JSON member. The default throws std::runtime_error.
  virtual void toJSON(const JSONOptions& options, int indent, const std::string& leadingText,
                      const std::string& namePrefix) const;
  virtual bool isSerializable() const;

  /// Adds a keyframe. Requires: it is not null and in no parameter. Throws KeyFrameException when
  /// it does not fit.
  virtual void addKeyFrame(const boost::shared_ptr<KeyFrame<T>>& keyFrame) = 0;

  /// Creates and adds a keyframe. Throws KeyFrameException when it does not fit.
  virtual void addKeyFrame(const RationalTime& time, const T& value,
                           const RationalTime& leadInLength) = 0;

  /// Replaces the keyframe at `time` with `keyFrame`, sets the time of `keyFrame` to `time`, and
  /// returns the old keyframe. Throws KeyFrameException when there is none or when the new lead-in
  /// does not fit.
  virtual boost::shared_ptr<KeyFrame<T>> replaceKeyFrame(
      const RationalTime& time, const boost::shared_ptr<KeyFrame<T>>& keyFrame) = 0;

  /// Sets the value of a keyframe and returns the previous value. The keyframe notifies its
  /// observers when the value differs, the parameter always. Throws KeyFrameException when there is
  /// no keyframe at the time.
  virtual T setKeyFrameValue(const boost::shared_ptr<KeyFrame<T>>& keyFrame, const T& value) = 0;
  virtual T setKeyFrameValue(const RationalTime& time, const T& value) = 0;

  /// Removes a keyframe and returns it. Throws KeyFrameException when there is none.
  virtual boost::shared_ptr<KeyFrame<T>> removeKeyFrame(const RationalTime& time) = 0;

  /// Sets the lead-in of a keyframe and returns the previous one. Throws KeyFrameException when
  /// there is no keyframe or when the new lead-in would reach past the previous keyframe.
  virtual RationalTime setKeyFrameLeadInLength(const RationalTime& time,
                                               const RationalTime& leadInLength) = 0;

  /// The value at any time. Throws KeyFrameException at 0 without keyframes. (read lock)
  ///
  ///   at or before the first keyframe         its value
  ///   at or after the last keyframe           its value
  ///   at a keyframe                           its value
  ///   between, less than one frame before     the later value (with an edit-rate source only)
  ///   between                                 interpolated from both values, by the later
  ///                                           keyframe's own interpolater if it has one
  virtual T valueAt(const RationalTime& time) const = 0;

  /// Sets the value at a time, or at 0. The class defines which keyframe is written. Returns the
  /// previous value of that keyframe, or T() when one was added.
  virtual T setValue(const T& value, const RationalTime& time) = 0;
  virtual T setValue(const T& value) = 0;

  virtual boost::shared_ptr<Interpolater<T>> interpolater() const = 0;

  /// Returns the previous interpolater.
  virtual boost::shared_ptr<Interpolater<T>> setInterpolater(
      const boost::shared_ptr<Interpolater<T>>& interpolater) = 0;
  virtual boost::shared_ptr<Interpolater<T>> defaultInterpolater() const = 0;

  /// The keyframe at exactly this time. Throws KeyFrameException when there is none. (read lock)
  virtual boost::shared_ptr<KeyFrame<T>> keyFrameAt(const RationalTime& time) = 0;
  virtual boost::shared_ptr<const KeyFrame<T>> keyFrameAt(const RationalTime& time) const = 0;

  /// True when there is a keyframe in `range`, both ends included. (read lock)
  virtual bool hasKeyFrameIn(const Range<RationalTime>& range) const = 0;

  /// INT64_MAX when there is none. (read lock)
  virtual RationalTime firstKeyFrameTime() const = 0;

  // The placement rules above. Exact; never throw.
  virtual bool isOccupied(const RationalTime& time) const;
  virtual bool leadInFits(const RationalTime& time, const RationalTime& leadInLength) const;
  virtual bool canAddKeyFrame(const RationalTime& time, const RationalTime& leadInLength) const;

  /// True when both have keyframes at the same times with the same values (NaN equals NaN) and
  /// lead-ins. Comparing two empty parameters throws the KeyFrameException of `valueAt`.
  virtual bool isEquivalentTo(const Parameter& other) const;
  virtual bool differsFrom(const Parameter& other) const;

  /// Shared with copies of the parameter; may be null.
  virtual boost::shared_ptr<ValueBounds<T>> valueBounds() const;
  virtual void setValueBounds(const boost::shared_ptr<ValueBounds<T>>& bounds);
  virtual boost::shared_ptr<UiHints> uiHints() const;
  virtual void setUiHints(const boost::shared_ptr<UiHints>& hints);

  /// The keyframe at `firstKeyFrameTime`, null when there is none.
  boost::shared_ptr<KeyFrame<T>> firstKeyFrame() {
    return numKeyFrames() < 1 ? boost::shared_ptr<KeyFrame<T>>() : keyFrameAt(firstKeyFrameTime());
  }

 protected:
  Parameter();

  /// A copy shares bounds and hints and has no listeners.
  Parameter(const Parameter& other);

  /// True once a listener was added, even if it was removed again.
  bool hasHadListeners() const { return m_keyFrameListeners != nullptr; }

  /// Calls the listeners. Requires: a shared pointer owns the parameter, or there are no listeners.
  void announceAdded(const RationalTime& time);
  void announceRemoved(const RationalTime& time);

 private:
  struct Listeners;
  using Announcement = void (KeyFrameListener::*)(const boost::shared_ptr<ParameterInterface>&,
                                                  const RationalTime&);
  void announce(Announcement announcement, RationalTime time);

  // Guarded by the project's lock.
  std::unique_ptr<Listeners> m_keyFrameListeners;  // null until the first one is added
  boost::shared_ptr<ValueBounds<T>> m_valueBounds;
  boost::shared_ptr<UiHints> m_uiHints;
};

}  // namespace Kestova
