#include "params/ParameterImpl.h"

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <utility>

#include "host/Kestova/EditRateSource.h"
#include "host/Kestova/KeyFrameException.h"
#include "host/Kestova/ReadWriteMutex.h"
#include "params/ExactTime.h"
#include "params/OwnerLock.h"
#include "params/ParameterIterator.h"
#include "params/Placement.h"
#include "params/SlabAllocator.h"
#include "params/ValueTraits.h"

namespace Kestova {

using ReadLock = ReadWriteMutex::ScopedReadLock;

template <class T>
ParameterImpl<T>::ParameterImpl(const boost::weak_ptr<const ThreadSafe>& owner,
                                const std::string& identifier, const EditRateSource* editRateSource)
    : m_identifier(boost::make_shared<Attribute<std::string>>(std::string(), owner)),
      m_owner(owner),
      m_changeSubject(owner),
      m_editRateSource(editRateSource) {
  m_identifier->setValue(identifier);
}

template <class T>
ParameterImpl<T>::ParameterImpl(const ParameterImpl& other)
    : XMLIdentified(other),
      Parameter<T>(other),
      m_identifier(boost::make_shared<Attribute<std::string>>(*other.m_identifier)),
      m_owner(other.m_owner),
      m_metaData(MetaDatable::cloneMetaData(other.m_metaData.get())),
      m_changeSubject(other.m_changeSubject),
      m_editRateSource(other.m_editRateSource) {
  for (const auto& [time, keyFrame] : other.m_keyFrames) {
    m_keyFrames.insert(m_keyFrames.end(), time, KeyFramePointer(keyFrame->clone()));
  }
}

template <class T>
ParameterImpl<T>::~ParameterImpl() = default;

template <class T>
boost::weak_ptr<const ThreadSafe> ParameterImpl<T>::projectMutex() const {
  return m_owner;
}

template <class T>
Range<RationalTime> ParameterImpl<T>::keyFrameRange() const {
  const RationalTime first = this->firstKeyFrameTime();
  if (first == afterAllTimes()) return {first, RationalTime()};
  return {first, this->previousKeyFrameTime(afterAllTimes()) - first};
}

template <class T>
void ParameterImpl<T>::shiftKeyFrames(const RationalTime& offset,
                                      const std::function<bool(const RationalTime&)>& predicate) {
  const auto self = this->weak_from_this().lock();  // the predicate may drop the last reference
  auto batch = m_changeSubject.disableNotifies();
  std::vector<KeyFramePointer> moved;
  for (ParameterIterator<T> at(*this); !at.atEnd(); at.next()) {
    if (predicate(at.time())) moved.push_back(this->removeKeyFrame(at.time()));
  }
  for (KeyFramePointer& keyFrame : moved) {
    this->addKeyFrame(keyFrame->time() + offset, keyFrame->value(), keyFrame->leadInLength());
    keyFrame.reset();  // frees its memory for the next one
  }
  batch.release();
  this->notify();
}

template <class T>
std::uint32_t ParameterImpl<T>::numKeyFrames() const {
  return static_cast<std::uint32_t>(m_keyFrames.size());
}

template <class T>
boost::shared_ptr<std::vector<RationalTime>> ParameterImpl<T>::keyFrameTimes() const {
  auto times = boost::make_shared<std::vector<RationalTime>>();
  times->reserve(m_keyFrames.size());
  for (auto entry = m_keyFrames.begin(); entry != m_keyFrames.end(); ++entry) {
    times->push_back(entry.time());
  }
  return times;
}

template <class T>
void ParameterImpl<T>::moveKeyFrame(const RationalTime& from, const RationalTime& to) {
  const Entry moving = existing(from);
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the entry moves
  const KeyFramePointer keyFrame = moving.value();
  const auto self = this->weak_from_this().lock();
  const Entry notBefore = lookUp(to);
  if (isAt(notBefore, to)) refuse(to);

  // The moving keyframe is not its own neighbour, except from INT64_MAX, where the time that
  // stands for "none" leads to it again.
  RationalTime previous = m_mapUtil.previousTime(m_keyFrames, notBefore);
  if (previous == from) previous = m_mapUtil.previousTime(m_keyFrames, moving);
  Entry next = notBefore;
  if (next == moving && from != afterAllTimes()) ++next;
  if (!fitsBetween(previous, neighbour(next), to, keyFrame->leadInLength())) refuse(to);

  const RationalTime target = to;  // a copy: `to` may refer to the time of the moving keyframe
  insert(notBefore, target, keyFrame);
  erase(lookUp(from));
  keyFrame->setTime(target);
  this->notify();
}

template <class T>
RationalTime ParameterImpl<T>::previousKeyFrameTime(const RationalTime& time) const {
  const ReadLock lock(lockOf(m_owner));
  return m_mapUtil.previousTime(m_keyFrames, lookUp(time));
}

template <class T>
RationalTime ParameterImpl<T>::nextKeyFrameTime(const RationalTime& time) const {
  const ReadLock lock(lockOf(m_owner));
  return m_mapUtil.nextTime(m_keyFrames, lookUp(time), time);
}

template <class T>
bool ParameterImpl<T>::keyFrameExists(const RationalTime& time) const {
  const ReadLock lock(lockOf(m_owner));
  return isAt(lookUp(time), time);
}

template <class T>
void ParameterImpl<T>::interfaceHook2() {}

template <class T>
bool ParameterImpl<T>::valueChanges(const RationalTime& time1, const RationalTime& time2) const {
  return this->valueAt(time1) != this->valueAt(time2);
}

template <class T>
void ParameterImpl<T>::setEditRateSource(const EditRateSource* source) {
  m_editRateSource = source;
}

template <class T>
void ParameterImpl<T>::addKeyFrame(const KeyFramePointer& keyFrame) {
  const RationalTime time = keyFrame->time();
  insert(roomFor(time, keyFrame->leadInLength()), time, keyFrame);
  const auto self = keptAlive();
  this->notify();
  this->announceAdded(time);
}

template <class T>
void ParameterImpl<T>::addKeyFrame(const RationalTime& time, const T& value,
                                   const RationalTime& leadInLength) {
  const Entry next = roomFor(time, leadInLength);
  insert(next, time, makeKeyFrame(time, value, leadInLength));
  const auto self = keptAlive();
  const RationalTime added = time;  // a copy: an observer may free the keyframe of `time`
  this->notify();
  this->announceAdded(added);
}

template <class T>
boost::shared_ptr<KeyFrame<T>> ParameterImpl<T>::replaceKeyFrame(const RationalTime& time,
                                                                 const KeyFramePointer& keyFrame) {
  const Entry replaced = existingWithRoom(time, keyFrame->leadInLength());
  const RationalTime target = replaced.time();
  KeyFramePointer old = m_keyFrames.exchange(replaced, keyFrame);
  const RationalTime oldTime = old->time();
  const auto self = this->weak_from_this().lock();
  keyFrame->setTime(target);
  this->notify();
  this->announceRemoved(oldTime);
  this->announceAdded(target);
  return old;
}

template <class T>
T ParameterImpl<T>::setKeyFrameValue(const KeyFramePointer& keyFrame, const T& value) {
  return this->setKeyFrameValue(keyFrame->time(), value);
}

template <class T>
T ParameterImpl<T>::setKeyFrameValue(const RationalTime& time, const T& value) {
  const KeyFramePointer keyFrame = existing(time).value();
  const auto self = this->weak_from_this().lock();
  T old = keyFrame->value();
  keyFrame->setValue(value);
  this->notify();
  return old;
}

template <class T>
boost::shared_ptr<KeyFrame<T>> ParameterImpl<T>::removeKeyFrame(const RationalTime& time) {
  KeyFramePointer removed = erase(existing(time));
  const auto self = keptAlive();
  this->notify();
  this->announceRemoved(removed->time());
  return removed;
}

template <class T>
RationalTime ParameterImpl<T>::setKeyFrameLeadInLength(const RationalTime& time,
                                                       const RationalTime& leadInLength) {
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): an observer may remove it
  const KeyFramePointer keyFrame = existingWithRoom(time, leadInLength).value();
  const auto self = this->weak_from_this().lock();
  const RationalTime old = keyFrame->leadInLength();
  keyFrame->setLeadInLength(leadInLength);
  this->notify();
  return old;
}

