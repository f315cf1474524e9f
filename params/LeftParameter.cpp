#include "params/LeftParameter.h"

#include "host/Kestova/KeyFrameException.h"
#include "host/Kestova/ParameterVisitor.h"
#include "host/Kestova/ReadWriteMutex.h"
#include "params/ValueTypes.h"

namespace Kestova {

namespace {

template <class T>
void requireNoInterpolater(const KeyFrame<T>& keyFrame) {
  if (keyFrame.interpolater()) throw KeyFrameException(keyFrame.time(), "");
}

}  // namespace

template <class T>
LeftParameter<T>::LeftParameter(const LeftParameter& other)
    : XMLIdentified(other), ParameterImpl<T>(other) {}

template <class T>
LeftParameter<T>::~LeftParameter() = default;

template <class T>
std::string LeftParameter<T>::description() const {
  return {};
}

template <class T>
std::string LeftParameter<T>::name() const {
  return this->identifier()->value();
}

template <class T>
void LeftParameter<T>::accept(ParameterVisitor& visitor) {
  visitor.visit(boost::static_pointer_cast<LeftParameter>(this->shared_from_this()));
}

template <class T>
void LeftParameter<T>::accept(ConstParameterVisitor& visitor) const {
  visitor.visit(boost::static_pointer_cast<const LeftParameter>(this->shared_from_this()));
}

template <class T>
void LeftParameter<T>::addKeyFrame(const boost::shared_ptr<KeyFrame<T>>& keyFrame) {
  requireNoInterpolater(*keyFrame);
  ParameterImpl<T>::addKeyFrame(keyFrame);
}

template <class T>
boost::shared_ptr<KeyFrame<T>> LeftParameter<T>::replaceKeyFrame(
    const RationalTime& time, const boost::shared_ptr<KeyFrame<T>>& keyFrame) {
  requireNoInterpolater(*keyFrame);
  return ParameterImpl<T>::replaceKeyFrame(time, keyFrame);
}

template <class T>
T LeftParameter<T>::valueAt(const RationalTime& time) const {
  static const boost::shared_ptr<const Interpolater<T>> step = LeftInterpolater<T>::getInstance();
  return ParameterImpl<T>::valueAt(time, step.get());
}

template <class T>
T LeftParameter<T>::setValue(const T& value, const RationalTime& time) {
  const KeyFrameMap<T>& keyFrames = this->keyFrames();
  if (keyFrames.empty()) return ParameterImpl<T>::setValue(value, time);
  auto written = keyFrames.lowerBound(time);
  if (written != keyFrames.begin()) --written;
  return this->setKeyFrameValue(written.value(), value);
}

template <class T>
boost::shared_ptr<Interpolater<T>> LeftParameter<T>::interpolater() const {
  return LeftInterpolater<T>::getInstance();
}

template <class T>
boost::shared_ptr<Interpolater<T>> LeftParameter<T>::setInterpolater(
    const boost::shared_ptr<Interpolater<T>>& /*interpolater*/) {
  return {};
}

template <class T>
boost::shared_ptr<Interpolater<T>> LeftParameter<T>::defaultInterpolater() const {
  return LeftInterpolater<T>::getInstance();
}

template <class T>
LeftParameter<T>* LeftParameter<T>::clone() const {
  const ReadWriteMutex::ScopedReadLock lock(this->mutex());
  return new LeftParameter(*this);
}

#define KESTOVA_LEFT_PARAMETER(T) template class LeftParameter<T>;
KESTOVA_FOR_EACH_PARAMETER_TYPE(KESTOVA_LEFT_PARAMETER)

}  // namespace Kestova
