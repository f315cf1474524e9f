// An exact time: a reduced fraction of 64-bit numbers with a positive denominator. The owner
// defines the unit (a frame, a second); times of loaded parameters are frame numbers. A plain
// value. Comparisons are exact for all operands, extremes included.
#pragma once

#include <ostream>

#include "host/Kestova/Export.h"
#include "host/Kestova/Integers.h"

namespace Kestova {

struct Ratio;

class KESTOVA_API RationalTime {
 public:
  RationalTime() noexcept = default;
  explicit RationalTime(const int64& whole) : m_numerator(whole) {}

  /// Throws boost::bad_rational for a zero denominator, std::overflow_error if the reduced form
  /// does not fit.
  RationalTime(int64 numerator, int64 denominator);

  int64 numerator() const { return m_numerator; }
  int64 denominator() const { return m_denominator; }
  bool isWhole() const { return m_denominator == 1; }

  /// Rounds the numerator, the denominator and their quotient to doubles.
  double toDouble() const {
    return static_cast<double>(m_numerator) / static_cast<double>(m_denominator);
  }

 private:
  explicit RationalTime(const Ratio& ratio);

  friend KESTOVA_API RationalTime operator+(const RationalTime& left, const RationalTime& right);
  friend KESTOVA_API RationalTime operator-(const RationalTime& left, const RationalTime& right);

  int64 m_numerator = 0;
  int64 m_denominator = 1;
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