template <class T>
T ParameterImpl<T>::valueAt(const RationalTime& time) const {
  return valueAt(time, nullptr);
}

template <class T>
T ParameterImpl<T>::valueAt(const RationalTime& time, const Interpolater<T>* common) const {
  const ReadLock lock(lockOf(m_owner));
  if (m_keyFrames.empty()) throw KeyFrameException(RationalTime(0), this->name());
  const Entry next = lookUp(time);
  if (next == m_keyFrames.end()) return next.previousValue()->value();
  const KeyFrame<T>& later = *next.value();
  if (next == m_keyFrames.begin() || next.time() == time) return later.value();
  if (m_editRateSource != nullptr &&
      isLessThanOneFrame(time, later.time(), m_editRateSource->editRate())) {
    return later.value();
  }
  const KeyFrame<T>& earlier = *next.previousValue();
  const auto valueBy = [&](const Interpolater<T>& interpolater) {
    return interpolater.interpolate(earlier.value(), later.value(), earlier.time(), later.time(),
                                    time.toDouble(), later.leadInLength());
  };
  if (later.interpolater()) return valueBy(*later.interpolater());
  return common != nullptr ? valueBy(*common) : valueBy(*this->interpolater());
}

template <class T>
T ParameterImpl<T>::setValue(const T& value, const RationalTime& time) {
  if (m_keyFrames.empty()) {
    this->addKeyFrame(time, value, RationalTime(0));
    return T();
  }
  if (!this->keyFrameExists(time)) throw KestovaException("error");
  return this->setKeyFrameValue(time, value);
}

