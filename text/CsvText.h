// CSV fields (RFC 4180), well-formed UTF-8 for any bytes: malformed UTF-8 becomes U+FFFD. Every
// function may be called from any thread.
#pragma once

#include <string_view>

#include "text/Escape.h"

namespace text {

/// The rule for forEachPiece. Covers what is between the quotes of a quoted field, and a field
/// without quotes.
struct CsvRule {
  static constexpr bool isPlain(char32_t character) { return character != '"'; }
  static Escape escape(const Utf8Character& character, std::string_view bytes);
};

/// Whether a field must stand in quotes.
bool needsCsvQuotes(std::string_view bytes);

/// Whether spreadsheets take the cell for a formula, although CSV has none: it begins with one of
/// "=", "+", "-" and "@", in ASCII or full width, with a tab or with a line end.
bool looksLikeFormula(std::string_view bytes);

}  // namespace text
