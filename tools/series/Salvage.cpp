#include "tools/series/Salvage.h"

#include <algorithm>
#include <boost/uuid/uuid.hpp>
#include <map>
#include <set>
#include <utility>

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

using Ids = std::set<boost::uuids::uuid>;

// Tells which entries with certain bounds belong to an old block.
class OldBlocks {
 public:
  explicit OldBlocks(const std::vector<FoundEntry>& entries) {
    for (const FoundEntry& entry : entries) {
      if (entry.doubt != nullptr) continue;
      m_ids[entry.block].insert(entry.header.uuid);
      m_lastWith[entry.header.uuid] = entry.block;
    }
    for (const auto& [block, ids] : m_ids) {
      const std::size_t later = m_lastWith.at(*ids.begin());
      const Ids& others = m_ids.at(later);
      if (later != block && std::includes(others.begin(), others.end(), ids.begin(), ids.end())) {
        m_old.insert(block);
      }
    }
  }

  bool have(const FoundEntry& entry) const {
    return entry.doubt == nullptr && m_old.count(entry.block) != 0;
  }

 private:
  std::map<std::size_t, Ids> m_ids;
  std::map<boost::uuids::uuid, std::size_t> m_lastWith;
  std::set<std::size_t> m_old;
};

std::string doubtOf(const FoundEntry& entry, int entriesWithId, const WholeRecords& records) {
  if (entry.doubt != nullptr) return entry.doubt;
  if (!MetaDataUUID::isKnown(entry.header.uuid)) return "its identifier is not registered";
  if (entry.header.version != 1) {
    return "its version is " + std::to_string(entry.header.version) + ", not 1";
  }
  if (entriesWithId != 1) return "another entry has the same identifier";
  return records.doubt;
}

// Of doubtful streams with one identifier, prefers the last one whose bounds are certain, else the
// last one.
void preferOne(std::vector<SalvagedStream>& streams, const std::vector<FoundEntry>& entries) {
  std::map<boost::uuids::uuid, std::size_t> preferred;
  for (std::size_t index = 0; index < streams.size(); ++index) {
    if (streams[index].state != SalvageState::Doubtful) continue;
    const auto [best, isFirst] = preferred.try_emplace(streams[index].header.uuid, index);
    if (isFirst) continue;
    const bool isBetter = entries[index].doubt == nullptr || entries[best->second].doubt != nullptr;
    streams[isBetter ? best->second : index].state = SalvageState::Superseded;
    if (isBetter) best->second = index;
  }
}

}  // namespace

std::vector<SalvagedStream> salvageStreams(std::istream& file, ContainerKind kind) {
  const std::vector<FoundEntry> entries = findEntries(file, kind);
  const OldBlocks old(entries);
  std::map<boost::uuids::uuid, int> counts;
  for (const FoundEntry& entry : entries) {
    if (entry.doubt == nullptr && !old.have(entry)) ++counts[entry.header.uuid];
  }
  std::vector<SalvagedStream> streams;
  streams.reserve(entries.size());
  for (const FoundEntry& entry : entries) {
    const WholeRecords records = recordsOf(file, kind, entry);
    SalvagedStream stream;
    stream.header = entry.header;
    stream.offset = entry.offset;
    stream.size = MetaDataHeader::kByteCount + records.byteCount;
    stream.recordCount = records.count;
    stream.isCut = entry.isCut || entry.end - entry.offset > stream.size;
    if (old.have(entry)) {
      stream.state = SalvageState::Old;
      stream.reason = "a later block has the streams of its block";
    } else {
      stream.reason = doubtOf(entry, counts[entry.header.uuid], records);
      if (!stream.reason.empty()) stream.state = SalvageState::Doubtful;
    }
    streams.push_back(std::move(stream));
  }
  preferOne(streams, entries);
  file.clear();
  return streams;
}

}  // namespace series
