// Text inside XML 1.0 documents, well-formed for any bytes: malformed UTF-8 becomes U+FFFD. Every
// function may be called from any thread.
#pragma once

#include <string>
#include <string_view>

#include "text/Escape.h"

namespace text {

/// The rule for forEachPiece, for texts that are too long to copy.
struct XmlRule {
  static constexpr bool isPlain(char32_t character) {
    return character >= 0x20 && character != '&' && character != '<' && character != '>' &&
           character != '"' && character != '\'' && character != 0xFFFE && character != 0xFFFF;
  }
  static Escape escape(const Utf8Character& character, std::string_view bytes);
};

/// Returns `bytes` for the content of an element or attribute: markup, tabs and line ends as
/// references. Characters that XML 1.0 forbids are left out.
std::string xmlText(std::string_view bytes);

}  // namespace text
