// An input that fails, or reads short, at a byte.
#pragma once

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>

namespace testing_support {

class Device final : public std::stringbuf {
 public:
  enum class Ends { Failing, Short };

  Device(const std::string& bytes, std::size_t end, Ends how)
      : std::stringbuf(bytes, std::ios::in), m_end(static_cast<std::streamsize>(end)), m_how(how) {}

 protected:
  std::streamsize xsgetn(char* to, std::streamsize count) override {
    const std::streamsize left = m_end - (gptr() - eback());
    if (count > left && m_how == Ends::Failing) throw std::runtime_error("device");
    return std::stringbuf::xsgetn(to, std::min(count, std::max<std::streamsize>(left, 0)));
  }

 private:
  const std::streamsize m_end;
  const Ends m_how;
};

}  // namespace testing_support
