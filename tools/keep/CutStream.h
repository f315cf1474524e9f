// One stream of a recording as an edit left it: the records of the parts that were kept, moved to
// where the edit put them.
//
// States (numbers, strings, points, rectangles, images) hold until the next record, so that each
// part begins with the value that held at its start. Keystrokes are events and stand for nothing
// but their own time. A reference to a cursor image gets the image where the edit left that out.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "tools/keep/RecordBytes.h"
#include "tools/keep/SegmentExtents.h"
#include "tools/keep/StoredImages.h"
#include "tools/recording/Append.h"
#include "tools/recording/Container.h"
#include "tools/series/RecordStream.h"
#include "tools/series/Simplify.h"

namespace keep {

/// Reads the stream twice, and images three times: to find what is kept, to measure and to write
/// it. Memory does not grow with the length of the stream, but for images (StoredImages.h). Used by
/// one thread.
template <class Record>
class CutStream {
  static constexpr bool kIsImage = std::is_same_v<Record, ZRKMetaData::CursorImage>;

 public:
  /// Reads stream `id` to its end, or to a damage. Requires: there is a segment. Both references
  /// must outlive the object. Throws std::runtime_error for a stream out of order that would be
  /// read more than kMaxReads times.
  CutStream(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
            const std::vector<Segment>& segments)
      : m_parser(parser), m_offset(parser.locationOf(id).offset), m_segments(segments) {
    SegmentExtents finder(segments);
    std::uint64_t size = 0;
    try {
      series::forEachRecord<Record>(parser, id, {}, [&](double seconds, const Record& record) {
        if constexpr (kIsImage) m_images.add(size, record);
        m_latest = std::max(m_latest, seconds);  // NaN is never the greater one
        finder.add(seconds, series::byteCountOf(record));
        size += series::byteCountOf(record);
      });
    } catch (const series::DamagedStream& damage) {
      m_damage = damage;
    }
    m_extents = finder.extents();
    if (segments.front().hasStart()) m_leftOutCount = finder.timelessCount();
    if constexpr (!series::kIsHeld<Record>) {
      for (SegmentExtent& segment : m_extents) segment.held.reset();
    }
    requireFewReads(size);
    m_byteCount = ZRKMetaData::MetaDataHeader::kByteCount;
    if constexpr (kIsImage) {
      writeRecords([this](std::string_view bytes) { m_byteCount += bytes.size(); });
    } else {
      for (const SegmentExtent& segment : m_extents) {
        m_byteCount += segment.byteCount + (segment.held ? segment.held->size : 0);
      }
    }
  }

  /// Where reading stopped before the end of the stream.
  const std::optional<series::DamagedStream>& damage() const { return m_damage; }

  /// The records that are in no part because their time is NaN.
  std::uint64_t leftOutCount() const { return m_leftOutCount; }

  /// The latest time of a record, in seconds, minus infinity where none has a time.
  double latest() const { return m_latest; }

  /// The bytes that `write` passes on.
  std::uint64_t byteCount() const { return m_byteCount; }

  /// Passes on the header as it is stored, and the records.
  void write(const recording::Write& write) {
    const auto header = ZRKMetaData::readHeaderAt(m_parser.stream(), m_offset);
    write(recording::entryBytes({header.uuid, {}, header.version, header.reserved}));
    writeRecords(write);
  }

 private:
  // The records of a part lie between two bytes. In a stream whose times are in order, they are all
  // that lies there.
  void requireFewReads(std::uint64_t size) const {
    constexpr std::uint64_t kMaxReads = 16;
    std::uint64_t read = 0;
    std::uint64_t kept = 0;
    for (const SegmentExtent& segment : m_extents) {
      read += segment.end - segment.begin;
      kept += segment.byteCount;
    }
    if (read > kMaxReads * (size + kept)) {
      throw std::runtime_error("its times are out of order, and " +
                               std::to_string(m_extents.size()) +
                               " parts would read it more than " + std::to_string(kMaxReads) +
                               " times; use fewer parts");
    }
  }

  void writeRecords(const recording::Write& write) {
    m_images.restart();
    for (std::size_t index = 0; index < m_extents.size(); ++index) {
      const Segment& segment = m_segments[index];
      const SegmentExtent& extent = m_extents[index];
      if (extent.held) {
        seek(extent.held->position);
        write(recordBytes(segment.start, withImage(extent.held->position, read().second)));
      }
      seek(extent.begin);
      for (std::uint64_t position = extent.begin; position < extent.end;) {
        auto [seconds, record] = read();
        const std::uint64_t next = position + series::byteCountOf(record);
        if (segment.range.contains(seconds)) {
          write(recordBytes(segment.moved(seconds), withImage(position, std::move(record))));
          if constexpr (kIsImage) seek(next);
        }
        position = next;
      }
    }
  }

  // The record, with its image where that was not written yet. Moves the parser's stream.
  Record withImage(std::uint64_t position, Record record) {
    if constexpr (kIsImage) {
      if (const auto stored = m_images.missingWith(position, record)) {
        seek(*stored);
        return read().second;
      }
    }
    return record;
  }

  void seek(std::uint64_t position) {
    m_parser.stream().clear();
    m_parser.stream().seekg(m_offset + ZRKMetaData::MetaDataHeader::kByteCount +
                            static_cast<ZRKMetaData::int64>(position));
  }

  std::pair<double, Record> read() {
    std::pair<double, Record> timed{};
    if constexpr (kIsImage) {
      ZRKMetaData::readRecord(m_parser.stream(), timed.first, &timed.second);
    } else {
      ZRKMetaData::readRecord(m_parser.stream(), timed.first, timed.second);
    }
    return timed;
  }

  ZRKMetaData::MetaDataParser& m_parser;
  const ZRKMetaData::int64 m_offset;
  const std::vector<Segment>& m_segments;
  std::vector<SegmentExtent> m_extents;
  std::optional<series::DamagedStream> m_damage;
  StoredImages m_images;
  std::uint64_t m_byteCount = 0;
  std::uint64_t m_leftOutCount = 0;
  double m_latest = -std::numeric_limits<double>::infinity();
};

}  // namespace keep
