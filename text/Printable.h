// Text from a stranger's file, made safe for a terminal: it stays on its line, moves no cursor,
// changes no colour and does not reorder what stands beside it.
//
// Replaced are C0 controls and DEL (`\x1b`), C1 controls, bidirectional controls (Unicode 15,
// Bidi_Control) and the line and paragraph separators (`\u202e`), and each byte that is not
// well-formed UTF-8 (`\xff`). A backslash stays as it is, since file names on Windows are full of
// them; so escaping twice changes nothing. Every function may be called from any thread.
#pragma once

#include <string>
#include <string_view>

#include "text/Escape.h"

namespace text {

/// The rule for forEachPiece, for texts that are too long to copy.
struct PrintableRule {
  static std::size_t plainLength(std::string_view bytes);
  static Escape escapeFirst(std::string_view& bytes);
};

/// Copies `bytes` with its unprintable characters escaped. The result has no NUL and no line end.
std::string printable(std::string_view bytes);

}  // namespace text
