// Bounded readers of container headers. Each takes the size of the file in bytes and reads only
// fields that lie inside it. The stream's exception mask is set aside meanwhile.
//
// Atom header (QuickTime): big-endian 32-bit size of the whole atom, four type bytes; a size below
// 8 is replaced by a big-endian 64-bit size that follows the type.
// Chunk header (RIFF): four type bytes, little-endian 32-bit size of the payload.
#pragma once

#include <istream>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace ZRKMetaData {

class StreamWindow;

/// Reads an atom header. `atomSize` receives the size in bytes of the whole atom, `atomType` its
/// four type bytes as a big-endian number. Returns false when the header does not lie inside the
/// first `fileSize` bytes or the stream fails; fields that do not fit are not read. Null pointers
/// are reported as assertions.
bool readAtomHeader(std::istream& in, const uint64& fileSize, uint64* atomSize, uint32* atomType);
bool readAtomHeader(StreamWindow& in, const uint64& fileSize, uint64* atomSize, uint32* atomType);

/// Reads a chunk header. `chunkType` receives the four type bytes as stored, `chunkSize` the size
/// in bytes of the payload. Returns false under the same conditions as `readAtomHeader`.
bool readChunkHeader(std::istream& in, const uint64& fileSize, char* chunkType, uint32* chunkSize);
bool readChunkHeader(StreamWindow& in, const uint64& fileSize, char* chunkType, uint32* chunkSize);

/// Reads 4 or 8 bytes as an unsigned big-endian number. Missing bytes count as zero.
uint32 readBigEndian32(std::istream& in);
uint64 readBigEndian64(std::istream& in);

}  // namespace ZRKMetaData
