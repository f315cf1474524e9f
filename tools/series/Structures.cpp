#include "tools/series/Structures.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <limits>

#include "ZRKMetaData/src/ZRKMParserUtil.h"

namespace series::detail {

using ZRKMetaData::uint32;
using ZRKMetaData::uint64;

namespace {

constexpr std::size_t kReadAhead = 4096;
constexpr std::size_t kTypeBytes = 4;

}  // namespace

Structures::Structures(std::istream& file, bool isAtoms, int64 fileSize)
    : m_window(file, 0, kReadAhead), m_isAtoms(isAtoms), m_fileSize(fileSize) {}

ZRKMetaData::MetaDataHeader Structures::header(int64 offset) {
  m_window.seek(offset);
  return ZRKMetaData::readHeader(m_window);
}

bool Structures::readAtom(Structure& structure, uint64& byteCount) {
  uint32 type = 0;
  const auto fileSize = static_cast<uint64>(m_fileSize);
  if (!ZRKMetaData::readAtomHeader(m_window, fileSize, &byteCount, &type)) return false;
  structure.type.resize(kTypeBytes);
  boost::endian::endian_store<uint32, kTypeBytes, boost::endian::order::big>(
      reinterpret_cast<unsigned char*>(structure.type.data()), type);
  return true;
}

bool Structures::readChunk(Structure& structure, uint64& byteCount) {
  uint32 payloadSize = 0;
  const auto fileSize = static_cast<uint64>(m_fileSize);
  structure.type.resize(kTypeBytes);
  if (!ZRKMetaData::readChunkHeader(m_window, fileSize, structure.type.data(), &payloadSize)) {
    return false;
  }
  byteCount = uint64{payloadSize} + kStructureBytes;
  return true;
}

std::optional<Structure> Structures::at(int64 start) {
  if (start < 0 || start > m_fileSize - kStructureBytes) return std::nullopt;
  Structure read;
  read.start = start;
  m_window.seek(start);
  uint64 byteCount = 0;
  if (!(m_isAtoms ? readAtom(read, byteCount) : readChunk(read, byteCount))) return std::nullopt;
  read.payload = m_window.position();
  const bool isPossible =
      byteCount >= static_cast<uint64>(read.payload - start) &&
      byteCount < static_cast<uint64>(std::numeric_limits<int64>::max() - start);
  if (!isPossible) return read;
  read.end = start + static_cast<int64>(byteCount);
  read.next = m_isAtoms ? read.end : read.end + static_cast<int64>(byteCount % 2);
  return read;
}

std::optional<Structure> Structures::around(int64 payload, std::string_view type) {
  for (const int64 size : {kStructureBytes, kWideAtomBytes}) {
    auto structure = at(payload - size);
    if (structure && structure->type == type) {
      if (structure->payload == payload) return structure;
      if (size == kStructureBytes) return Structure{payload - size, payload, 0, 0, ""};
    }
    if (!m_isAtoms) break;
  }
  return std::nullopt;
}

bool Structures::isPlausible(int64 offset) {
  if (offset > m_fileSize - kStructureBytes) return offset <= m_fileSize;
  const auto structure = at(offset);
  return structure && structure->end != 0 &&
         std::all_of(structure->type.begin(), structure->type.end(), [](char character) {
           return (character >= ' ' && character <= '~') || character == '\xA9';
         });
}

}  // namespace series::detail
