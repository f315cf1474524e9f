// Numbers as bytes. The writers in this folder follow docs/format.md and share no code with the
// parser, so that tests compare two independent implementations.
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
