// Collects text in a buffer, so that a stream is called once per buffer and not once per word.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <string_view>
#include <type_traits>

#include "text/NumberText.h"

namespace text {

/// Does what `out.write` does, without its sentry for a stream that is not tied and not unit
/// buffered.
inline void put(std::ostream& out, std::string_view text) {
  const auto size = static_cast<std::streamsize>(text.size());
  const bool isPlain =
      out.good() && out.tie() == nullptr && (out.flags() & std::ios_base::unitbuf) == 0;
  if (!isPlain) {
    out.write(text.data(), size);
    return;
  }
  bool isWritten = false;
  try {
    isWritten = out.rdbuf()->sputn(text.data(), size) == size;
  } catch (...) {  // reported by the state, as `out.write` does
  }
  if (!isWritten) out.setstate(std::ios_base::badbit);
}

/// Writes to a stream through a buffer of `kSize` bytes. Used by one thread. The stream must
/// outlive the block and receives everything when the block ends, at the latest. Failures of the
/// stream show in its state; the destructor swallows what a stream throws.
template <std::size_t kSize>
class TextBlock {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): only what was written is read
  explicit TextBlock(std::ostream& out) : m_out(out) {}
  ~TextBlock() {
    try {
      flush();
    } catch (...) {  // the state of the stream shows the failure
    }
  }
  TextBlock(const TextBlock&) = delete;
  TextBlock& operator=(const TextBlock&) = delete;

  /// Appends texts, characters and numbers (as `writeNumber` does); an array of characters is a
  /// literal. One call with many parts is cheaper than many calls.
  template <class... Parts>
  void write(const Parts&... parts) {
    const std::size_t size = (maxSizeOf(parts) + ...);
    if (size > kSize - m_used) flush();
    if (size <= kSize) {
      char* end = m_text.data() + m_used;  // a local stays in a register, a member would not
      ((end = append(end, parts)), ...);
      m_used = static_cast<std::size_t>(end - m_text.data());
    } else {
      (writeThrough(parts), ...);
    }
  }

  /// Passes everything to the stream, for others that write to it.
  void flush() {
    const std::size_t used = m_used;
    m_used = 0;
    if (used != 0) text::put(m_out, {m_text.data(), used});
  }

 private:
  template <class Part>
  static constexpr bool kIsText = std::is_convertible_v<const Part&, std::string_view>;

  template <class Part>
  static std::size_t maxSizeOf(const Part& part) {
    if constexpr (kIsText<Part>) return std::string_view(part).size();
    return kMaxNumberSize;
  }
  static std::size_t maxSizeOf(char /*character*/) { return 1; }
  template <std::size_t kLength>
  static constexpr std::size_t maxSizeOf(const char (&)[kLength]) {
    return kLength - 1;
  }

  template <class Part>
  static char* append(char* first, const Part& part) {
    if constexpr (kIsText<Part>) {
      const std::string_view text = part;
      return std::copy(text.begin(), text.end(), first);
    } else {
      return writeNumber(first, part);
    }
  }
  static char* append(char* first, char character) {
    *first = character;
    return first + 1;
  }
  // A literal, whose size is known to the compiler.
  template <std::size_t kLength>
  static char* append(char* first, const char (&literal)[kLength]) {
    return std::copy_n(literal, kLength - 1, first);
  }

  // Writes one of several parts that together exceed the buffer.
  template <class Part>
  void writeThrough(const Part& part) {
    if constexpr (kIsText<Part>) {
      const std::string_view text = part;
      if (text.size() > kSize) {
        flush();
        text::put(m_out, text);
        return;
      }
    }
    write(part);
  }

  std::ostream& m_out;
  std::array<char, kSize> m_text;
  std::size_t m_used = 0;
};

}  // namespace text
