// SHA-256 digests, computed by the platform's own library.
#pragma once

#include <cstddef>
#include <string>

#include "ZRKMetaData/src/ZRKMRecords.h"

namespace voxa {

/// Returns 64 lower-case hexadecimal digits. Throws Failure when the library fails.
std::string sha256(const unsigned char* bytes, std::size_t count);

/// The digest of the bytes of an image, empty when it has none.
inline std::string digestOf(const ZRKMetaData::CursorImage& image) {
  return image.m_data ? sha256(image.m_data.get(), image.imageByteCount()) : std::string();
}

}  // namespace voxa
