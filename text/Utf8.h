// Decodes UTF-8 that may be malformed. Everything that reads or writes text uses this decoder.
//
// Well-formed is defined by table 3-7 of Unicode 15, section 3.9 (D92): no overlong forms, no
// surrogates, nothing above U+10FFFF. Every function may be called from any thread and keeps no
// state.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace text {

/// U+FFFD, which replaces malformed bytes.
constexpr char32_t kReplacementCharacter = U'\uFFFD';
constexpr std::string_view kEncodedReplacementCharacter = "\xEF\xBF\xBD";

/// The first character of a text.
struct Utf8Character {
  char32_t codePoint;  ///< kReplacementCharacter for malformed bytes
  std::size_t length;  ///< in bytes, at least 1
  bool isWellFormed;
};

/// Decodes the first character of `bytes`. In malformed text, each maximal prefix of a well-formed
/// character counts as one character, as does any other byte. Requires: `bytes` is not empty.
Utf8Character firstCharacter(std::string_view bytes);

bool isWellFormedUtf8(std::string_view bytes);

/// Returns `bytes` with U+FFFD in place of each malformed character.
std::string wellFormedUtf8(std::string_view bytes);

/// Encodes one character. Requires: a Unicode scalar value (below 0x110000 and no surrogate).
std::string encodedUtf8(char32_t character);

}  // namespace text
