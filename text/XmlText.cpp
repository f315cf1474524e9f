#include "text/XmlText.h"

namespace text {

namespace {

// Empty for a character that XML 1.0 forbids.
std::string_view reference(char32_t character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&apos;";
    case '\t':  // a parser would normalise these three to spaces inside an attribute
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

}  // namespace

Escape XmlRule::escape(const Utf8Character& character, std::string_view /*bytes*/) {
  Escape escape;
  escape.append(character.isWellFormed ? reference(character.codePoint)
                                       : kEncodedReplacementCharacter);
  return escape;
}

std::string xmlText(std::string_view bytes) {
  return escaped<XmlRule>(bytes);
}

}  // namespace text
