// Reads little-endian numbers from a window, and from a record that is buffered as a whole.
#pragma once

#include <boost/endian/buffers.hpp>
#include <cstring>
#include <utility>

#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

template <class Number>
using LittleEndian =
    boost::endian::endian_buffer<boost::endian::order::little, Number, sizeof(Number) * 8>;

/// Reads a number of 4 or 8 bytes. Where the stream ends inside it, the bytes of `value` that were
/// not read are unchanged.
template <class Number>
void readLittleEndian(StreamWindow& in, Number& value) {
  LittleEndian<Number> buffer;
  if (const char* const ready = in.take(sizeof buffer)) {
    std::memcpy(buffer.data(), ready, sizeof buffer);
  } else {
    buffer = value;
    in.read(buffer.data(), sizeof buffer);
  }
  value = buffer.value();
}

/// The bytes of a record, all of which are there.
class RecordBytes {
 public:
  explicit RecordBytes(const char* first) : m_next(first) {}

  const char* take(std::size_t count) { return std::exchange(m_next, m_next + count); }

 private:
  const char* m_next;
};

template <class Number>
void readLittleEndian(RecordBytes& in, Number& value) {
  LittleEndian<Number> buffer;
  std::memcpy(buffer.data(), in.take(sizeof buffer), sizeof buffer);
  value = buffer.value();
}

}  // namespace ZRKMetaData
