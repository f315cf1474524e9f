// A value at a time.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <memory>

#include "host/Kestova/Interpolater.h"
#include "host/Kestova/RationalTime.h"
#include "host/Kestova/SubProject.h"
#include "host/Kestova/Subject.h"

namespace Kestova {

/// Built for the eight value types. Reading takes no lock; who changes a keyframe of a parameter
/// holds the project's write lock. A keyframe notifies its own observers when its time, value,
/// lead-in or interpolater is set to something different.
///
/// What is read of a keyframe is inline and everything else virtual, so that a host can use it
/// without linking to the body.
template <class T>
class KeyFrame : public SubProject, public Subject {
 public:
  KeyFrame(const boost::weak_ptr<const ThreadSafe>& owner, const RationalTime& time, const T& value,
           const RationalTime& leadInLength);

  /// A copy has the time, value and lead-in, shares the interpolater, has copies of the metadata
  /// and no observers.
  KeyFrame(const KeyFrame& other);
  KeyFrame& operator=(const KeyFrame&) = delete;
  ~KeyFrame() override;

  // In the unit of the parameter. The references are good until the next change.
  const RationalTime& time() const { return m_time; }
  const T& value() const { return m_value; }

  /// The span before the time that belongs to this keyframe: the transition into it.
  const RationalTime& leadInLength() const { return m_leadInLength; }

  /// Null unless the keyframe has an interpolater of its own, which then rules the interval that
  /// ends here.
  const boost::shared_ptr<Interpolater<T>>& interpolater() const { return m_interpolater; }

  // SubProject
  boost::weak_ptr<const ThreadSafe> projectMutex() const override;
  void interfaceHook() override;
  bool interfaceQuery() const override;

  /// Requires: the keyframe is in no parameter, whose map it would break; `moveKeyFrame` of the
  /// parameter moves those.
  virtual void setTime(const RationalTime& time);

  /// Sets what `verifyValue` makes of `value`. Equality is ==, so that NaN differs from NaN.
  virtual void setValue(const T& value);

  virtual void setLeadInLength(const RationalTime& leadInLength);
  virtual void setInterpolater(const boost::shared_ptr<Interpolater<T>>& interpolater);

  /// Equality without tolerance in which NaN equals NaN.
  virtual bool similarToValue(const T& value) const;

  /// Takes no lock. The caller owns the copy.
  KeyFrame* clone() const override;

  // XMLable: the element "Keyframe" with time, value and lead-in, and its metadata inside. The run
  // of attributes begins and ends with a space of its own; that is part of the form.
  void xmlElementName(XMLOptions& options) const override;
  void xmlAttributes(XMLOptions& options) const override;
  void xmlBody(XMLOptions& options, int indent) const override;

  // MetaDatable
  MetaDataMap* createMetaDataMap() override;
  MetaDataMap* metaDataMap() const override;

 private:
  template <class Member, class Value>
  void change(Member& member, const Value& value);

  RationalTime m_time;
  T m_value;
  RationalTime m_leadInLength;
  boost::shared_ptr<Interpolater<T>> m_interpolater;
  std::unique_ptr<MetaDataMap> m_metaData;
};

}  // namespace Kestova
