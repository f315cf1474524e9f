#include "params/Parameter.h"

#include <stdexcept>

#include "calls/CallList.h"
#include "host/Kestova/KeyFrameListener.h"
#include "params/Placement.h"
#include "params/ValueTypes.h"

namespace Kestova {

template <class T>
struct Parameter<T>::Listeners : calls::CallList<KeyFrameListener*> {};

template <class T>
Parameter<T>::Parameter() = default;

template <class T>
Parameter<T>::Parameter(const Parameter& other)
    : XMLIdentified(other),
      ParameterInterface(other),
      Identified(other),
      boost::enable_shared_from_this<Parameter<T>>(),
      m_valueBounds(other.m_valueBounds),
      m_uiHints(other.m_uiHints) {}

template <class T>
Parameter<T>::~Parameter() = default;

template <class T>
void Parameter<T>::addKeyFrameListener(KeyFrameListener* listener) {
  if (!m_keyFrameListeners) m_keyFrameListeners = std::make_unique<Listeners>();
  m_keyFrameListeners->add(listener);
}

template <class T>
void Parameter<T>::removeKeyFrameListener(KeyFrameListener* listener) {
  if (m_keyFrameListeners) m_keyFrameListeners->remove(listener);
}

template <class T>
void Parameter<T>::toJSON(const JSONOptions& /*options*/, int /*indent*/,
                          const std::string& /*leadingText*/,
                          const std::string& /*namePrefix*/) const {
  throw std::runtime_error("Serializing unserializable parameter " + this->name());
}

template <class T>
bool Parameter<T>::isSerializable() const {
  return true;
}

template <class T>
bool Parameter<T>::isOccupied(const RationalTime& time) const {
  if (this->keyFrameExists(time)) return true;
  const RationalTime next = this->nextKeyFrameTime(time);
  if (!this->keyFrameExists(next)) return false;
  const RationalTime leadIn = this->keyFrameAt(next)->leadInLength();
  return !fitsBetween(beforeAllTimes(), {next, leadIn}, time, RationalTime(0));
}

template <class T>
bool Parameter<T>::leadInFits(const RationalTime& time, const RationalTime& leadInLength) const {
  return fitsBetween(this->previousKeyFrameTime(time), NextKeyFrame(), time, leadInLength);
}

template <class T>
bool Parameter<T>::canAddKeyFrame(const RationalTime& time,
                                  const RationalTime& leadInLength) const {
  return !this->isOccupied(time) && this->leadInFits(time, leadInLength);
}

template <class T>
bool Parameter<T>::isEquivalentTo(const Parameter& /*other*/) const {
  return false;
}

template <class T>
bool Parameter<T>::differsFrom(const Parameter& other) const {
  return !this->isEquivalentTo(other);
}

template <class T>
boost::shared_ptr<ValueBounds<T>> Parameter<T>::valueBounds() const {
  return m_valueBounds;
}

template <class T>
void Parameter<T>::setValueBounds(const boost::shared_ptr<ValueBounds<T>>& bounds) {
  m_valueBounds = bounds;
}

template <class T>
boost::shared_ptr<UiHints> Parameter<T>::uiHints() const {
  return m_uiHints;
}

template <class T>
void Parameter<T>::setUiHints(const boost::shared_ptr<UiHints>& hints) {
  m_uiHints = hints;
}

// Without listeners `time` is not read, because its keyframe may be a cache miss.
template <class T>
void Parameter<T>::announceAdded(const RationalTime& time) {
  if (m_keyFrameListeners) announce(&KeyFrameListener::keyFrameAdded, time);
}

template <class T>
void Parameter<T>::announceRemoved(const RationalTime& time) {
  if (m_keyFrameListeners) announce(&KeyFrameListener::keyFrameRemoved, time);
}

// `time` is a copy: a listener may free the keyframe that it belongs to.
template <class T>
void Parameter<T>::announce(Announcement announcement, RationalTime time) {
  if (m_keyFrameListeners->empty()) return;
  const boost::shared_ptr<ParameterInterface> self = this->shared_from_this();
  typename Listeners::Round round(*m_keyFrameListeners);
  while (KeyFrameListener* const* const listener = round.next(*m_keyFrameListeners)) {
    ((*listener)->*announcement)(self, time);
  }
}

#define KESTOVA_PARAMETER(T) template class Parameter<T>;
KESTOVA_FOR_EACH_PARAMETER_TYPE(KESTOVA_PARAMETER)

}  // namespace Kestova
