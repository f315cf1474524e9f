// Bytes of a file under construction, and the numbers that go into it. Written from
// docs/format.md alone: the writer shares no layout with the parser that reads its files.
#pragma once

#include <boost/endian/conversion.hpp>
#include <cstdint>
#include <cstring>
#include <string>

namespace recording {

using Bytes = std::string;

template <class Number>
Bytes littleEndian(Number number) {
  Bytes bytes(sizeof number, '\0');
  boost::endian::endian_store<Number, sizeof number, boost::endian::order::little>(
      reinterpret_cast<unsigned char*>(bytes.data()), number);
  return bytes;
}

template <class Number>
Bytes bigEndian(Number number) {
  Bytes bytes(sizeof number, '\0');
  boost::endian::endian_store<Number, sizeof number, boost::endian::order::big>(
      reinterpret_cast<unsigned char*>(bytes.data()), number);
  return bytes;
}

}  // namespace recording
