// SHA-256 digests, computed by the platform's own library.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "ZRKMetaData/src/ZRKMRecords.h"

namespace voxa {

/// The digest of bytes that come in pieces. Every operation throws Failure when the library fails.
/// Used by one thread.
class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;

  void add(std::string_view bytes);

  /// Returns 64 lower-case hexadecimal digits. Call it once, last.
  std::string finish();

 private:
  struct State;  // of the library
  const std::unique_ptr<State> m_state;
};

inline std::string sha256(std::string_view bytes) {
  Sha256 digest;
  digest.add(bytes);
  return digest.finish();
}

/// The digest of the bytes of an image, empty when it has none.
inline std::string digestOf(const ZRKMetaData::CursorImage& image) {
  if (!image.m_data) return {};
  return sha256({reinterpret_cast<const char*>(image.m_data.get()), image.imageByteCount()});
}

}  // namespace voxa
