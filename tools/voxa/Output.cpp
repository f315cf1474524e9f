#include "tools/voxa/Output.h"

#include <cstdio>

#include "text/Utf8.h"
#include "tools/voxa/Failure.h"

namespace voxa {

namespace {

// Hands over `text` a character at a time, as its bytes, with replacement characters where it is no
// UTF-8.
template <class Take>
void eachCharacter(std::string_view text, Take take) {
  static constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  while (!text.empty()) {
    const text::Utf8Character character = text::firstCharacter(text);
    take(character.isWellFormed ? text.substr(0, character.length) : kReplacement);
    text.remove_prefix(character.length);
  }
}

bool isControl(unsigned char byte) {
  return byte < 0x20;
}

}  // namespace

Output::~Output() {
  // What a failed command has already found out is still shown; a failure here has been reported.
  std::fwrite(m_buffer.data(), 1, m_buffer.size(), stdout);
}

void Output::flush() {
  const bool isWritten =
      std::fwrite(m_buffer.data(), 1, m_buffer.size(), stdout) == m_buffer.size() &&
      std::fflush(stdout) == 0;
  m_buffer.clear();
  if (!isWritten) throw Failure(Status::Failed, "standard output: cannot be written");
}

void Output::writePrintable(std::string_view text) {
  eachCharacter(text, [this](std::string_view character) {
    const auto byte = static_cast<unsigned char>(character.front());
    if (isControl(byte) || byte == 0x7F) {
      writeEscape("\\x", byte);
    } else {
      write(character);
    }
  });
}

void Output::writeCsvField(std::string_view text) {
  const bool isQuoted = text.find_first_of(",\"\r\n") != std::string_view::npos;
  if (isQuoted) write("\"");
  eachCharacter(text, [this](std::string_view character) {
    write(character);
    if (character == "\"") write(character);
  });
  if (isQuoted) write("\"");
}

void Output::writeJsonString(std::string_view text) {
  static constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
  static constexpr std::string_view kLetters = "\"\\bfnrt";
  write("\"");
  eachCharacter(text, [this](std::string_view character) {
    const auto byte = static_cast<unsigned char>(character.front());
    const auto form = kEscaped.find(character.front());
    if (form != std::string_view::npos) {
      write("\\");
      write(kLetters.substr(form, 1));
    } else if (isControl(byte)) {
      writeEscape("\\u00", byte);
    } else {
      write(character);
    }
  });
  write("\"");
}

void Output::writeEscape(std::string_view prefix, unsigned char byte) {
  static constexpr char kDigits[] = "0123456789abcdef";
  const char digits[] = {kDigits[byte >> 4U], kDigits[byte & 0xFU]};
  m_buffer.append(prefix);
  write({digits, sizeof digits});
}

}  // namespace voxa
