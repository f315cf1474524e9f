#include "tools/formats/KeyText.h"

#include "text/Printable.h"
#include "text/Utf8.h"

namespace formats {

namespace {

bool isPrivateOrNoCharacter(char32_t character) {
  return (character >= 0xD800 && character <= 0xF8FF) || (character & 0xFFFEU) == 0xFFFE ||
         (character >= 0xFDD0 && character <= 0xFDEF) || character >= 0xF0000;
}

}  // namespace

std::string keySymbol(ZRKMetaData::int32 character) {
  switch (character) {
    case '\b':
    case 0x7F:
      return "\u232B";
    case '\t':
      return "\u21E5";
    case '\n':
    case '\r':
      return "\u21B5";
    case 0x1B:
      return "\u238B";
    case ' ':
      return "\u2423";
    default:
      break;
  }
  const auto codePoint = static_cast<char32_t>(character);
  if (!text::PrintableRule::isPlain(codePoint) || isPrivateOrNoCharacter(codePoint)) return {};
  return text::encodedUtf8(codePoint);
}

}  // namespace formats
