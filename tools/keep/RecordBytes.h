// The bytes of a record that was read, with another time.
#pragma once

#include <string>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/recording/Records.h"

namespace keep {

inline recording::Bytes recordBytes(double seconds, int value) {
  return recording::intRecord(seconds, value);
}
inline recording::Bytes recordBytes(double seconds, double value) {
  return recording::doubleRecord(seconds, value);
}
inline recording::Bytes recordBytes(double seconds, ZRKMetaData::int64 value) {
  return recording::int64Record(seconds, value);
}
inline recording::Bytes recordBytes(double seconds, const std::string& value) {
  return recording::stringRecord(seconds, value);
}
inline recording::Bytes recordBytes(double seconds, const ZRKMetaData::KeyStroke& key) {
  return recording::keystrokeRecord(seconds, key.character, key.eventFlags);
}
inline recording::Bytes recordBytes(double seconds, const ZRKMetaData::Point& point) {
  return recording::pointRecord(seconds, point.x, point.y);
}
inline recording::Bytes recordBytes(double seconds, const ZRKMetaData::Rect& rect) {
  const auto& [a, b, c, d] = rect.coordinates;
  return recording::rectRecord(seconds, a, b, c, d);
}
inline recording::Bytes recordBytes(double seconds, const ZRKMetaData::CursorImage& image) {
  if (!image.m_data) return recording::cursorReferenceRecord(seconds, image.m_imageId);
  return recording::cursorImageRecord(
      seconds, image.m_imageId, image.m_imageInfo0, image.m_imageInfo1,
      {reinterpret_cast<const char*>(image.m_data.get()), image.imageByteCount()});
}

}  // namespace keep
