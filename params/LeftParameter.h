// A parameter whose value holds until the next keyframe. Every stream is loaded into one.
#pragma once

#include "params/ParameterImpl.h"

namespace Kestova {

/// Instantiated for the eight value types. Its step interpolater cannot be replaced, neither for
/// the parameter nor for one of its keyframes.
///
/// `setValue(value, time)` writes to the keyframe whose value holds just before `time`, although
/// `valueAt` a keyframe's time returns that keyframe's value:
///
///   no keyframes                       adds one at `time` with lead-in 0
///   at or before the first keyframe    writes to the first
///   otherwise                          writes to the last one strictly before `time`
template <class T>
class LeftParameter : public ParameterImpl<T> {
 public:
  using ParameterImpl<T>::ParameterImpl;

  /// The caller holds the lock of `other`.
  LeftParameter(const LeftParameter& other);
  LeftParameter& operator=(const LeftParameter&) = delete;
  ~LeftParameter() override;

  /// The empty text.
  std::string description() const override;

  // ParameterInterface
  std::string name() const override;
  void accept(ParameterVisitor& visitor) override;
  void accept(ConstParameterVisitor& visitor) const override;

  // Parameter. A keyframe with an interpolater of its own throws KeyFrameException at its time,
  // with an empty message.
  void addKeyFrame(const boost::shared_ptr<KeyFrame<T>>& keyFrame) override;
  using ParameterImpl<T>::addKeyFrame;
  boost::shared_ptr<KeyFrame<T>> replaceKeyFrame(
      const RationalTime& time, const boost::shared_ptr<KeyFrame<T>>& keyFrame) override;
  T valueAt(const RationalTime& time) const override;
  T setValue(const T& value, const RationalTime& time) override;
  using ParameterImpl<T>::setValue;
  boost::shared_ptr<Interpolater<T>> interpolater() const override;

  /// Changes nothing and returns null.
  boost::shared_ptr<Interpolater<T>> setInterpolater(
      const boost::shared_ptr<Interpolater<T>>& interpolater) override;
  boost::shared_ptr<Interpolater<T>> defaultInterpolater() const override;

  /// Copies under the read lock. The caller owns the copy.
  LeftParameter* clone() const override;
};

}  // namespace Kestova
