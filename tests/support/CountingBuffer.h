// An input that counts what is read from it.
#pragma once

#include <algorithm>
#include <limits>
#include <sstream>
#include <string>
#include <utility>

namespace testing_support {

class CountingBuffer final : public std::stringbuf {
 public:
  explicit CountingBuffer(const std::string& bytes) : std::stringbuf(bytes, std::ios::in) {}

  std::size_t readCount() const { return m_readCount; }
  std::size_t seekCount() const { return m_seekCount; }
  std::size_t byteCount() const { return m_byteCount; }

  /// The lowest offset that was read since the last call.
  std::streamoff takeLowest() {
    return std::exchange(m_lowest, std::numeric_limits<std::streamoff>::max());
  }

 protected:
  std::streamsize xsgetn(char* to, std::streamsize count) override {
    m_lowest = std::min<std::streamoff>(m_lowest, gptr() - eback());
    const std::streamsize got = std::stringbuf::xsgetn(to, count);
    ++m_readCount;
    m_byteCount += static_cast<std::size_t>(got);
    return got;
  }
  pos_type seekoff(off_type offset, std::ios::seekdir way, std::ios::openmode mode) override {
    ++m_seekCount;
    return std::stringbuf::seekoff(offset, way, mode);
  }
  pos_type seekpos(pos_type position, std::ios::openmode mode) override {
    ++m_seekCount;
    return std::stringbuf::seekpos(position, mode);
  }

 private:
  std::size_t m_readCount = 0;
  std::size_t m_seekCount = 0;
  std::size_t m_byteCount = 0;
  std::streamoff m_lowest = std::numeric_limits<std::streamoff>::max();
};

}  // namespace testing_support
