#include "params/KeyFrame.h"

#include "params/ValueTraits.h"

namespace Kestova {

template <class T>
KeyFrame<T>::KeyFrame(const boost::weak_ptr<const ThreadSafe>& owner, const RationalTime& time,
                      const T& value, const RationalTime& leadInLength)
    : Subject(owner), m_time(time), m_value(value) {
  if (leadInLength != kNothingRare.leadInLength) ownRare().leadInLength = leadInLength;
}

template <class T>
KeyFrame<T>::KeyFrame(const KeyFrame& other)
    : XMLIdentified(other),
      SubProject(other),
      Subject(other),
      m_time(other.m_time),
      m_value(other.m_value) {
  if (!other.m_rare) return;
  const Rare& rare = *other.m_rare;
  m_rare.reset(new Rare{rare.leadInLength, rare.interpolater,
                        MetaDatable::cloneMetaData(rare.metaData.get())});
}

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
typename KeyFrame<T>::Rare& KeyFrame<T>::ownRare() {
  if (!m_rare) m_rare = std::make_unique<Rare>();
  return *m_rare;
}

template <class T>
template <class Value>
void KeyFrame<T>::setRare(Value Rare::*member, const Value& value) {
  if (rare().*member == value) return;
  ownRare().*member = value;
  this->notify();
}

template <class T>
void KeyFrame<T>::setTime(const RationalTime& time) {
  if (m_time == time) return;
  m_time = time;
  this->notify();
}

template <class T>
void KeyFrame<T>::setValue(const T& value) {
  const T verified = ValueTraits<T>::verifyValue(value);
  if (m_value == verified) return;
  m_value = verified;
  this->notify();
}

template <class T>
void KeyFrame<T>::setLeadInLength(const RationalTime& leadInLength) {
  setRare(&Rare::leadInLength, leadInLength);
}

template <class T>
void KeyFrame<T>::setInterpolater(const boost::shared_ptr<Interpolater<T>>& interpolater) {
  setRare(&Rare::interpolater, interpolater);
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
  ownRare().metaData = std::make_unique<MetaDataMap>();
  return m_rare->metaData.get();
}

template <class T>
MetaDataMap* KeyFrame<T>::metaDataMap() const {
  return rare().metaData.get();
}

#define KESTOVA_KEYFRAME(T) template class KeyFrame<T>;
KESTOVA_FOR_EACH_PARAMETER_TYPE(KESTOVA_KEYFRAME)

}  // namespace Kestova
