// One stream of a recording as an edit left it: the records of the parts that were kept, moved to
// where the edit put them.
//
// States (numbers, strings, points, rectangles, images) hold until the next record, so that each
// part begins with the value that held at its start. Keystrokes are events and stand for nothing
// but their own time.
#pragma once

#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "tools/keep/RecordBytes.h"
#include "tools/keep/RecordPlaces.h"
#include "tools/recording/Append.h"
#include "tools/recording/Container.h"
#include "tools/series/RecordStream.h"
#include "tools/series/Simplify.h"

namespace keep {

/// Reads the stream twice: once to find what is kept, once to write it. Memory does not grow with
/// the length of the stream. Used by one thread.
template <class Record>
class CutStream {
 public:
  /// Reads stream `id` to its end, or to a damage. Both references must outlive the object.
  CutStream(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
            const std::vector<Segment>& segments)
      : m_parser(parser), m_offset(parser.locationOf(id).offset), m_segments(segments) {
    RecordPlaces places(segments);
    try {
      series::forEachRecord<Record>(parser, id, {},
                                    [&places](double seconds, const Record& record) {
                                      places.add(seconds, series::byteCountOf(record));
                                    });
    } catch (const series::DamagedStream& damage) {
      m_damage = damage;
    }
    m_places = places.places();
    if constexpr (!series::kIsHeld<Record>) {
      for (SegmentPlaces& segment : m_places) segment.held.reset();
    }
  }

  /// What the stream ends at before its end.
  const std::optional<series::DamagedStream>& damage() const { return m_damage; }

  /// The bytes that `write` passes on.
  std::uint64_t byteCount() const {
    std::uint64_t count = ZRKMetaData::MetaDataHeader::kByteCount;
    for (const SegmentPlaces& places : m_places) {
      count += places.byteCount + (places.held ? places.held->size : 0);
    }
    return count;
  }

  /// Passes on the header as it is stored, and the records.
  void write(const recording::Write& write) {
    const auto header = ZRKMetaData::readHeaderAt(m_parser.stream(), m_offset);
    write(recording::entryBytes({header.uuid, {}, header.version, header.reserved}));
    for (std::size_t index = 0; index < m_places.size(); ++index) {
      const Segment& segment = m_segments[index];
      const SegmentPlaces& places = m_places[index];
      if (places.held) {
        seek(places.held->position);
        write(recordBytes(segment.start, read().second));
      }
      seek(places.begin);
      for (std::uint64_t position = places.begin; position < places.end;) {
        const auto [seconds, record] = read();
        position += series::byteCountOf(record);
        if (segment.range.contains(seconds)) write(recordBytes(segment.moved(seconds), record));
      }
    }
  }

 private:
  void seek(std::uint64_t position) {
    m_parser.stream().clear();
    m_parser.stream().seekg(m_offset + ZRKMetaData::MetaDataHeader::kByteCount +
                            static_cast<ZRKMetaData::int64>(position));
  }

  std::pair<double, Record> read() {
    std::pair<double, Record> timed{};
    if constexpr (std::is_same_v<Record, ZRKMetaData::CursorImage>) {
      ZRKMetaData::readRecord(m_parser.stream(), timed.first, &timed.second);
    } else {
      ZRKMetaData::readRecord(m_parser.stream(), timed.first, timed.second);
    }
    return timed;
  }

  ZRKMetaData::MetaDataParser& m_parser;
  const ZRKMetaData::int64 m_offset;
  const std::vector<Segment>& m_segments;
  std::vector<SegmentPlaces> m_places;
  std::optional<series::DamagedStream> m_damage;
};

}  // namespace keep
