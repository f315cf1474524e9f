// Computes values between two keyframes.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>

#include "host/Kestova/Export.h"
#include "host/Kestova/RationalTime.h"
#include "host/Kestova/ValueTypes.h"

namespace Kestova {

/// Calls change no state: any number of parameters and threads may share one object.
template <class T>
class Interpolater {
 public:
  virtual ~Interpolater() = default;

  /// Returns the value at `time` between `earlier` and `later`. `leadInLength` is that of the later
  /// keyframe. All times are in the parameter's unit.
  virtual T interpolate(const T& earlier, const T& later, const RationalTime& earlierTime,
                        const RationalTime& laterTime, double time,
                        const RationalTime& leadInLength) const = 0;

  /// Returns the name of the interpolater in JSON and XML.
  virtual std::string typeName() const = 0;
};

/// Step interpolation: the earlier value holds until the later keyframe.
template <class T>
class LeftInterpolater final : public Interpolater<T> {
 public:
  /// Returns the only object for `T`, which all binaries in the process share.
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
