// Numbers as text, whatever the locale, without a stream and without memory.
#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <ostream>
#include <string_view>

#include "host/Kestova/RationalTime.h"

namespace Kestova {

/// The room that `writeNumber` needs: two 64-bit numbers and a stroke take 40.
inline constexpr std::size_t kNumberRoom = 48;

// Each writes its number to `first`, where there is room, and returns the end of the text.

/// Doubles: the shortest text that reads back the same; "nan", "inf", "-inf".
template <class Number>
char* writeNumber(char* first, Number number) {
  return std::to_chars(first, first + kNumberRoom, number).ptr;
}

/// "10" when whole, else "21/2".
inline char* writeNumber(char* first, const RationalTime& time) {
  char* end = writeNumber(first, time.numerator());
  if (time.isWhole()) return end;
  *end++ = '/';
  return std::to_chars(end, first + kNumberRoom, time.denominator()).ptr;
}

/// What JSON has for a time: a whole one as a number, another as the fraction in quotes.
struct JSONTime {
  const RationalTime& time;
};
inline char* writeNumber(char* first, const JSONTime& json) {
  if (json.time.isWhole()) return writeNumber(first, json.time.numerator());
  *first = '"';
  char* const end = writeNumber(first + 1, json.time);
  *end = '"';
  return end + 1;
}

/// `digits` significant digits at most, as printf's %g writes them; `digits` is 6 or more.
inline char* writeNumber(char* first, double number, int digits) {
  constexpr double kLimit = 1e6;
  const bool isPlainInteger =  // of few enough digits; not the negative zero
      number > -kLimit && number < kLimit &&
      static_cast<double>(static_cast<int>(number)) == number &&
      (number != 0 || !std::signbit(number));
  if (isPlainInteger) return writeNumber(first, static_cast<int>(number));
  return std::to_chars(first, first + kNumberRoom, number, std::chars_format::general, digits).ptr;
}

/// A plain value that holds the text of a number, given as `writeNumber` takes it.
class NumberText {
 public:
  template <class Number, class... Form>
  explicit NumberText(const Number& number, Form... form) {
    m_size = static_cast<std::size_t>(writeNumber(m_text.data(), number, form...) - m_text.data());
  }

  // NOLINTNEXTLINE(google-explicit-constructor): it stands wherever text may
  operator std::string_view() const { return {m_text.data(), m_size}; }

  friend std::ostream& operator<<(std::ostream& out, const NumberText& text) {
    return out << std::string_view(text);
  }

 private:
  std::array<char, kNumberRoom> m_text{};
  std::size_t m_size = 0;
};

}  // namespace Kestova
