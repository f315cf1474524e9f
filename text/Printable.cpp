#include "text/Printable.h"

#include "text/Utf8.h"

namespace text {

namespace {

bool isPlainAscii(char byte) {
  return byte >= 0x20 && byte < 0x7F;
}

bool isUnprintable(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character <= 0x9F) ||  // C0, DEL, C1
         character == 0x061C || character == 0x200E || character == 0x200F ||
         (character >= 0x2028 && character <= 0x202E) ||  // separators, embeddings, overrides
         (character >= 0x2066 && character <= 0x2069);    // isolates
}

}  // namespace

std::size_t PrintableRule::plainLength(std::string_view bytes) {
  std::size_t length = 0;
  while (length < bytes.size()) {
    if (isPlainAscii(bytes[length])) {
      ++length;
      continue;
    }
    const Utf8Character character = firstCharacter(bytes.substr(length));
    if (!character.isWellFormed || isUnprintable(character.codePoint)) break;
    length += character.length;
  }
  return length;
}

Escape PrintableRule::escapeFirst(std::string_view& bytes) {
  const Utf8Character character = firstCharacter(bytes);
  Escape escape;
  if (character.isWellFormed && character.codePoint >= 0x80) {
    escape.append("\\u");
    escape.appendHex(character.codePoint, 4);
  } else {
    for (const char byte : bytes.substr(0, character.length)) {
      escape.append("\\x");
      escape.appendHex(static_cast<unsigned char>(byte), 2);
    }
  }
  bytes.remove_prefix(character.length);
  return escape;
}

std::string printable(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size());
  forEachPiece<PrintableRule>(bytes, [&result](std::string_view piece) { result += piece; });
  return result;
}

}  // namespace text
