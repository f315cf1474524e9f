// Numbers as text: exact enough to read back the same, and a word where there is no number.
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

/// Doubles with 17 significant digits, floats with 9; "nan", "inf" and "-inf" without a sign for
/// NaN.
template <class Number>
void appendNumber(fmt::memory_buffer& out, Number number) {
  if constexpr (std::is_integral_v<Number>) {
    fmt::format_to(fmt::appender(out), FMT_COMPILE("{}"), number);
  } else {
    constexpr int kDigits = std::numeric_limits<Number>::max_digits10;
    const bool isNan = std::isnan(number);  // whose sign says nothing
    out.append(isNan ? std::string_view("nan") : text::NumberText(number, kDigits));
  }
}

/// Appends a number to a table: 7 significant digits, but from 10^6 to 10^21 all that stand before
/// the point, since whole numbers are not written with an exponent there.
inline void appendReadable(fmt::memory_buffer& out, double number) {
  const double size = std::abs(number);
  if (size >= 1e6 && size < 1e21) {
    const int decimals = number == std::trunc(number) ? 0 : 1;
    fmt::format_to(fmt::appender(out), "{:>12.{}f}", number, decimals);
  } else {
    fmt::format_to(fmt::appender(out), "{:>12.7g}", number);
  }
}

/// A JSON number, or "NaN", "Infinity", "-Infinity" as a JSON string; of a truth value its word.
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
