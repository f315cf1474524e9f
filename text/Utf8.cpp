#include "text/Utf8.h"

namespace text {

namespace {

// Describes a first byte: the number of bytes that follow, and the range of the first of them,
// which excludes overlong forms, surrogates and code points above U+10FFFF.
struct Lead {
  int following;  // -1 for a byte that starts no character
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

Utf8Character firstCharacter(std::string_view bytes) {
  const auto first = static_cast<unsigned char>(bytes.front());
  if (first < 0x80) return {first, 1, true};

  const Lead start = lead(first);
  char32_t codePoint = start.bits;
  std::size_t length = 1;
  for (int index = 0; index < start.following; ++index, ++length) {
    const unsigned lowest = index == 0 ? start.lowest : 0x80;
    const unsigned highest = index == 0 ? start.highest : 0xBF;
    const unsigned byte = length < bytes.size() ? static_cast<unsigned char>(bytes[length]) : 0;
    if (byte < lowest || byte > highest) return {kReplacementCharacter, length, false};
    codePoint = (codePoint << 6U) | (byte & 0x3FU);
  }
  if (start.following < 0) return {kReplacementCharacter, 1, false};
  return {codePoint, length, true};
}

bool isWellFormedUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const Utf8Character character = firstCharacter(bytes);
    if (!character.isWellFormed) return false;
    bytes.remove_prefix(character.length);
  }
  return true;
}

std::string wellFormedUtf8(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size());
  while (!bytes.empty()) {
    const Utf8Character character = firstCharacter(bytes);
    result +=
        character.isWellFormed ? bytes.substr(0, character.length) : kEncodedReplacementCharacter;
    bytes.remove_prefix(character.length);
  }
  return result;
}

std::string encodedUtf8(char32_t character) {
  const auto unit = [character](unsigned shift, unsigned mark) {
    return static_cast<char>(mark | ((character >> shift) & 0x3FU));
  };
  if (character < 0x80) return {static_cast<char>(character)};
  if (character < 0x800) return {static_cast<char>(0xC0U | (character >> 6U)), unit(0, 0x80)};
  if (character < 0x10000) {
    return {static_cast<char>(0xE0U | (character >> 12U)), unit(6, 0x80), unit(0, 0x80)};
  }
  return {static_cast<char>(0xF0U | (character >> 18U)), unit(12, 0x80), unit(6, 0x80),
          unit(0, 0x80)};
}

}  // namespace text
