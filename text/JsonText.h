// JSON strings (RFC 8259), valid for any bytes: malformed UTF-8 becomes U+FFFD. Every function may
// be called from any thread.
#pragma once

#include <string>
#include <string_view>

#include "text/Escape.h"

namespace text {

/// The rule for forEachPiece, for texts that are too long to copy. Covers what is between the
/// quotes.
struct JsonRule {
  static constexpr bool isPlain(char32_t character) {
    return character >= 0x20 && character != '"' && character != '\\';
  }
  static Escape escape(const Utf8Character& character, std::string_view bytes);
};

/// Returns `bytes` as a JSON string, quotes included.
std::string jsonString(std::string_view bytes);

}  // namespace text
