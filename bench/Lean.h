// A minimal store of keyframes with the placement rules: the floor for the cost of loading.
//
// Its keyframe has the members and the size of `Kestova::KeyFrame`: an owner for itself and one for
// its observers, an exact time, a lead-in, an interpolater, metadata and observers. An ordered map
// holds shared pointers to keyframes. One lookup, or a comparison with the last time, decides every
// rule.
#pragma once

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

#include "host/Kestova/Point.h"
#include "host/Kestova/RationalTime.h"
#include "host/Kestova/ThreadSafe.h"
#include "params/ExactTime.h"

namespace bench {

using Owner = boost::weak_ptr<const Kestova::ThreadSafe>;

class LeanPart {
 public:
  explicit LeanPart(Owner owner) : m_owner(std::move(owner)) {}
  virtual ~LeanPart() = default;

 private:
  const Owner m_owner;
};

class LeanSubject {
 public:
  explicit LeanSubject(Owner owner) : m_owner(std::move(owner)) {}
  virtual ~LeanSubject() = default;
  bool isObserved() const { return m_observers != nullptr; }

 private:
  const Owner m_owner;
  std::unique_ptr<int> m_observers;
};

struct LeanKeyFrame final : LeanPart, LeanSubject {
  LeanKeyFrame(const Owner& owner, const Kestova::RationalTime& time_, const Kestova::Point& value_)
      : LeanPart(owner), LeanSubject(owner), time(time_), value(value_) {}

  Kestova::RationalTime time;
  Kestova::Point value;
  Kestova::RationalTime leadIn;
  boost::shared_ptr<int> interpolater;
  std::unique_ptr<int> metaData;
};
static_assert(sizeof(LeanKeyFrame) == 136, "the size of Kestova::KeyFrame<Point>");

class LeanParameter : public LeanSubject {
 public:
  explicit LeanParameter(const Owner& owner) : LeanSubject(owner), m_owner(owner) {}

  void add(const Kestova::RationalTime& time, const Kestova::Point& value) {
    m_keyFrames.emplace_hint(insertionPoint(time), time,
                             boost::make_shared<LeanKeyFrame>(m_owner, time, value));
    if (isObserved()) throw std::logic_error("the model has no observers");
  }

 private:
  using KeyFrames = std::map<Kestova::RationalTime, boost::shared_ptr<LeanKeyFrame>>;

  // The insertion point of a keyframe without lead-in. Throws if the time is not free.
  KeyFrames::const_iterator insertionPoint(const Kestova::RationalTime& time) const {
    if (m_keyFrames.empty() || std::prev(m_keyFrames.end())->first < time) return m_keyFrames.end();
    const auto next = m_keyFrames.lower_bound(time);
    const bool isTaken =
        next->first == time || compareWithDifference(time, next->first, next->second->leadIn) > 0;
    if (isTaken) throw std::invalid_argument("the time is not free");
    return next;
  }

  const Owner m_owner;
  KeyFrames m_keyFrames;
};

}  // namespace bench
