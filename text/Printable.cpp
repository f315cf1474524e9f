#include "text/Printable.h"

namespace text {

Escape PrintableRule::escape(const Utf8Character& character, std::string_view bytes) {
  Escape escape;
  if (character.isWellFormed && character.codePoint >= 0x80) {
    escape.append("\\u");
    escape.appendHex(character.codePoint, 4);
  } else {
    for (const char byte : bytes) {
      escape.append("\\x");
      escape.appendHex(static_cast<unsigned char>(byte), 2);
    }
  }
  return escape;
}

std::string printable(std::string_view bytes) {
  return escaped<PrintableRule>(bytes);
}

}  // namespace text
