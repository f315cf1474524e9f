// An edit rate in frames per unit of time, as the host's edit-rate sources give it. A plain value
// that takes part in exact comparisons and cannot overflow in them.
#pragma once

#include <boost/rational.hpp>

#include "host/Kestova/RationalTime.h"

namespace Kestova {

class SafeRational {
 public:
  /// Throws boost::bad_rational for a zero denominator, std::overflow_error when the reduced form
  /// does not fit.
  SafeRational(int64 numerator, int64 denominator) : m_ratio(reduced(numerator, denominator)) {}
  explicit SafeRational(const boost::rational<unsigned int>& rate)
      : m_ratio{rate.numerator(), rate.denominator()} {}

  int64 numerator() const { return m_ratio.numerator; }
  int64 denominator() const { return m_ratio.denominator; }

 private:
  Ratio m_ratio;
};

/// True when (`later` - `earlier`) * `rate` is below 1. Exact, and never throws.
inline bool isLessThanOneFrame(const RationalTime& earlier, const RationalTime& later,
                               const SafeRational& rate) {
  const WideRatio wide = difference(later.ratio(), earlier.ratio());
  return compareProducts(wide.numerator, rate.numerator(), wide.denominator, rate.denominator()) <
         0;
}

}  // namespace Kestova
