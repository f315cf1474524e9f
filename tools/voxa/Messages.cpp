#include "tools/voxa/Messages.h"

#include <string>

#include "text/Printable.h"
#include "tools/voxa/Terminal.h"

namespace voxa {

namespace {

std::streambuf* g_unescaped = nullptr;  // of std::cerr, while there is an EscapedErrors
bool g_isQuiet = false;
bool g_hasStatus = true;          // whether there may be a status line
std::size_t g_statusColumns = 0;  // of the line that is shown

void writeUnescaped(std::string_view text) {
  if (g_unescaped == nullptr) return;
  g_unescaped->sputn(text.data(), static_cast<std::streamsize>(text.size()));
  g_unescaped->pubsync();
}

void print(std::string_view message, std::string_view color) {
  std::string prefix = "voxa:";
  if (g_unescaped == nullptr) {  // the program is a part of another one
    std::cerr << prefix + " " + text::printable(message) + "\n";
    return;
  }
  if (usesColors(StandardStream::Error)) {
    prefix = "\x1b[" + std::string(color) + "m" + prefix + "\x1b[0m";
  }
  hideStatus();
  writeUnescaped(prefix + " " + text::printable(message) + "\n");
}

}  // namespace

void say(std::string_view message) {
  print(message, "1;33");
}

void note(std::string_view message) {
  if (!g_isQuiet) print(message, "1");
}

void sayError(std::string_view message) {
  print(message, "1;31");
}

void beQuiet() {
  g_isQuiet = true;
  endStatus();
}

void showStatus(std::string_view line) {
  if (!g_hasStatus || connectionOf(StandardStream::Error) != Connection::Terminal) return;
  std::string text = "\r" + std::string(line);
  if (line.size() < g_statusColumns) text.append(g_statusColumns - line.size(), ' ');
  writeUnescaped(text);
  g_statusColumns = line.size();
}

void hideStatus() {
  if (g_statusColumns == 0) return;
  writeUnescaped("\r" + std::string(g_statusColumns, ' ') + "\r");
  g_statusColumns = 0;
}

void endStatus() {
  hideStatus();
  g_hasStatus = false;
}

EscapingBuffer::int_type EscapingBuffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof()))
    return traits_type::not_eof(character);
  const char byte = traits_type::to_char_type(character);
  return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
}

std::streamsize EscapingBuffer::xsputn(const char* text, std::streamsize size) {
  hideStatus();
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

EscapedErrors::EscapedErrors()
    : m_buffer(*std::cerr.rdbuf()), m_before(std::cerr.rdbuf(&m_buffer)) {
  g_unescaped = m_before;
}

EscapedErrors::~EscapedErrors() {
  std::cerr.rdbuf(m_before);
  g_unescaped = nullptr;
}

}  // namespace voxa
