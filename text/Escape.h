// The escape sequence that replaces one character of a text. Shared by the escapers of this room.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace text {

/// A plain value that owns its characters.
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

/// Passes `bytes` to `take` in pieces, each character for which `Rule` wants an escape replaced by
/// it. The pieces are valid during the call. `Rule` has two static operations:
///   std::size_t plainLength(std::string_view)          leading bytes that stay as they are
///   Escape escapeFirst(std::string_view&)              the escape of the first character, which is
///                                                      removed from the text
template <class Rule, class Take>
void forEachPiece(std::string_view bytes, Take take) {
  while (!bytes.empty()) {
    const std::size_t plain = Rule::plainLength(bytes);
    if (plain != 0) take(bytes.substr(0, plain));
    bytes.remove_prefix(plain);
    if (!bytes.empty()) take(Rule::escapeFirst(bytes).text());
  }
}

}  // namespace text
