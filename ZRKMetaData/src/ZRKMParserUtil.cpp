#include "ZRKMetaData/src/ZRKMParserUtil.h"

#include <boost/endian/buffers.hpp>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMExceptionMaskGuard.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

namespace {

constexpr char kUtilUnit[] = "ZRKMParserUtil";
constexpr uint32 kSmallestPlainAtomSize = 8;

template <class Buffer>
auto readNumber(StreamWindow& in) {
  Buffer buffer{0};
  in.read(buffer.data(), sizeof buffer);
  return buffer.value();
}

uint32 readBigEndian32(StreamWindow& in) {
  return readNumber<boost::endian::big_uint32_buf_t>(in);
}

uint64 readBigEndian64(StreamWindow& in) {
  return readNumber<boost::endian::big_uint64_buf_t>(in);
}

bool hasRoom(const StreamWindow& in, uint64 fileSize, uint64 byteCount) {
  return fileSize >= byteCount && in.position() <= static_cast<int64>(fileSize - byteCount);
}

}  // namespace

bool readAtomHeader(StreamWindow& in, const uint64& fileSize, uint64* atomSize, uint32* atomType) {
  if (atomSize == nullptr) reportAssertion("atomSize", kUtilUnit, 40);
  if (atomType == nullptr) reportAssertion("atomType", kUtilUnit, 41);
  if (atomSize == nullptr || atomType == nullptr) return false;

  if (!hasRoom(in, fileSize, 8)) return false;
  *atomSize = readBigEndian32(in);
  *atomType = readBigEndian32(in);
  if (*atomSize < kSmallestPlainAtomSize) {
    if (!hasRoom(in, fileSize, 8)) return false;
    *atomSize = readBigEndian64(in);
  }
  return in.good();
}

bool readChunkHeader(StreamWindow& in, const uint64& fileSize, char* chunkType, uint32* chunkSize) {
  if (chunkType == nullptr) reportAssertion("chunkType", kUtilUnit, 65);
  if (chunkSize == nullptr) reportAssertion("chunkSize", kUtilUnit, 66);
  if (chunkType == nullptr || chunkSize == nullptr) return false;

  if (!hasRoom(in, fileSize, 4)) return false;
  in.read(chunkType, 4);
  if (!hasRoom(in, fileSize, 4)) return false;
  *chunkSize = readNumber<boost::endian::little_uint32_buf_t>(in);
  return in.good();
}

bool readAtomHeader(std::istream& in, const uint64& fileSize, uint64* atomSize, uint32* atomType) {
  const ExceptionMaskGuard maskGuard(in);
  StreamWindow window(in, in.tellg(), 0);
  return readAtomHeader(window, fileSize, atomSize, atomType);
}

bool readChunkHeader(std::istream& in, const uint64& fileSize, char* chunkType, uint32* chunkSize) {
  const ExceptionMaskGuard maskGuard(in);
  StreamWindow window(in, in.tellg(), 0);
  return readChunkHeader(window, fileSize, chunkType, chunkSize);
}

uint32 readBigEndian32(std::istream& in) {
  StreamWindow window(in);
  return readBigEndian32(window);
}

uint64 readBigEndian64(std::istream& in) {
  StreamWindow window(in);
  return readBigEndian64(window);
}

}  // namespace ZRKMetaData
