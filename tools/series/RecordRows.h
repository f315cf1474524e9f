// Collects the records of a stream in one block of memory, for programs that read columns.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <type_traits>
#include <vector>

#include "tools/series/EntryExtent.h"
#include "tools/series/RecordStream.h"

namespace series {

/// A record of a type whose size varies, with its time in seconds.
template <class Record>
struct TimedRow {
  double seconds;
  Record record;
};

/// A record of fixed size as its stream stores it: time in seconds, then the fields, without
/// padding, in the byte order of the machine.
template <class Record>
using PackedRow = std::array<unsigned char, infoOf(recordTypeOf<Record>()).byteCount>;

/// A packed row where the size of the record is fixed, else a timed row.
template <class Record>
using RowOf = std::conditional_t<infoOf(recordTypeOf<Record>()).byteCount != 0, PackedRow<Record>,
                                 TimedRow<Record>>;

/// What could be read of a stream. A plain value.
template <class Record>
struct RecordRows {
  std::vector<RowOf<Record>> rows;
  std::optional<DamagedStream> damage;  ///< why `rows` ends early
};

namespace detail {

template <class Record>
RowOf<Record> rowOf(double seconds, const Record& record) {
  if constexpr (std::is_same_v<RowOf<Record>, TimedRow<Record>>) {
    return {seconds, record};
  } else {
    static_assert(sizeof seconds + sizeof record == sizeof(PackedRow<Record>));
    PackedRow<Record> row;  // NOLINT(cppcoreguidelines-pro-type-member-init): written below
    std::memcpy(row.data(), &seconds, sizeof seconds);
    std::memcpy(row.data() + sizeof seconds, &record, sizeof record);
    return row;
  }
}

/// The records of fixed size that the entry can have at most. A size that the file states but does
/// not have reserves no memory.
inline std::size_t maxRecordCount(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                                  std::size_t recordBytes) {
  const ZRKMetaData::int64 fileSize = sizeOfSource(parser.stream());
  const auto [offset, size] = parser.locationOf(id);
  const ZRKMetaData::int64 bytes = std::min(size, fileSize - std::min(offset, fileSize));
  return bytes <= 0 ? 0 : static_cast<std::size_t>(bytes) / recordBytes + 1;
}

}  // namespace detail

/// Reads the records of stream `id` whose time is in `range`, in file order, in one pass.
/// `forEachRecord` states what is read; damage is returned, not thrown.
template <class Record>
RecordRows<Record> readRows(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                            const TimeRange& range) {
  RecordRows<Record> result;
  constexpr std::size_t kBytes = infoOf(recordTypeOf<Record>()).byteCount;
  if constexpr (kBytes != 0) {
    if (range.isUnbounded()) result.rows.reserve(detail::maxRecordCount(parser, id, kBytes));
  }
  try {
    forEachRecord<Record>(parser, id, range, [&result](double seconds, const Record& record) {
      result.rows.push_back(detail::rowOf(seconds, record));
    });
  } catch (const DamagedStream& damage) {
    result.damage = damage;
  }
  return result;
}

}  // namespace series
