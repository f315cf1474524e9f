#include "text/JsonText.h"

namespace text {

namespace {

constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
constexpr std::string_view kLetters = "\"\\bfnrt";

}  // namespace

Escape JsonRule::escape(const Utf8Character& character, std::string_view bytes) {
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
