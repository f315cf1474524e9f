#include "tools/series/Salvage.h"

#include <boost/uuid/uuid.hpp>
#include <map>

#include "tools/series/EntrySearch.h"
#include "tools/series/WholeRecords.h"

namespace series {

using ZRKMetaData::ContainerKind;
using ZRKMetaData::int64;
using ZRKMetaData::MetaDataHeader;
using ZRKMetaData::MetaDataUUID;

namespace {

WholeRecords recordsOf(std::istream& file, ContainerKind kind, const FoundEntry& entry) {
  const int64 first = entry.offset + MetaDataHeader::kByteCount;
  WholeRecords records = findWholeRecords(file, first, entry.end - first, entry.isCut);
  const bool mayBeCut = kind == ZRKMetaData::Raw && !records.doubt.empty();
  return mayBeCut ? findWholeRecords(file, first, entry.end - first, true) : records;
}

std::string doubtOf(const FoundEntry& entry, int entriesWithId, const WholeRecords& records) {
  if (entry.doubt != nullptr) return entry.doubt;
  if (!MetaDataUUID::isKnown(entry.header.uuid)) return "its identifier is not registered";
  if (entry.header.version != 1) {
    return "its version is " + std::to_string(entry.header.version) + ", not 1";
  }
  if (entriesWithId != 1) return "another entry has the same identifier";
  return records.doubt;
}

}  // namespace

std::vector<SalvagedStream> salvageStreams(std::istream& file, ContainerKind kind) {
  const std::vector<FoundEntry> entries = findEntries(file, kind);
  std::map<boost::uuids::uuid, int> counts;
  for (const FoundEntry& entry : entries) ++counts[entry.header.uuid];
  std::map<boost::uuids::uuid, int> left = counts;
  std::vector<SalvagedStream> streams;
  streams.reserve(entries.size());
  for (const FoundEntry& entry : entries) {
    const boost::uuids::uuid& id = entry.header.uuid;
    const WholeRecords records = recordsOf(file, kind, entry);
    SalvagedStream stream;
    stream.header = entry.header;
    stream.offset = entry.offset;
    stream.size = MetaDataHeader::kByteCount + records.byteCount;
    stream.recordCount = records.count;
    stream.isCut = entry.isCut || entry.end - entry.offset > stream.size;
    stream.isReplaced = --left[id] != 0;
    stream.doubt = doubtOf(entry, counts[id], records);
    streams.push_back(std::move(stream));
  }
  file.clear();
  return streams;
}

}  // namespace series
