// A keyframe: a value at a time.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <memory>

#include "host/Kestova/Interpolater.h"
#include "host/Kestova/RationalTime.h"
#include "host/Kestova/SubProject.h"
#include "host/Kestova/Subject.h"

namespace Kestova {

/// Instantiated for the eight value types. Reading takes no lock; to change a keyframe of a
/// parameter, the caller holds the project's write lock. A keyframe notifies its observers when its
/// time, value, lead-in or interpolater is set to something different.
///
/// Accessors are inline and everything else is virtual, so that a host can use a keyframe without
/// linking to its implementation.
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

  // Times are in the unit of the parameter. The references are valid as long as the keyframe; those
  // of the lead-in and the interpolater, until one of the two is set.
  const RationalTime& time() const { return m_time; }
  const T& value() const { return m_value; }

  /// The span before the time that belongs to this keyframe: the transition into it.
  const RationalTime& leadInLength() const { return rare().leadInLength; }

  /// The keyframe's own interpolater, which replaces that of the parameter for the interval that
  /// ends here. Usually null.
  const boost::shared_ptr<Interpolater<T>>& interpolater() const { return rare().interpolater; }

  // SubProject
  boost::weak_ptr<const ThreadSafe> projectMutex() const override;
  void interfaceHook() override;
  bool interfaceQuery() const override;

  /// Requires: the keyframe is in no parameter, because the change would break the order of the
  /// parameter's map. Use `moveKeyFrame` of the parameter instead.
  virtual void setTime(const RationalTime& time);

  /// Sets `verifyValue(value)`. Compares with ==, so that setting NaN always notifies.
  virtual void setValue(const T& value);

  virtual void setLeadInLength(const RationalTime& leadInLength);
  virtual void setInterpolater(const boost::shared_ptr<Interpolater<T>>& interpolater);

  /// Equality without tolerance in which NaN equals NaN.
  virtual bool similarToValue(const T& value) const;

  /// Takes no lock. The caller owns the copy.
  KeyFrame* clone() const override;

  // XMLable: the element "Keyframe" with time, value and lead-in, and its metadata inside. The
  // attribute text starts and ends with a space; readers of the format depend on its exact bytes.
  void xmlElementName(XMLOptions& options) const override;
  void xmlAttributes(XMLOptions& options) const override;
  void xmlBody(XMLOptions& options, int indent) const override;

  // MetaDatable
  MetaDataMap* createMetaDataMap() override;
  MetaDataMap* metaDataMap() const override;

 private:
  // What few keyframes have. A loaded parameter has a million without.
  struct Rare {
    RationalTime leadInLength;
    boost::shared_ptr<Interpolater<T>> interpolater;
    std::unique_ptr<MetaDataMap> metaData;
  };
  inline static const Rare kNothingRare{};

  const Rare& rare() const { return m_rare ? *m_rare : kNothingRare; }
  Rare& ownRare();

  template <class Value>
  void setRare(Value Rare::*member, const Value& value);

  RationalTime m_time;
  T m_value;
  std::unique_ptr<Rare> m_rare;  // null for kNothingRare
};

}  // namespace Kestova
