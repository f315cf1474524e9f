#include "tools/recording/Records.h"

namespace recording {

namespace {

constexpr std::uint32_t kTimeSize = 8;
constexpr std::uint32_t kImageInfoSize = 8;

std::uint32_t sizeField(std::size_t byteCount) {
  return static_cast<std::uint32_t>(byteCount);
}

}  // namespace

Bytes intRecord(double seconds, std::int32_t value) {
  return littleEndian(seconds) + littleEndian(value);
}

Bytes doubleRecord(double seconds, double value) {
  return littleEndian(seconds) + littleEndian(value);
}

Bytes int64Record(double seconds, std::int64_t value) {
  return littleEndian(seconds) + littleEndian(value);
}

Bytes keystrokeRecord(double seconds, std::int32_t character, std::int32_t eventFlags) {
  return littleEndian(seconds) + littleEndian(character) + littleEndian(eventFlags);
}

Bytes pointRecord(double seconds, std::int32_t x, std::int32_t y) {
  return littleEndian(seconds) + littleEndian(x) + littleEndian(y);
}

Bytes rectRecord(double seconds, std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) {
  return littleEndian(seconds) + littleEndian(a) + littleEndian(b) + littleEndian(c) +
         littleEndian(d);
}

Bytes stringRecord(double seconds, const Bytes& characters) {
  return littleEndian(sizeField(kTimeSize + characters.size())) + littleEndian(seconds) +
         characters;
}

Bytes cursorImageRecord(double seconds, std::uint64_t imageId, std::int32_t info0,
                        std::int32_t info1, const Bytes& image) {
  const Bytes afterSize = littleEndian(seconds) + littleEndian(imageId) +
                          littleEndian(sizeField(kImageInfoSize + image.size())) +
                          littleEndian(info0) + littleEndian(info1) + image;
  return littleEndian(sizeField(afterSize.size())) + afterSize;
}

Bytes cursorReferenceRecord(double seconds, std::uint64_t imageId) {
  const Bytes afterSize =
      littleEndian(seconds) + littleEndian(imageId) + littleEndian(sizeField(0));
  return littleEndian(sizeField(afterSize.size())) + afterSize;
}

}  // namespace recording
