// An exact time: a reduced fraction of 64-bit numbers with a positive denominator. The owner
// defines the unit (a frame, a second); times of loaded parameters are frame numbers. A plain
// value. Comparisons are exact for all operands, extremes included.
#pragma once

#include <ostream>

#include "host/Kestova/Export.h"
#include "host/Kestova/Integers.h"
#include "host/Kestova/Ratio.h"

namespace Kestova {

class KESTOVA_API RationalTime {
 public:
  RationalTime() noexcept : m_ratio{0, 1} {}
  explicit RationalTime(const int64& whole) : m_ratio{whole, 1} {}

  /// Throws boost::bad_rational for a zero denominator, std::overflow_error if the reduced form
  /// does not fit.
  RationalTime(int64 numerator, int64 denominator)
      : m_ratio(denominator == 1 ? Ratio{numerator, 1} : reduced(numerator, denominator)) {}

  int64 numerator() const { return m_ratio.numerator; }
  int64 denominator() const { return m_ratio.denominator; }
  bool isWhole() const { return m_ratio.denominator == 1; }

  double toDouble() const {
    return static_cast<double>(m_ratio.numerator) / static_cast<double>(m_ratio.denominator);
  }

 private:
  explicit RationalTime(const Ratio& ratio) : m_ratio(ratio) {}

  friend KESTOVA_API RationalTime operator+(const RationalTime& left, const RationalTime& right);
  friend KESTOVA_API RationalTime operator-(const RationalTime& left, const RationalTime& right);

  Ratio m_ratio;
};

inline bool operator==(const RationalTime& left, const RationalTime& right) {
  return left.numerator() == right.numerator() && left.denominator() == right.denominator();
}
inline bool operator<(const RationalTime& left, const RationalTime& right) {
  if (left.denominator() == right.denominator()) return left.numerator() < right.numerator();
  return int128{left.numerator()} * right.denominator() <
         int128{right.numerator()} * left.denominator();
}
inline bool operator!=(const RationalTime& left, const RationalTime& right) {
  return !(left == right);
}
inline bool operator>(const RationalTime& left, const RationalTime& right) {
  return right < left;
}
inline bool operator<=(const RationalTime& left, const RationalTime& right) {
  return !(right < left);
}
inline bool operator>=(const RationalTime& left, const RationalTime& right) {
  return !(left < right);
}

/// Both throw std::overflow_error if the reduced result does not fit.
KESTOVA_API RationalTime operator+(const RationalTime& left, const RationalTime& right);
KESTOVA_API RationalTime operator-(const RationalTime& left, const RationalTime& right);

/// Writes "10" for a whole time, else "21/2".
KESTOVA_API std::ostream& operator<<(std::ostream& out, const RationalTime& time);

}  // namespace Kestova
