// Numbers as text, whatever the locale, without a stream and without an allocation.
#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <string_view>

namespace text {

/// The number of bytes that `writeNumber` may write.
inline constexpr std::size_t kMaxNumberSize = 32;

// Each overload writes a number to `first`, where kMaxNumberSize bytes are available, and returns
// the end of the text.

/// Doubles: the shortest text that reads back as the same number; "nan", "inf", "-inf".
template <class Number>
char* writeNumber(char* first, Number number) {
  return std::to_chars(first, first + kMaxNumberSize, number).ptr;
}

/// Writes at most `digits` significant digits, as printf's %g does. Requires: `digits` is from 6
/// to 17.
inline char* writeNumber(char* first, double number, int digits) {
  constexpr double kLimit = 1e6;
  const bool isPlainInteger =  // with few enough digits, and not the negative zero
      number > -kLimit && number < kLimit &&
      static_cast<double>(static_cast<int>(number)) == number &&
      (number != 0 || !std::signbit(number));
  if (isPlainInteger) return writeNumber(first, static_cast<int>(number));
  return std::to_chars(first, first + kMaxNumberSize, number, std::chars_format::general, digits)
      .ptr;
}

/// The text of one number. A plain value that owns its characters.
class NumberText {
 public:
  /// Takes what `writeNumber` takes.
  template <class Number, class... Digits>
  explicit NumberText(Number number, Digits... digits) {
    m_size =
        static_cast<std::size_t>(writeNumber(m_text.data(), number, digits...) - m_text.data());
  }

  // NOLINTNEXTLINE(google-explicit-constructor): usable wherever text is
  operator std::string_view() const { return {m_text.data(), m_size}; }

  friend std::ostream& operator<<(std::ostream& out, const NumberText& number) {
    return out << std::string_view(number);
  }

 private:
  std::array<char, kMaxNumberSize> m_text{};
  std::size_t m_size = 0;
};

}  // namespace text
