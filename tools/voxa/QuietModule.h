// Keeps messages of the module out of standard output.
#pragma once

#include <iostream>

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

}  // namespace voxa
