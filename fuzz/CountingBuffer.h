// A source that counts the bytes that are fetched from it, and knows the first one.
#pragma once

#include <algorithm>
#include <limits>
#include <sstream>
#include <string>
#include <utility>

namespace fuzz {

class CountingBuffer final : public std::stringbuf {
 public:
  explicit CountingBuffer(const std::string& bytes) : std::stringbuf(bytes, std::ios::in) {}

  std::size_t fetched() const { return m_fetched; }

  /// The lowest byte that was fetched since the last call.
  std::streamoff takeLowest() {
    return std::exchange(m_lowest, std::numeric_limits<std::streamoff>::max());
  }

 protected:
  std::streamsize xsgetn(char* to, std::streamsize count) override {
    m_lowest = std::min<std::streamoff>(m_lowest, gptr() - eback());
    const std::streamsize got = std::stringbuf::xsgetn(to, count);
    m_fetched += static_cast<std::size_t>(got);
    return got;
  }

 private:
  std::size_t m_fetched = 0;
  std::streamoff m_lowest = std::numeric_limits<std::streamoff>::max();
};

}  // namespace fuzz
