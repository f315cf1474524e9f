#include "tools/voxa/Output.h"

#include <cstdio>

#include "host/Kestova/Utf8.h"
#include "tools/voxa/Failure.h"

namespace voxa {

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

std::string printable(std::string_view text) {
  std::string line;
  for (const char character : Kestova::wellFormedUtf8(text)) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F) {
      line += fmt::format("\\x{:02x}", byte);
    } else {
      line += character;
    }
  }
  return line;
}

std::string csvField(std::string_view text) {
  std::string field = Kestova::wellFormedUtf8(text);
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string quoted = "\"";
  for (const char character : field) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  return quoted += '"';
}

}  // namespace voxa
