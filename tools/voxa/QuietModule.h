// Redirects or drops what the module and the parser print.
#pragma once

#include <iostream>

#include "ZRKMetaData/src/ZRKMAssert.h"

namespace voxa {

/// While an object exists, what the module writes to standard output goes to standard error,
/// escaped (Messages.h).
class QuietModule {
 public:
  QuietModule() : m_before(std::cout.rdbuf(std::cerr.rdbuf())) {}
  ~QuietModule() { std::cout.rdbuf(m_before); }
  QuietModule(const QuietModule&) = delete;
  QuietModule& operator=(const QuietModule&) = delete;

 private:
  std::streambuf* const m_before;
};

/// While an object exists, nothing is written to std::cerr, and the parser's assertions are not
/// reported. For a scan that the module repeats, so that each of its messages is printed once.
class SilentScan {
 public:
  SilentScan()
      : m_errors(std::cerr.rdbuf(nullptr)),
        m_handler(ZRKMetaData::setAssertionHandler([](const char*, const char*, int) {})) {}
  ~SilentScan() {
    ZRKMetaData::setAssertionHandler(m_handler);
    std::cerr.rdbuf(m_errors);  // also clears the failure of writing to no buffer
  }
  SilentScan(const SilentScan&) = delete;
  SilentScan& operator=(const SilentScan&) = delete;

 private:
  std::streambuf* const m_errors;
  const ZRKMetaData::AssertionHandler m_handler;
};

}  // namespace voxa
