// Replaces characters of a text by escape sequences. Shared by the escapers of this room.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "text/Utf8.h"

namespace text {

/// The escape sequence of one character. A plain value that owns its text.
class Escape {
 public:
  void append(std::string_view characters) {
    for (const char character : characters) m_characters[m_size++] = character;
  }

  /// Appends the lowest `count` hexadecimal digits of `number`, in lower case.
  void appendHex(char32_t number, int count) {
    while (count > 0) {
      --count;
      m_characters[m_size++] = "0123456789abcdef"[(number >> (4U * unsigned(count))) & 0xFU];
    }
  }

  std::string_view text() const { return {m_characters.data(), m_size}; }

 private:
  std::array<char, 12> m_characters{};  // a malformed sequence of three bytes: \xe2\x80\xff
  std::size_t m_size = 0;
};

/// The number of leading bytes of `bytes` that `Rule` copies unchanged.
template <class Rule>
std::size_t plainLength(std::string_view bytes) {
  std::size_t length = 0;
  while (length < bytes.size()) {
    const auto byte = static_cast<unsigned char>(bytes[length]);
    const Utf8Character character =
        byte < 0x80 ? Utf8Character{byte, 1, true} : firstCharacter(bytes.substr(length));
    if (!character.isWellFormed || !Rule::isPlain(character.codePoint)) break;
    length += character.length;
  }
  return length;
}

/// Passes `bytes` to `take` in pieces, with the escapes in place of the characters that `Rule`
/// escapes. The pieces are valid during the call and may be empty. `Rule` has two static functions:
///   bool isPlain(char32_t)                    true if a well-formed character is copied unchanged
///   Escape escape(const Utf8Character&, std::string_view)
///                                             the escape of another one, which the bytes encode
template <class Rule, class Take>
void forEachPiece(std::string_view bytes, Take take) {
  while (!bytes.empty()) {
    const std::size_t plain = plainLength<Rule>(bytes);
    if (plain != 0) take(bytes.substr(0, plain));
    bytes.remove_prefix(plain);
    if (bytes.empty()) return;
    const Utf8Character character = firstCharacter(bytes);
    take(Rule::escape(character, bytes.substr(0, character.length)).text());
    bytes.remove_prefix(character.length);
  }
}

/// Returns `bytes` with the escapes of `Rule`.
template <class Rule>
std::string escaped(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size());
  forEachPiece<Rule>(bytes, [&result](std::string_view piece) { result += piece; });
  return result;
}

}  // namespace text