template <class T>
T ParameterImpl<T>::setValue(const T& value) {
  return this->setValue(value, RationalTime(0));
}

template <class T>
boost::shared_ptr<KeyFrame<T>> ParameterImpl<T>::keyFrameAt(const RationalTime& time) {
  const ReadLock lock(lockOf(m_owner));
  return existing(time).value();
}

template <class T>
boost::shared_ptr<const KeyFrame<T>> ParameterImpl<T>::keyFrameAt(const RationalTime& time) const {
  const ReadLock lock(lockOf(m_owner));
  return existing(time).value();
}

template <class T>
bool ParameterImpl<T>::hasKeyFrameIn(const Range<RationalTime>& range) const {
  const ReadLock lock(lockOf(m_owner));
  const Entry first = lookUp(range.start);
  return first != m_keyFrames.end() &&
         compareWithDifference(range.start, first.time(), range.length) >= 0;
}

template <class T>
RationalTime ParameterImpl<T>::firstKeyFrameTime() const {
  const ReadLock lock(lockOf(m_owner));
  return m_mapUtil.firstTime(m_keyFrames);
}

template <class T>
bool ParameterImpl<T>::isEquivalentTo(const Parameter<T>& other) const {
  if (this->numKeyFrames() != other.numKeyFrames()) return false;
  if (m_keyFrames.empty()) {
    return ValueTraits<T>::similarToValue(this->valueAt(RationalTime(0)),
                                          other.valueAt(RationalTime(0)));
  }
  for (const auto& [time, keyFrame] : m_keyFrames) {
    if (!other.keyFrameExists(time)) return false;
    const auto counterpart = other.keyFrameAt(time);
    if (!keyFrame->similarToValue(counterpart->value()) ||
        keyFrame->leadInLength() != counterpart->leadInLength()) {
      return false;
    }
  }
  return true;
}

template <class T>
boost::shared_ptr<Attribute<std::string>> ParameterImpl<T>::identifier() {
  return m_identifier;
}

template <class T>
boost::shared_ptr<const Attribute<std::string>> ParameterImpl<T>::identifier() const {
  return m_identifier;
}

template <class T>
void ParameterImpl<T>::attach(Observer* observer) {
  m_isObserved.store(true, std::memory_order_relaxed);
  m_changeSubject.attach(observer);
}

template <class T>
void ParameterImpl<T>::attachWithoutNotifyDelay(Observer* observer) {
  m_isObserved.store(true, std::memory_order_relaxed);
  m_changeSubject.attachWithoutNotifyDelay(observer);
}

template <class T>
void ParameterImpl<T>::detach(Observer* observer) {
  m_changeSubject.detach(observer);
}

template <class T>
void ParameterImpl<T>::notify() {
  const auto self = keptAlive();
  m_changeSubject.notify();
}

