// Messages on standard error, with unprintable characters escaped.
#pragma once

#include <iostream>
#include <streambuf>
#include <string_view>

namespace voxa {

/// Prints one line: "voxa: " and the message, escaped.
void say(std::string_view message);

/// Forwards text to another buffer, line by line and escaped (text/Printable.h).
class EscapingBuffer final : public std::streambuf {
 public:
  /// `target` must outlive the buffer.
  explicit EscapingBuffer(std::streambuf& target) : m_target(target) {}

 protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override { return m_target.pubsync(); }

 private:
  std::streambuf& m_target;
};

/// While an object exists, everything written to std::cerr, also by the module, is escaped.
class EscapedErrors {
 public:
  EscapedErrors() : m_buffer(*std::cerr.rdbuf()), m_before(std::cerr.rdbuf(&m_buffer)) {}
  ~EscapedErrors() { std::cerr.rdbuf(m_before); }
  EscapedErrors(const EscapedErrors&) = delete;
  EscapedErrors& operator=(const EscapedErrors&) = delete;

 private:
  EscapingBuffer m_buffer;
  std::streambuf* const m_before;
};

}  // namespace voxa
