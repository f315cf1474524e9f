// Makes text from an untrusted file safe for a terminal: it stays on its line, moves no cursor,
// changes no colour and does not reorder the text beside it.
//
// Escaped are C0 controls and DEL (`\x1b`), C1 controls, bidirectional controls (Unicode 15,
// Bidi_Control) and the line and paragraph separators (`\u202e`), and each byte that is not
// well-formed UTF-8 (`\xff`). Backslashes are not escaped, because file names on Windows contain
// many; escaping a text twice therefore changes nothing. Every function may be called from any
// thread.
#pragma once

#include <string>
#include <string_view>

#include "text/Escape.h"

namespace text {

/// The rule for forEachPiece, for texts that are too long to copy.
struct PrintableRule {
  static constexpr bool isPlain(char32_t character) {
    const bool isUnprintable =
        character < 0x20 || (character >= 0x7F && character <= 0x9F) ||  // C0, DEL, C1
        character == 0x061C || character == 0x200E || character == 0x200F ||
        (character >= 0x2028 && character <= 0x202E) ||  // separators, embeddings, overrides
        (character >= 0x2066 && character <= 0x2069);    // isolates
    return !isUnprintable;
  }
  static Escape escape(const Utf8Character& character, std::string_view bytes);
};

/// Returns `bytes` with unprintable characters escaped. The result contains no NUL and no line end.
std::string printable(std::string_view bytes);

}  // namespace text
