// Walks the keyframes of a parameter in time order.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include "params/KeyFrameMapUtil.h"
#include "params/Parameter.h"

namespace Kestova {

/// Keeps the parameter alive by reference only: it must outlive the walk. The parameter may change
/// meanwhile; the walk goes on at the first keyframe after the present time. INT64_MAX stands for
/// the end, so that a keyframe at that very time is not seen.
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
