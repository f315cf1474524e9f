// A device that gives up at a byte, by failing or by giving less than it was asked for.
#pragma once

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>

namespace testing_support {

class Device final : public std::stringbuf {
 public:
  enum class Ends { Failing, Short };

  Device(const std::string& bytes, std::size_t last, Ends how)
      : std::stringbuf(bytes, std::ios::in),
        m_last(static_cast<std::streamsize>(last)),
        m_how(how) {}

 protected:
  std::streamsize xsgetn(char* to, std::streamsize count) override {
    const std::streamsize left = m_last - (gptr() - eback());
    if (count > left && m_how == Ends::Failing) throw std::runtime_error("device");
    return std::stringbuf::xsgetn(to, std::min(count, std::max<std::streamsize>(left, 0)));
  }

 private:
  const std::streamsize m_last;
  const Ends m_how;
};

}  // namespace testing_support
