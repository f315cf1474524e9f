#include "host/Kestova/Utf8.h"

namespace Kestova {

namespace {

constexpr std::string_view kEncodedReplacement = "\xEF\xBF\xBD";

// What a first byte announces: how many bytes follow and the range of the first of them, which is
// where overlong forms, surrogates and what lies above U+10FFFF are told apart.
struct Lead {
  int following;
  unsigned lowest;
  unsigned highest;
  char32_t bits;
};

Lead lead(unsigned byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF, byte & 0x1FU};
  if (byte >= 0xE0 && byte <= 0xEF) {
    return {2, byte == 0xE0 ? 0xA0U : 0x80U, byte == 0xED ? 0x9FU : 0xBFU, byte & 0x0FU};
  }
  if (byte >= 0xF0 && byte <= 0xF4) {
    return {3, byte == 0xF0 ? 0x90U : 0x80U, byte == 0xF4 ? 0x8FU : 0xBFU, byte & 0x07U};
  }
  return {-1, 0, 0, 0};
}

}  // namespace

char32_t takeCharacter(std::string_view& text) {
  const auto first = static_cast<unsigned char>(text.front());
  text.remove_prefix(1);
  if (first < 0x80) return first;

  const Lead start = lead(first);
  if (start.following < 0) return kReplacementCharacter;
  char32_t character = start.bits;
  for (int place = 0; place < start.following; ++place) {
    if (text.empty()) return kReplacementCharacter;
    const auto byte = static_cast<unsigned char>(text.front());
    const unsigned lowest = place == 0 ? start.lowest : 0x80;
    const unsigned highest = place == 0 ? start.highest : 0xBF;
    if (byte < lowest || byte > highest) return kReplacementCharacter;
    character = (character << 6U) | (byte & 0x3FU);
    text.remove_prefix(1);
  }
  return character;
}

std::string wellFormedUtf8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::string_view before = text;
    const char32_t character = takeCharacter(text);
    result += character == kReplacementCharacter ? kEncodedReplacement
                                                 : before.substr(0, before.size() - text.size());
  }
  return result;
}

}  // namespace Kestova
