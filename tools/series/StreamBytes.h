// The bytes of a stream that a guess looks at, read from a file.
#pragma once

#include <istream>
#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"
#include "tools/series/Guess.h"

namespace series {

/// Reads up to `count` bytes at `offset`, fewer at the end of the file. Clears the state of the
/// stream first.
std::string bytesAt(std::istream& file, ZRKMetaData::int64 offset, std::size_t count);

/// Owns the first and the last bytes of a stream.
class SampledBytes {
 public:
  /// Reads them of the records at [`offset`, `offset + byteCount`) of the file, which must hold
  /// them.
  SampledBytes(std::istream& file, ZRKMetaData::int64 offset, std::size_t byteCount);

  /// The view is valid while the object lives.
  StreamSample sample(bool isCut) const { return {m_head, m_tail, m_byteCount, isCut}; }

 private:
  std::size_t m_byteCount;
  std::string m_head;
  std::string m_tail;
};

}  // namespace series
