// JSON strings (RFC 8259), valid for any bytes: malformed UTF-8 becomes U+FFFD. Every function may
// be called from any thread.
#pragma once

#include <string>
#include <string_view>

#include "text/Escape.h"

namespace text {

/// The rule for forEachPiece, for texts that are too long to copy. Covers what stands between the
/// quotes.
struct JsonRule {
  static std::size_t plainLength(std::string_view bytes);
  static Escape escapeFirst(std::string_view& bytes);
};

/// `bytes` as a JSON string, quotes included.
std::string jsonString(std::string_view bytes);

}  // namespace text
