// An edit rate in frames per unit of time, as edit-rate sources return it. A plain value: a reduced
// fraction with a positive denominator.
#pragma once

#include <boost/rational.hpp>

#include "host/Kestova/Export.h"
#include "host/Kestova/Integers.h"

namespace Kestova {

class SafeRational {
 public:
  /// Throws boost::bad_rational for a zero denominator, std::overflow_error if the reduced form
  /// does not fit.
  KESTOVA_API SafeRational(int64 numerator, int64 denominator);
  explicit SafeRational(const boost::rational<unsigned int>& rate)
      : m_numerator(rate.numerator()), m_denominator(rate.denominator()) {}

  int64 numerator() const { return m_numerator; }
  int64 denominator() const { return m_denominator; }

 private:
  int64 m_numerator;
  int64 m_denominator;
};

}  // namespace Kestova
