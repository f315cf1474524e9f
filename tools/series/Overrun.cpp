#include "tools/series/Overrun.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include "ZRKMetaData/src/ZRKMParserUtil.h"
#include "text/Counted.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/Structures.h"

namespace series {

using detail::kBlockType;
using detail::Structure;
using detail::Structures;
using ZRKMetaData::int64;
using ZRKMetaData::uint32;

namespace {

constexpr std::array<std::string_view, 12> kAtomTypes = {kBlockType, "ftyp", "moov", "moof",
                                                         "mdat",     "free", "skip", "wide",
                                                         "meta",     "uuid", "udta", "sidx"};
constexpr std::array<std::string_view, 4> kChunkTypes = {kBlockType, "RIFF", "LIST", "JUNK"};

template <std::size_t count>
bool has(const std::array<std::string_view, count>& types, const std::string& type) {
  return std::find(types.begin(), types.end(), type) != types.end();
}

// Where the block begins whose first entry is the first of the streams, 0 if there is none.
int64 startOfBlock(Structures& structures, const ZRKMetaData::MetaDataLocations& streams) {
  if (streams.empty()) return 0;
  const auto first = std::min_element(
      streams.begin(), streams.end(),
      [](const auto& one, const auto& other) { return one.second.offset < other.second.offset; });
  const auto entry = structures.around(first->second.offset, detail::kEntryType);
  if (!entry) return 0;
  const auto block = structures.around(entry->start, kBlockType);
  return block && block->end != 0 ? block->start : 0;
}

std::optional<Structure> lastStructure(std::istream& file, bool isAtoms, int64 fileSize,
                                       const ZRKMetaData::MetaDataLocations& streams) {
  Structures structures(file, isAtoms, fileSize);
  auto last = structures.at(startOfBlock(structures, streams));
  while (last && last->end != 0 && last->next < fileSize) last = structures.at(last->next);
  return last;
}

// Whether the size of the structure is a number of bytes. Media that were written without knowing
// their length have an atom of size 0 or a chunk of the greatest size, up to the end of the file.
bool hasSize(std::istream& file, bool isAtoms, const Structure& structure) {
  if (!isAtoms) return structure.end - structure.payload != std::numeric_limits<uint32>::max();
  if (structure.payload - structure.start != detail::kWideAtomBytes) return true;
  constexpr uint32 kWideMark = 1;  // the parser takes sizes of 0 and from 2 to 7 for it, too
  file.clear();
  file.seekg(structure.start);
  return ZRKMetaData::readBigEndian32(file) == kWideMark;
}

}  // namespace

std::string Overrun::text() const {
  const std::string what =
      type == kBlockType ? "the metadata block" : "'" + type + "' at byte " + std::to_string(start);
  return what + " ends " + text::counted(static_cast<std::uint64_t>(excess), "byte") +
         " beyond the file; streams may be missing; voxa salvage may recover them";
}

std::optional<Overrun> findOverrun(std::istream& file, ZRKMetaData::ContainerKind kind,
                                   const ZRKMetaData::MetaDataLocations& streams) {
  if (kind != ZRKMetaData::Atoms && kind != ZRKMetaData::Riff) return std::nullopt;
  const bool isAtoms = kind == ZRKMetaData::Atoms;
  const int64 fileSize = sizeOfSource(file);
  const auto last = lastStructure(file, isAtoms, fileSize, streams);
  const bool isBeyond = last && last->end > fileSize &&
                        (isAtoms ? has(kAtomTypes, last->type) : has(kChunkTypes, last->type)) &&
                        hasSize(file, isAtoms, *last);
  file.clear();
  if (!isBeyond) return std::nullopt;
  return Overrun{last->type, last->start, last->end - fileSize};
}

}  // namespace series
