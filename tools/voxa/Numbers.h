// Numbers as text.
#pragma once

#include <fmt/compile.h>
#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <type_traits>

#include "text/NumberText.h"

namespace voxa {

/// Appends a number for CSV. It reads back the same: doubles have up to 17 significant digits,
/// floats 9. Non-finite numbers are "nan", "inf" and "-inf".
template <class Number>
void appendNumber(fmt::memory_buffer& out, Number number) {
  if constexpr (std::is_integral_v<Number>) {
    fmt::format_to(fmt::appender(out), FMT_COMPILE("{}"), number);
  } else {
    constexpr int kDigits = std::numeric_limits<Number>::max_digits10;
    const bool isNan = std::isnan(number);  // without its sign
    out.append(isNan ? std::string_view("nan") : text::NumberText(number, kDigits));
  }
}

/// From here on whole numbers in tables have an exponent, too: they have up to 309 digits.
constexpr double kLeastExponent = 1e21;

/// Appends a number to a table, 12 wide, with 7 significant digits. From 10^6 to 10^21 all digits
/// before the point are written, because an exponent would hide the end of whole numbers.
inline void appendReadable(fmt::memory_buffer& out, double number) {
  const double size = std::abs(number);
  if (size >= 1e6 && size < kLeastExponent) {
    const int decimals = number == std::trunc(number) ? 0 : 1;
    fmt::format_to(fmt::appender(out), "{:>12.{}f}", number, decimals);
  } else {
    fmt::format_to(fmt::appender(out), "{:>12.7g}", number);
  }
}

/// Returns a number for a table in which two numbers that differ must not look the same: the
/// shortest text that reads back as the number. Whole numbers are written as by `appendReadable`.
template <class Number>
std::string exactText(Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    constexpr double kLeastWhole = 1e16;  // fmt writes an exponent; every double is a whole number
    const double size = std::abs(number);
    if (size >= kLeastWhole && size < kLeastExponent) return fmt::format("{:.0f}", number);
  }
  return fmt::format(FMT_COMPILE("{}"), number);
}

/// Returns a JSON number; "NaN", "Infinity" or "-Infinity" as a JSON string; booleans as
/// true/false.
template <class Number>
std::string jsonNumber(Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    if (std::isnan(number)) return "\"NaN\"";
    if (std::isinf(number)) return number > 0 ? "\"Infinity\"" : "\"-Infinity\"";
    return nlohmann::json(number).dump();
  } else {
    return fmt::format(FMT_COMPILE("{}"), number);
  }
}

}  // namespace voxa
