// The columns of a report's streams, as compact text that the page decodes (report/columns.js).
//
// A column is a sequence of words of 32 or 64 bits: two's complement, or the bits of an IEEE 754
// number. It is stored as differences of order 0, 1 or 2, modulo the word's size, whichever is
// shortest: steady clocks have second differences near 0, and so have the bits of their doubles.
// A difference is written with its sign in the lowest bit (zigzag) in groups of 7 bits, low groups
// first, the high bit of a byte set where another follows. Where the plain words are shorter, they
// are stored little-endian instead. The bytes stand as base64.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace formats {

struct ColumnText {
  /// The order of the differences, or kPlain for little-endian words.
  int order = 0;
  std::string base64;

  static constexpr int kPlain = -1;
};

/// Both are pure functions of their argument; they may be called from any thread.
ColumnText columnText(const std::vector<std::uint32_t>& words);
ColumnText columnText(const std::vector<std::uint64_t>& words);

}  // namespace formats
