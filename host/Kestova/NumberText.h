// Numbers as text, whatever the locale, without a stream and without memory.
#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <ostream>
#include <string_view>

#include "host/Kestova/RationalTime.h"

namespace Kestova {

/// A plain value that holds the text.
class NumberText {
 public:
  explicit NumberText(int number) { append(number); }
  explicit NumberText(int64 number) { append(number); }

  /// The shortest text that reads back the same; "nan", "inf", "-inf".
  explicit NumberText(double number) { append(number); }

  /// `digits` significant digits at most, as printf's %g writes them; `digits` is 6 or more.
  NumberText(double number, int digits) {
    if (isPlainInteger(number)) {
      append(static_cast<int64>(number));
    } else {
      append(number, std::chars_format::general, digits);
    }
  }

  /// "10" when whole, else "21/2".
  explicit NumberText(const RationalTime& time) {
    append(time.numerator());
    if (time.isWhole()) return;
    m_text[m_size++] = '/';
    append(time.denominator());
  }

  // NOLINTNEXTLINE(google-explicit-constructor): it stands wherever text may
  operator std::string_view() const { return {m_text.data(), m_size}; }

  friend std::ostream& operator<<(std::ostream& out, const NumberText& text) {
    return out << std::string_view(text);
  }

 private:
  // A whole number of few enough digits that it is written as it is; not the negative zero.
  static bool isPlainInteger(double number) {
    constexpr double kLimit = 1e6;
    return number > -kLimit && number < kLimit &&
           static_cast<double>(static_cast<int>(number)) == number &&
           (number != 0 || !std::signbit(number));
  }

  template <class Number, class... Form>
  void append(Number number, Form... form) {
    char* const end = m_text.data() + m_text.size();
    m_size = static_cast<std::size_t>(
        std::to_chars(m_text.data() + m_size, end, number, form...).ptr - m_text.data());
  }

  std::array<char, 48> m_text{};  // two 64-bit numbers and a stroke take 40
  std::size_t m_size = 0;
};

}  // namespace Kestova
