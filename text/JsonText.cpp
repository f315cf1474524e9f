#include "text/JsonText.h"

#include "text/Utf8.h"

namespace text {

namespace {

constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
constexpr std::string_view kLetters = "\"\\bfnrt";

bool isPlainAscii(char byte) {
  return byte >= 0x20 && byte != '"' && byte != '\\';
}

}  // namespace

std::size_t JsonRule::plainLength(std::string_view bytes) {
  std::size_t length = 0;
  while (length < bytes.size()) {
    if (isPlainAscii(bytes[length])) {
      ++length;
      continue;
    }
    const Utf8Character character = firstCharacter(bytes.substr(length));
    if (!character.isWellFormed || character.length == 1) break;
    length += character.length;
  }
  return length;
}

Escape JsonRule::escapeFirst(std::string_view& bytes) {
  const Utf8Character character = firstCharacter(bytes);
  Escape escape;
  const auto form = kEscaped.find(bytes.front());
  if (!character.isWellFormed) {
    escape.append(kEncodedReplacementCharacter);
  } else if (form != std::string_view::npos) {
    escape.append("\\");
    escape.append(kLetters.substr(form, 1));
  } else {
    escape.append("\\u");
    escape.appendHex(character.codePoint, 4);
  }
  bytes.remove_prefix(character.length);
  return escape;
}

std::string jsonString(std::string_view bytes) {
  std::string result = "\"";
  result.reserve(bytes.size() + 2);
  forEachPiece<JsonRule>(bytes, [&result](std::string_view piece) { result += piece; });
  result += '"';
  return result;
}

}  // namespace text
