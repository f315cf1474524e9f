// The common parts of the fuzz targets. A target is a function of an input that checks properties
// which must hold for every input. libFuzzer generates the inputs; in other builds Replay.cpp
// replays files.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// Prints the property and aborts unless it holds.
inline void require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "property broken: %s\n", property);
  std::abort();
}

/// Reads an input from its begin.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : m_rest(reinterpret_cast<const char*>(data), size) {}

  bool isEmpty() const { return m_rest.empty(); }

  /// The next number. Bytes past the end of the input are zero.
  template <class Number>
  Number take() {
    Number number{};
    const std::size_t count = std::min(sizeof number, m_rest.size());
    std::memcpy(&number, m_rest.data(), count);
    m_rest.remove_prefix(count);
    return number;
  }

  /// The rest of the input.
  std::string rest() { return std::string(std::exchange(m_rest, {})); }

 private:
  std::string_view m_rest;
};

/// Discards the output on the standard streams during its lifetime.
class Quiet {
 public:
  Quiet() : m_out(std::cout.rdbuf(&m_nothing)), m_error(std::cerr.rdbuf(&m_nothing)) {}
  ~Quiet() {
    std::cout.rdbuf(m_out);
    std::cerr.rdbuf(m_error);
  }
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;

 private:
  class Nothing final : public std::streambuf {
    int_type overflow(int_type character) override { return traits_type::not_eof(character); }
  };

  Nothing m_nothing;
  std::streambuf* const m_out;
  std::streambuf* const m_error;
};

}  // namespace fuzz
