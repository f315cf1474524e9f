// The result of a command: standard output, which has nothing else, or a file.
#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "tools/files/OutputFile.h"

namespace voxa {

/// Options -o and --force.
struct Destination {
  std::string file = "-";  ///< UTF-8; "-" is standard output
  bool force = false;      ///< replace an existing file
};

/// Buffers text and writes it byte for byte. Used by one thread.
class Output {
 public:
  /// Writes to standard output.
  Output() = default;

  /// Writes to `destination`. Throws as files::OutputFile does.
  explicit Output(const Destination& destination);

  /// A file that was not finished is removed.
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

  /// Writes the buffer. Throws std::runtime_error, which ends the command and is no Failure of the
  /// recording that is read.
  void flush();

  /// Writes the buffer and puts a file under its name. Call it once, last. Throws as `flush` does.
  void finish();

 private:
  static constexpr std::size_t kMaxBufferBytes = 64U << 10U;

  fmt::memory_buffer m_buffer;
  std::unique_ptr<files::OutputFile> m_file;  // null for standard output
};

}  // namespace voxa
