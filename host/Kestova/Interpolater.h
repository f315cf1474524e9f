// Values between two keyframes.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>

#include "host/Kestova/Export.h"
#include "host/Kestova/RationalTime.h"
#include "host/Kestova/ValueTypes.h"

namespace Kestova {

/// Has no state that a call changes; one object serves any number of parameters and threads.
template <class T>
class Interpolater {
 public:
  virtual ~Interpolater() = default;

  /// The value at `time` between `earlier` and `later`. `leadInLength` is that of the later
  /// keyframe. All times are in the parameter's unit.
  virtual T interpolate(const T& earlier, const T& later, const RationalTime& earlierTime,
                        const RationalTime& laterTime, double time,
                        const RationalTime& leadInLength) const = 0;

  /// The name under which the interpolater is written.
  virtual std::string typeName() const = 0;
};

/// The step: the earlier value holds until the later keyframe.
template <class T>
class LeftInterpolater final : public Interpolater<T> {
 public:
  /// The one object of its type, shared by all binaries that the host library is loaded into.
  static boost::shared_ptr<Interpolater<T>> getInstance();

  T interpolate(const T& earlier, const T& later, const RationalTime& earlierTime,
                const RationalTime& laterTime, double time,
                const RationalTime& leadInLength) const override;

  std::string typeName() const override;
};

#define KESTOVA_LEFT_INTERPOLATER(T) extern template class KESTOVA_API LeftInterpolater<T>;
KESTOVA_FOR_EACH_VALUE_TYPE(KESTOVA_LEFT_INTERPOLATER)
#undef KESTOVA_LEFT_INTERPOLATER

}  // namespace Kestova
