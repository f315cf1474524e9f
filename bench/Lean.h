// The least that a store of keyframes with our rules has to do: what loading is held to.
//
// A keyframe has the size of ours and what ours has: an owner for itself and one for its observers,
// an exact time, a lead-in, an interpolater, metadata and observers. They live in shared pointers
// in an ordered map. One look-up, or a look at the end when times rise, answers every rule.
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
static_assert(sizeof(LeanKeyFrame) == 136, "the size of what is modelled");

class LeanParameter : public LeanSubject {
 public:
  explicit LeanParameter(const Owner& owner) : LeanSubject(owner), m_owner(owner) {}

  void add(const Kestova::RationalTime& time, const Kestova::Point& value) {
    const auto place = placeOf(time);
    m_keyFrames.emplace_hint(place, time, boost::make_shared<LeanKeyFrame>(m_owner, time, value));
    if (isObserved()) throw std::logic_error("nobody observes the model");
  }

 private:
  using KeyFrames = std::map<Kestova::RationalTime, boost::shared_ptr<LeanKeyFrame>>;

  // Where a keyframe without lead-in goes; throws when the place is taken.
  KeyFrames::const_iterator placeOf(const Kestova::RationalTime& time) const {
    if (m_keyFrames.empty() || std::prev(m_keyFrames.end())->first < time) return m_keyFrames.end();
    const auto next = m_keyFrames.lower_bound(time);
    const bool isTaken =
        next->first == time || compareWithDifference(time, next->first, next->second->leadIn) > 0;
    if (isTaken) throw std::invalid_argument("taken");
    return next;
  }

  const Owner m_owner;
  KeyFrames m_keyFrames;
};

}  // namespace bench
