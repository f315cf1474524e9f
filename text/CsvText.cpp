#include "text/CsvText.h"

#include <algorithm>
#include <iterator>

namespace text {

Escape CsvRule::escape(const Utf8Character& character, std::string_view /*bytes*/) {
  Escape escape;
  escape.append(character.isWellFormed ? "\"\"" : kEncodedReplacementCharacter);
  return escape;
}

bool needsCsvQuotes(std::string_view bytes) {
  return bytes.find_first_of(",\"\r\n") != std::string_view::npos;
}

bool looksLikeFormula(std::string_view bytes) {
  static constexpr char32_t kStarts[] = {'=',  '+',    '-',    '@',    '\t',  '\r',
                                         '\n', 0xFF1D, 0xFF0B, 0xFF0D, 0xFF20};
  return !bytes.empty() && std::find(std::begin(kStarts), std::end(kStarts),
                                     firstCharacter(bytes).codePoint) != std::end(kStarts);
}

}  // namespace text
