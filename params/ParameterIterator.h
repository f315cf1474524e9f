// Iterates over the keyframes of a parameter in time order.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include "host/Kestova/RationalTime.h"
#include "params/KeyFrame.h"
#include "params/Parameter.h"
#include "params/TimeLimits.h"

namespace Kestova {

/// Refers to the parameter, which must outlive the iterator. The parameter may change during the
/// iteration, which continues at the first keyframe after the current time. INT64_MAX marks the
/// end, so a keyframe at that time is not visited.
template <class T>
class ParameterIterator {
 public:
  explicit ParameterIterator(const Parameter<T>& parameter)
      : m_parameter(parameter), m_time(parameter.firstKeyFrameTime()) {}
  virtual ~ParameterIterator() = default;

  bool atEnd() const { return m_time == afterAllTimes(); }

  /// Requires: not at the end.
  const RationalTime& time() const { return m_time; }
  boost::shared_ptr<const KeyFrame<T>> keyFrame() const { return m_parameter.keyFrameAt(m_time); }
  void next() { m_time = m_parameter.nextKeyFrameTime(m_time); }

 private:
  const Parameter<T>& m_parameter;
  RationalTime m_time;
};

}  // namespace Kestova
