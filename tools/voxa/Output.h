// Standard output, which carries the result and nothing else.
#pragma once

#include <fmt/format.h>

#include <string>
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

  /// Throws Failure when standard output takes no more.
  void flush();

 private:
  static constexpr std::size_t kLarge = 64U << 10U;

  fmt::memory_buffer m_buffer;
};

/// `text` on one line of a terminal: well-formed UTF-8 with control characters as escapes.
std::string printable(std::string_view text);

/// `text` as a CSV field (RFC 4180): well-formed UTF-8, in quotes where it must be.
std::string csvField(std::string_view text);

}  // namespace voxa
