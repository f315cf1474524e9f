// Gathers text on its way to a stream, which is asked once a block instead of once a word.
#pragma once

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>
#include <utility>

namespace Kestova {

/// Used by one thread. The stream must outlive it, and sees everything at the latest when the block
/// ends; failures show in the stream's state.
class TextBlock {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): what is not used is not read
  explicit TextBlock(std::ostream& out) : m_out(out) {}
  ~TextBlock() {
    try {
      flush();
    } catch (...) {  // of a stream that throws; its state tells
    }
  }
  TextBlock(const TextBlock&) = delete;
  TextBlock& operator=(const TextBlock&) = delete;

  TextBlock& operator<<(std::string_view text) {
    if (text.size() > m_text.size() - m_used) {
      flush();
      if (text.size() > m_text.size()) {
        m_out.write(text.data(), static_cast<std::streamsize>(text.size()));
        return *this;
      }
    }
    std::copy(text.begin(), text.end(), m_text.data() + m_used);
    m_used += text.size();
    return *this;
  }

  /// Hands everything to the stream, for others who write to it.
  void flush() {
    const std::size_t used = std::exchange(m_used, 0);
    if (used != 0) m_out.write(m_text.data(), static_cast<std::streamsize>(used));
  }

 private:
  std::ostream& m_out;
  std::array<char, 8192> m_text;
  std::size_t m_used = 0;
};

}  // namespace Kestova
