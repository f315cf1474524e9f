// UTF-8 that may be malformed: one decoder, used by everything that reads or writes text.
//
// Well-formed means the table of Unicode 15, section 3.9 (D92): no overlong forms, no surrogates,
// nothing above U+10FFFF. Every function may be called from any thread and keeps no state.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace text {

/// U+FFFD, which stands for malformed bytes.
constexpr char32_t kReplacementCharacter = U'\uFFFD';
constexpr std::string_view kEncodedReplacementCharacter = "\xEF\xBF\xBD";

/// The first character of a text.
struct Utf8Character {
  char32_t codePoint;  ///< kReplacementCharacter for malformed bytes
  std::size_t length;  ///< how many bytes it takes, at least 1
  bool isWellFormed;
};

/// Decodes the first character of `bytes`. Malformed bytes are one character for each longest
/// prefix that could have begun a well-formed one. Requires: `bytes` is not empty.
Utf8Character firstCharacter(std::string_view bytes);

bool isWellFormedUtf8(std::string_view bytes);

/// Copies `bytes`, with U+FFFD for each malformed character.
std::string wellFormedUtf8(std::string_view bytes);

}  // namespace text
