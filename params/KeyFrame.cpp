#include "params/KeyFrame.h"

#include "params/ValueTraits.h"

namespace Kestova {

template <class T>
KeyFrame<T>::KeyFrame(const boost::weak_ptr<const ThreadSafe>& owner, const RationalTime& time,
                      const T& value, const RationalTime& leadInLength)
    : Subject(owner), m_time(time), m_value(value), m_leadInLength(leadInLength) {}

template <class T>
KeyFrame<T>::KeyFrame(const KeyFrame& other)
    : XMLIdentified(other),
      SubProject(other),
      Subject(other),
      m_time(other.m_time),
      m_value(other.m_value),
      m_leadInLength(other.m_leadInLength),
      m_interpolater(other.m_interpolater),
      m_metaData(MetaDatable::cloneMetaData(other.m_metaData.get())) {}

template <class T>
KeyFrame<T>::~KeyFrame() = default;

template <class T>
boost::weak_ptr<const ThreadSafe> KeyFrame<T>::projectMutex() const {
  return this->owner();
}

template <class T>
void KeyFrame<T>::interfaceHook() {}

template <class T>
bool KeyFrame<T>::interfaceQuery() const {
  return false;
}

template <class T>
template <class Member, class Value>
void KeyFrame<T>::change(Member& member, const Value& value) {
  if (member == value) return;
  member = value;
  this->notify();
}

template <class T>
void KeyFrame<T>::setTime(const RationalTime& time) {
  change(m_time, time);
}

template <class T>
void KeyFrame<T>::setValue(const T& value) {
  change(m_value, ValueTraits<T>::verifyValue(value));
}

template <class T>
void KeyFrame<T>::setLeadInLength(const RationalTime& leadInLength) {
  change(m_leadInLength, leadInLength);
}

template <class T>
void KeyFrame<T>::setInterpolater(const boost::shared_ptr<Interpolater<T>>& interpolater) {
  change(m_interpolater, interpolater);
}

template <class T>
bool KeyFrame<T>::similarToValue(const T& value) const {
  return ValueTraits<T>::similarToValue(m_value, value);
}

template <class T>
KeyFrame<T>* KeyFrame<T>::clone() const {
  return new KeyFrame(*this);
}

template <class T>
MetaDataMap* KeyFrame<T>::createMetaDataMap() {
  m_metaData = std::make_unique<MetaDataMap>();
  return m_metaData.get();
}

template <class T>
MetaDataMap* KeyFrame<T>::metaDataMap() const {
  return m_metaData.get();
}

#define KESTOVA_KEYFRAME(T) template class KeyFrame<T>;
KESTOVA_FOR_EACH_PARAMETER_TYPE(KESTOVA_KEYFRAME)

}  // namespace Kestova
