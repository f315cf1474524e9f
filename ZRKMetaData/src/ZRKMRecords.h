// The record types of metadata streams that are not plain numbers or strings. Plain values: copy
// them freely, use one from one thread at a time.
#pragma once

#include <memory>
#include <ostream>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace ZRKMetaData {

struct KeyStroke {
  KeyStroke() = default;
  KeyStroke(int32 character_, int32 eventFlags_) : character(character_), eventFlags(eventFlags_) {}

  int32 character = 0;
  int32 eventFlags = 0;
};

/// A position in pixels of the recording.
struct Point {
  Point() = default;
  Point(int32 x_, int32 y_) : x(x_), y(y_) {}

  int32 x = 0;
  int32 y = 0;
};

/// Four coordinates in stored order. The host defines what each means.
struct Rect {
  Rect() = default;
  Rect(int32 a, int32 b, int32 c, int32 d) : coordinates{a, b, c, d} {}

  int32 coordinates[4] = {0, 0, 0, 0};
};

/// The image of the mouse cursor at one time: an identifier and, optionally, the image itself.
/// `m_dataSize` is 0 (no image) or above 8, and `m_data` is set exactly when it is above 8.
class CursorImage {
 public:
  CursorImage() = default;

  /// Takes ownership of `data`, which comes from new[] and may be null.
  CursorImage(uint64 imageId, uint32 dataSize, int32 imageInfo0, int32 imageInfo1,
              unsigned char* data)
      : m_imageId(imageId),
        m_dataSize(dataSize),
        m_imageInfo0(imageInfo0),
        m_imageInfo1(imageInfo1),
        m_data(data) {}

  /// Copies deeply. If std::bad_alloc is thrown, the target is unchanged.
  CursorImage(const CursorImage& other);
  CursorImage& operator=(const CursorImage& other);

  virtual ~CursorImage() = default;

  /// The number of bytes in `m_data`.
  uint32 imageByteCount() const {
    return m_dataSize > kInfoByteCount ? m_dataSize - kInfoByteCount : 0;
  }

  static constexpr uint32 kInfoByteCount = 8;  ///< of the two info words, counted in m_dataSize

  uint64 m_imageId = 0;
  uint32 m_dataSize = 0;  ///< bytes of the info words and the image together
  int32 m_imageInfo0 = 0;
  int32 m_imageInfo1 = 0;
  std::unique_ptr<unsigned char[]> m_data;
};

/// Images without data are equal by identifier alone; others when info words and bytes are equal.
bool operator==(const CursorImage& left, const CursorImage& right);
bool operator!=(const CursorImage& left, const CursorImage& right);

/// Writes "(identifier,size,info,info,address)" in any locale; the address: low 32 bits, signed.
std::ostream& operator<<(std::ostream& out, CursorImage image);

}  // namespace ZRKMetaData
