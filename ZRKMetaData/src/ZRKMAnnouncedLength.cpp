#include "ZRKMetaData/src/ZRKMAnnouncedLength.h"

#include <stdexcept>

namespace ZRKMetaData {

void checkAnnounced(StreamWindow& in, uint64 count) {
  if (count <= kMaxMissingBytes) return;
  const uint64 left = in.bytesLeft();
  if (count > left && count - left > kMaxMissingBytes) {
    throw std::length_error("meta data entry announces " + std::to_string(count) + " bytes where " +
                            std::to_string(left) + " are left");
  }
}

void appendAnnounced(StreamWindow& in, uint64 count, std::string& text) {
  if (const char* const ready = in.take(count)) {
    text.append(ready, count);
    return;
  }
  checkAnnounced(in, count);
  const auto start = text.size();
  text.resize(start + count);
  in.read(&text[start], count);
}

}  // namespace ZRKMetaData
