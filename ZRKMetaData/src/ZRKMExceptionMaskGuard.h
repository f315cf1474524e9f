// Keeps the exception mask of a stream out of the way of code that tests the stream's state.
#pragma once

#include <ios>

namespace ZRKMetaData {

/// Sets `stream.exceptions()` to none for its lifetime, then restores the mask. Restoring never
/// throws, even where the stream is in a state that the mask names: the caller reads that state,
/// and the mask applies from the caller's next operation on. Guards nest.
class ExceptionMaskGuard {
 public:
  explicit ExceptionMaskGuard(std::ios& stream) : m_stream(stream), m_mask(stream.exceptions()) {
    if (m_mask != std::ios::goodbit) m_stream.exceptions(std::ios::goodbit);
  }

  ~ExceptionMaskGuard() {
    if (m_mask == std::ios::goodbit) return;
    try {
      m_stream.exceptions(m_mask);
    } catch (...) {  // std::ios::failure for the present state; the mask is set nevertheless
    }
  }

  ExceptionMaskGuard(const ExceptionMaskGuard&) = delete;
  ExceptionMaskGuard& operator=(const ExceptionMaskGuard&) = delete;

 private:
  std::ios& m_stream;
  const std::ios::iostate m_mask;
};

}  // namespace ZRKMetaData
