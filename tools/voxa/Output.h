// Standard output, which carries the result and nothing else.
#pragma once

#include <fmt/format.h>

#include <string_view>

namespace voxa {

/// Collects text and writes it in large pieces, byte for byte. Used by one thread.
class Output {
 public:
  Output() = default;
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// To be appended to; `settle` afterwards writes it out when it has grown large.
  fmt::memory_buffer& buffer() { return m_buffer; }
  void settle() {
    if (m_buffer.size() >= kLarge) flush();
  }

  void write(std::string_view text) {
    m_buffer.append(text.data(), text.data() + text.size());
    settle();
  }

  // Text of a recording, which may be any bytes and of any length. It is written as well-formed
  // UTF-8 and piece by piece, so that memory does not grow with it.

  /// For a table: unprintable characters are escaped (text/Printable.h).
  void writePrintable(std::string_view text);

  /// As a CSV field (RFC 4180), in quotes where it must be.
  void writeCsvField(std::string_view text);

  /// As a JSON string.
  void writeJsonString(std::string_view text);

  /// Throws Failure when standard output takes no more.
  void flush();

 private:
  static constexpr std::size_t kLarge = 64U << 10U;

  fmt::memory_buffer m_buffer;
};

}  // namespace voxa
