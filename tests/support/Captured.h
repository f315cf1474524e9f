// What the code under test says: on the standard streams, and as assertion reports.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

#include "ZRKMetaData/src/ZRKMAssert.h"

namespace testing_support {

/// Takes what is written to a standard stream while it lives.
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

/// Takes the parser's assertion reports while it lives, one "unit:line expression" a line.
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
