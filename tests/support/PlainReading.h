// Reads a stream's records from the file itself, one field after the other, asking it for
// everything: slowly, and so simply that readers which read ahead can be measured by it.
#pragma once

#include <array>
#include <istream>
#include <type_traits>

#include "ZRKMetaData/src/ZRKMMetaDataReader.h"

namespace testing_support {

/// What `MetaDataReader::parseFile` does with the same arguments, for a header of a version that it
/// can read. Throws what the reading of a record throws.
template <class T>
void readPlainly(ZRKMetaData::DataStreamObserver<T>& observer, std::istream& in,
                 ZRKMetaData::int64 offset, ZRKMetaData::int64 size) {
  in.clear();
  in.seekg(offset);
  std::array<char, 24> header{};
  in.read(header.data(), header.size());
  while (in.good() && in.tellg() < offset + size) {
    double seconds = 0;
    T value{};
    if constexpr (std::is_same_v<T, ZRKMetaData::CursorImage>) {
      ZRKMetaData::readRecord(in, seconds, &value);
    } else {
      ZRKMetaData::readRecord(in, seconds, value);
    }
    if (!observer.onData(seconds, value)) return;
    in.peek();
  }
}

}  // namespace testing_support
