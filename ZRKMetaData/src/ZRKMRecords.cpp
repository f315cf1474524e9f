#include "ZRKMetaData/src/ZRKMRecords.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

namespace ZRKMetaData {

CursorImage::CursorImage(const CursorImage& other) {
  *this = other;
}

CursorImage& CursorImage::operator=(const CursorImage& other) {
  if (this == &other) return *this;
  std::unique_ptr<unsigned char[]> data;
  if (const uint32 count = other.imageByteCount(); count != 0) {
    data.reset(new unsigned char[count]);
    std::memcpy(data.get(), other.m_data.get(), count);
  }
  m_imageId = other.m_imageId;
  m_dataSize = other.m_dataSize;
  m_imageInfo0 = other.m_imageInfo0;
  m_imageInfo1 = other.m_imageInfo1;
  m_data = std::move(data);
  return *this;
}

bool operator==(const CursorImage& left, const CursorImage& right) {
  if (&left == &right) return true;
  if (left.m_imageId != right.m_imageId || left.m_dataSize != right.m_dataSize) return false;
  if (left.m_dataSize == 0) return true;
  return left.m_imageInfo0 == right.m_imageInfo0 && left.m_imageInfo1 == right.m_imageInfo1 &&
         (left.imageByteCount() == 0 ||
          std::memcmp(left.m_data.get(), right.m_data.get(), left.imageByteCount()) == 0);
}

bool operator!=(const CursorImage& left, const CursorImage& right) {
  return !(left == right);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts are built against this signature
std::ostream& operator<<(std::ostream& out, CursorImage image) {
  const auto address = reinterpret_cast<std::uintptr_t>(image.m_data.get());
  return out << '(' + std::to_string(image.m_imageId) + ',' + std::to_string(image.m_dataSize) +
                    ',' + std::to_string(image.m_imageInfo0) + ',' +
                    std::to_string(image.m_imageInfo1) + ',' +
                    std::to_string(static_cast<int32>(address & 0xFFFFFFFFU)) + ')';
}

}  // namespace ZRKMetaData
