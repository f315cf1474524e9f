// Standard output, which has the result of a command and nothing else.
#pragma once

#include <fmt/format.h>

#include <string_view>

namespace voxa {

/// Buffers text and writes it byte for byte. Used by one thread.
class Output {
 public:
  Output() = default;
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// Append to it directly, then call `flushIfLarge`.
  fmt::memory_buffer& buffer() { return m_buffer; }
  void flushIfLarge() {
    if (m_buffer.size() >= kMaxBufferBytes) flush();
  }

  void write(std::string_view text) {
    m_buffer.append(text.data(), text.data() + text.size());
    flushIfLarge();
  }

  // Text of a recording may be any bytes and of any length. It is written as well-formed UTF-8, in
  // pieces, so that memory does not grow with it.

  /// Writes text to a table, with unprintable characters escaped (text/Printable.h).
  void writePrintable(std::string_view text);

  /// Writes a CSV field (RFC 4180), quoted where necessary.
  void writeCsvField(std::string_view text);

  /// Writes a JSON string.
  void writeJsonString(std::string_view text);

  /// Writes the buffer. Throws Failure when standard output fails.
  void flush();

 private:
  static constexpr std::size_t kMaxBufferBytes = 64U << 10U;

  fmt::memory_buffer m_buffer;
};

}  // namespace voxa
