#include "tools/voxa/Messages.h"

#include "text/Printable.h"

namespace voxa {

void say(std::string_view message) {
  std::cerr << "voxa: " + text::printable(message) + "\n";
}

EscapingBuffer::int_type EscapingBuffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof()))
    return traits_type::not_eof(character);
  const char byte = traits_type::to_char_type(character);
  return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
}

std::streamsize EscapingBuffer::xsputn(const char* text, std::streamsize size) {
  std::string_view rest(text, static_cast<std::size_t>(size));
  std::string escaped;
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    text::forEachPiece<text::PrintableRule>(line,
                                            [&](std::string_view piece) { escaped += piece; });
    rest.remove_prefix(line.size());
    if (rest.empty()) break;
    escaped += '\n';
    rest.remove_prefix(1);
  }
  const auto count = static_cast<std::streamsize>(escaped.size());
  return m_target.sputn(escaped.data(), count) == count ? size : 0;
}

}  // namespace voxa
