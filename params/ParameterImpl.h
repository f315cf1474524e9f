// The shared implementation of keyframed parameters: their keyframes, observers and placement
// checks.
#pragma once

#include <atomic>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "params/Attribute.h"
#include "params/KeyFrameMapUtil.h"
#include "params/Parameter.h"
#include "params/Slabs.h"

namespace Kestova {

struct NextKeyFrame;

/// Locks: see ParameterInterface. Derived classes define the interpolater and the name.
template <class T>
class ParameterImpl : public Parameter<T> {
 public:
  /// Creates a parameter without keyframes. `owner`, which may be empty, is the project whose lock
  /// guards the parameter and its keyframes; `editRateSource` is not owned and may be null.
  ParameterImpl(const boost::weak_ptr<const ThreadSafe>& owner, const std::string& identifier,
                const EditRateSource* editRateSource);
  ~ParameterImpl() override;

  // SubProject
  boost::weak_ptr<const ThreadSafe> projectMutex() const override;

  // ParameterInterface
  Range<RationalTime> keyFrameRange() const override;
  void shiftKeyFrames(const RationalTime& offset,
                      const std::function<bool(const RationalTime&)>& predicate) override;
  std::uint32_t numKeyFrames() const override;
  boost::shared_ptr<std::vector<RationalTime>> keyFrameTimes() const override;
  void moveKeyFrame(const RationalTime& from, const RationalTime& to) override;
  RationalTime previousKeyFrameTime(const RationalTime& time) const override;
  RationalTime nextKeyFrameTime(const RationalTime& time) const override;
  bool keyFrameExists(const RationalTime& time) const override;
  void interfaceHook2() override;
  bool valueChanges(const RationalTime& time1, const RationalTime& time2) const override;
  void setEditRateSource(const EditRateSource* source) override;

  // Parameter
  void addKeyFrame(const boost::shared_ptr<KeyFrame<T>>& keyFrame) override;
  void addKeyFrame(const RationalTime& time, const T& value,
                   const RationalTime& leadInLength) override;
  boost::shared_ptr<KeyFrame<T>> replaceKeyFrame(
      const RationalTime& time, const boost::shared_ptr<KeyFrame<T>>& keyFrame) override;
  T setKeyFrameValue(const boost::shared_ptr<KeyFrame<T>>& keyFrame, const T& value) override;
  T setKeyFrameValue(const RationalTime& time, const T& value) override;
  boost::shared_ptr<KeyFrame<T>> removeKeyFrame(const RationalTime& time) override;
  RationalTime setKeyFrameLeadInLength(const RationalTime& time,
                                       const RationalTime& leadInLength) override;
  T valueAt(const RationalTime& time) const override;

  /// Without keyframes adds one at `time` with lead-in 0. Otherwise sets the keyframe at exactly
  /// `time`; throws KestovaException "error" when there is none.
  T setValue(const T& value, const RationalTime& time) override;
  T setValue(const T& value) override;
  boost::shared_ptr<KeyFrame<T>> keyFrameAt(const RationalTime& time) override;
  boost::shared_ptr<const KeyFrame<T>> keyFrameAt(const RationalTime& time) const override;
  bool hasKeyFrameIn(const Range<RationalTime>& range) const override;
  RationalTime firstKeyFrameTime() const override;
  bool isEquivalentTo(const Parameter<T>& other) const override;

  /// Writes the parameter as one member: `leadingText` unchanged, then at `indent` its name,
  /// without a leading `namePrefix`, and its value. A parameter with the default interpolater, no
  /// bounds, and no keyframes or a single one without lead-in is written as its value alone, unless
  /// it is named "toc", "quiz", "captions" or "captionData"; without keyframes this throws the
  /// KeyFrameException of `valueAt`. Other parameters are written as objects with all their
  /// keyframes. docs/serialisation.md defines the text. Text written before a failure remains.
  void toJSON(const JSONOptions& options, int indent, const std::string& leadingText,
              const std::string& namePrefix) const override;

  /// Called by `toJSON` for derived classes that add members. Writes nothing and returns false.
  virtual bool writeExtraJSON(const JSONOptions& options, int indent) const;

  // Identified
  boost::shared_ptr<Attribute<std::string>> identifier() override;
  boost::shared_ptr<const Attribute<std::string>> identifier() const override;

  // Observable
  void attach(Observer* observer) override;
  void attachWithoutNotifyDelay(Observer* observer) override;
  void detach(Observer* observer) override;
  void notify() override;

  // XMLable: the element "Parameter" with its keyframes in time order
  void xmlElementName(XMLOptions& options) const override;
  void xmlBody(XMLOptions& options, int indent) const override;

  // MetaDatable
  MetaDataMap* createMetaDataMap() override;
  MetaDataMap* metaDataMap() const override;

 protected:
  /// A copy has copies of the keyframes, of the identifier and of the metadata, shares the owner
  /// and the edit-rate source, and has no observers. The caller holds the lock.
  ParameterImpl(const ParameterImpl& other);

  const KeyFrameMap<T>& keyFrames() const { return m_keyFrames; }

  /// `valueAt` for a parameter whose interpolater is `common`; null stands for `interpolater()`. A
  /// pointer that counts no references saves two atomic operations.
  T valueAt(const RationalTime& time, const Interpolater<T>* common) const;

 private:
  using KeyFramePointer = boost::shared_ptr<KeyFrame<T>>;

  using Entry = typename KeyFrameMap<T>::const_iterator;
  using Position = typename KeyFrameMap<T>::Position;

  boost::shared_ptr<Parameter<T>> keptAlive();
  KeyFramePointer makeKeyFrame(const RationalTime& time, const T& value,
                               const RationalTime& leadInLength);

  [[noreturn]] void refuse(const RationalTime& time) const;
  Entry lookUp(const RationalTime& time) const;
  bool isAt(Entry entry, const RationalTime& time) const;
  Entry existing(const RationalTime& time) const;
  Entry existingWithRoom(const RationalTime& time, const RationalTime& leadInLength) const;
  Entry roomFor(const RationalTime& time, const RationalTime& leadInLength) const;
  NextKeyFrame neighbour(Entry next) const;
  void insert(Entry next, const RationalTime& time, KeyFramePointer keyFrame);
  KeyFramePointer erase(Entry entry);

  // Guarded by the project's lock.
  Slabs::Pointer m_keyFrameMemory;  // null until it makes one beside another
  KeyFrameMap<T> m_keyFrames;
  boost::shared_ptr<Attribute<std::string>> m_identifier;
  const boost::weak_ptr<const ThreadSafe> m_owner;
  std::unique_ptr<MetaDataMap> m_metaData;
  KeyFrameMapUtil<T> m_mapUtil;
  Subject m_changeSubject;
  std::atomic<bool> m_isObserved{false};  // set by the first attach, from any thread
  const EditRateSource* m_editRateSource;

  // The result of the last lookup, a hint for the next one, which is often near. A hint that
  // another reader has overwritten only costs a search.
  mutable std::atomic<Position> m_lastPosition{Position{}};
};

}  // namespace Kestova