template <class T>
MetaDataMap* ParameterImpl<T>::createMetaDataMap() {
  m_metaData = std::make_unique<MetaDataMap>();
  return m_metaData.get();
}

template <class T>
MetaDataMap* ParameterImpl<T>::metaDataMap() const {
  return m_metaData.get();
}

// A reference to this parameter for the rest of an operation, because an observer or listener may
// drop the last one. Null if nothing was ever attached, which saves two atomic operations per
// keyframe that is added or removed.
template <class T>
boost::shared_ptr<Parameter<T>> ParameterImpl<T>::keptAlive() {
  const bool isObserved = m_isObserved.load(std::memory_order_relaxed) || this->hasHadListeners();
  return isObserved ? this->weak_from_this().lock() : nullptr;
}

template <class T>
boost::shared_ptr<KeyFrame<T>> ParameterImpl<T>::makeKeyFrame(const RationalTime& time,
                                                              const T& value,
                                                              const RationalTime& leadInLength) {
  if (!m_keyFrameMemory && !m_keyFrames.empty()) m_keyFrameMemory = Slabs::create();
  const SlabAllocator<KeyFrame<T>, 1> memory(m_keyFrameMemory.get());
  return boost::allocate_shared<KeyFrame<T>>(memory, m_owner, time, value, leadInLength);
}

template <class T>
void ParameterImpl<T>::refuse(const RationalTime& time) const {
  throw KeyFrameException(time, this->name());
}

// The lower bound of `time`. The caller of this and of all functions below holds the lock.
template <class T>
typename ParameterImpl<T>::Entry ParameterImpl<T>::lookUp(const RationalTime& time) const {
  const Position hint = m_lastPosition.load(std::memory_order_relaxed);
  const Entry found = m_keyFrames.lowerBound(time, hint);
  if (found.position() != hint) m_lastPosition.store(found.position(), std::memory_order_relaxed);
  return found;
}

template <class T>
bool ParameterImpl<T>::isAt(Entry entry, const RationalTime& time) const {
  return entry != m_keyFrames.end() && entry.time() == time;
}

template <class T>
typename ParameterImpl<T>::Entry ParameterImpl<T>::existing(const RationalTime& time) const {
  const Entry found = lookUp(time);
  if (!isAt(found, time)) refuse(time);
  return found;
}

// The keyframe at `time`. Throws when a new lead-in does not fit.
template <class T>
typename ParameterImpl<T>::Entry ParameterImpl<T>::existingWithRoom(
    const RationalTime& time, const RationalTime& leadInLength) const {
  const Entry found = existing(time);
  const RationalTime previous = m_mapUtil.previousTime(m_keyFrames, found);
  if (!fitsBetween(previous, NextKeyFrame(), time, leadInLength)) refuse(time);
  return found;
}

// The entry before which a new keyframe is inserted. Throws when it does not fit.
template <class T>
typename ParameterImpl<T>::Entry ParameterImpl<T>::roomFor(const RationalTime& time,
                                                           const RationalTime& leadInLength) const {
  const Entry next = m_keyFrames.lowerBound(time);
  const RationalTime previous = m_mapUtil.previousTime(m_keyFrames, next);
  if (isAt(next, time) || !fitsBetween(previous, neighbour(next), time, leadInLength)) refuse(time);
  return next;
}

template <class T>
NextKeyFrame ParameterImpl<T>::neighbour(Entry next) const {
  if (next == m_keyFrames.end()) return {};
  return {next.time(), next.value()->leadInLength()};
}

template <class T>
void ParameterImpl<T>::insert(Entry next, const RationalTime& time, KeyFramePointer keyFrame) {
  m_keyFrames.insert(next, time, std::move(keyFrame));
  m_lastPosition.store(next.position(), std::memory_order_relaxed);
}

template <class T>
boost::shared_ptr<KeyFrame<T>> ParameterImpl<T>::erase(Entry entry) {
  // The next keyframe moves to this position.
  m_lastPosition.store(entry.position(), std::memory_order_relaxed);
  return m_keyFrames.erase(entry);
}

#define KESTOVA_PARAMETER_IMPL(T) template class ParameterImpl<T>;
KESTOVA_FOR_EACH_PARAMETER_TYPE(KESTOVA_PARAMETER_IMPL)

}  // namespace Kestova
