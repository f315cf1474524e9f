#include "host/Kestova/Interpolater.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace Kestova {

template <class T>
boost::shared_ptr<Interpolater<T>> LeftInterpolater<T>::getInstance() {
  static const boost::shared_ptr<Interpolater<T>> instance =
      boost::make_shared<LeftInterpolater<T>>();
  return instance;
}

template <class T>
T LeftInterpolater<T>::interpolate(const T& earlier, const T& /*later*/,
                                   const RationalTime& /*earlierTime*/,
                                   const RationalTime& /*laterTime*/, double /*time*/,
                                   const RationalTime& /*leadInLength*/) const {
  return earlier;
}

template <class T>
std::string LeftInterpolater<T>::typeName() const {
  return "left";
}

#define KESTOVA_LEFT_INTERPOLATER(T) template class LeftInterpolater<T>;
KESTOVA_FOR_EACH_VALUE_TYPE(KESTOVA_LEFT_INTERPOLATER)

}  // namespace Kestova
