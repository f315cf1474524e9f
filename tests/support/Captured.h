// Captures the output of the code under test: the standard streams and the assertion reports.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

#include "ZRKMetaData/src/ZRKMAssert.h"

namespace testing_support {

/// Captures a standard stream during its lifetime.
class Captured {
 public:
  explicit Captured(std::ostream& stream)
      : m_stream(stream), m_before(stream.rdbuf(m_text.rdbuf())) {}
  ~Captured() { m_stream.rdbuf(m_before); }
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;

  std::string text() const { return m_text.str(); }

 private:
  std::ostringstream m_text;
  std::ostream& m_stream;
  std::streambuf* const m_before;
};

/// Captures the assertion reports of the parser during its lifetime, one "unit:line expression" per
/// line.
class AssertionLog {
 public:
  AssertionLog() : m_before(ZRKMetaData::setAssertionHandler(&take)) { text().clear(); }
  ~AssertionLog() { ZRKMetaData::setAssertionHandler(m_before); }
  AssertionLog(const AssertionLog&) = delete;
  AssertionLog& operator=(const AssertionLog&) = delete;

  static std::string& text() {
    static std::string reports;
    return reports;
  }

 private:
  static void take(const char* expression, const char* unit, int line) {
    text() += std::string(unit) + ":" + std::to_string(line) + " " + expression + "\n";
  }

  const ZRKMetaData::AssertionHandler m_before;
};

}  // namespace testing_support
