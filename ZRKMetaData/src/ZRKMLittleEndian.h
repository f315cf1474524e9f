// Reads little-endian numbers from a window.
#pragma once

#include <boost/endian/buffers.hpp>
#include <cstring>

#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

/// Reads a number of 4 or 8 bytes. Where the stream ends inside it, the bytes of `value` that were
/// not read are unchanged.
template <class Number>
void readLittleEndian(StreamWindow& in, Number& value) {
  using Buffer =
      boost::endian::endian_buffer<boost::endian::order::little, Number, sizeof(Number) * 8>;
  Buffer buffer;
  if (const char* const ready = in.take(sizeof buffer)) {
    std::memcpy(buffer.data(), ready, sizeof buffer);
  } else {
    buffer = value;
    in.read(buffer.data(), sizeof buffer);
  }
  value = buffer.value();
}

}  // namespace ZRKMetaData
