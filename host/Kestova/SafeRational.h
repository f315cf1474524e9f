// An edit rate in frames per unit of time, as edit-rate sources return it. A plain value.
#pragma once

#include <boost/rational.hpp>

#include "host/Kestova/Integers.h"
#include "host/Kestova/Ratio.h"

namespace Kestova {

class SafeRational {
 public:
  /// Throws boost::bad_rational for a zero denominator, std::overflow_error if the reduced form
  /// does not fit.
  SafeRational(int64 numerator, int64 denominator) : m_ratio(reduced(numerator, denominator)) {}
  explicit SafeRational(const boost::rational<unsigned int>& rate)
      : m_ratio{rate.numerator(), rate.denominator()} {}

  int64 numerator() const { return m_ratio.numerator; }
  int64 denominator() const { return m_ratio.denominator; }

 private:
  Ratio m_ratio;
};

}  // namespace Kestova
