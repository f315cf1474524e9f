// Reads the records of one stream, the one way in which tools do.
//
// Records are handed to the caller one by one; memory does not grow with the length of the stream.
// A parser and its streams are used by one thread at a time; separate parsers are independent.
//
// Messages of the parser (a refused version, an unregistered identifier) go to std::cout, as in the
// module. A caller that writes results there sends them elsewhere while it reads.
#pragma once

#include <algorithm>
#include <boost/uuid/uuid.hpp>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/ReadListener.h"
#include "tools/series/RecordTypes.h"
#include "tools/series/TimeRange.h"

namespace series {

/// A stream whose records cannot be read to their end. The records before the damage were
/// delivered.
class DamagedStream : public std::runtime_error {
 public:
  /// `reason` is the text of the reader's own exception, or says where the file ends.
  DamagedStream(const boost::uuids::uuid& stream, ZRKMetaData::int64 byteOffset,
                const std::string& reason);

  const boost::uuids::uuid& stream() const { return m_stream; }

  /// Where the record that could not be read begins, in bytes from the start of the recording.
  ZRKMetaData::int64 byteOffset() const { return m_byteOffset; }

  /// Without the place; `what` adds the stream and the byte offset.
  const std::string& reason() const { return m_reason; }

  /// One line for people: file, stream, byte offset and reason.
  std::string message(const std::string& file) const { return file + ": " + what(); }

 private:
  boost::uuids::uuid m_stream;
  ZRKMetaData::int64 m_byteOffset;
  std::string m_reason;
};

/// The version that the reader accepts for the identifier. MetaDataUUID::currentVersionForUUID says
/// the same and prints a message for an identifier that is not registered.
ZRKMetaData::int32 readableVersion(const boost::uuids::uuid& id);

/// The version of stream `id` where the reader refuses it, nothing where the stream can be read or
/// is not indexed. Moves the parser's stream and clears its state.
std::optional<ZRKMetaData::int32> refusedVersion(ZRKMetaData::MetaDataParser& parser,
                                                 const boost::uuids::uuid& id);

namespace detail {

template <class Record, class Visitor>
class VisitingObserver final : public ZRKMetaData::DataStreamObserver<Record> {
 public:
  VisitingObserver(Visitor& visitor, const TimeRange& range, ZRKMetaData::int64 position,
                   ZRKMetaData::int64 fileEnd)
      : m_visitor(visitor),
        m_range(range),
        m_fileEnd(fileEnd),
        m_position(position),
        m_reported(position) {
    setNextStop();
  }

  ~VisitingObserver() { report(); }
  VisitingObserver(const VisitingObserver&) = delete;
  VisitingObserver& operator=(const VisitingObserver&) = delete;

  bool onData(double seconds, const Record& record) override {
    const auto byteCount = static_cast<ZRKMetaData::int64>(byteCountOf(record));
    if (byteCount > m_nextStop - m_position && !pass(byteCount)) return false;
    m_position += byteCount;
    if (!m_range.contains(seconds)) return true;
    try {
      if constexpr (std::is_void_v<std::invoke_result_t<Visitor&, double, const Record&>>) {
        m_visitor(seconds, record);
        return true;
      } else {
        m_isStopped = !m_visitor(seconds, record);
        return !m_isStopped;
      }
    } catch (...) {
      m_hasVisitorThrown = true;
      throw;
    }
  }

  /// The visitor ended the reading.
  bool isStopped() const { return m_isStopped; }

  /// The size of the record at `position` that the file ends inside of, 0 where there is none.
  ZRKMetaData::int64 cutRecordBytes() const { return m_cutRecordBytes; }

  /// After an exception: whether the visitor threw it, and not the reader.
  bool hasVisitorThrown() const { return m_hasVisitorThrown; }

  ZRKMetaData::int64 position() const { return m_position; }

 private:
  // The next record ends behind the next stop. False where the file ends inside of it.
  bool pass(ZRKMetaData::int64 byteCount) {
    if (byteCount > m_fileEnd - m_position) {
      m_cutRecordBytes = byteCount;
      return false;
    }
    report();
    return true;
  }

  void report() {
    reportBytesRead(m_position - m_reported);
    m_reported = m_position;
    setNextStop();
  }

  // One comparison per record finds both the end of the file and the next report.
  void setNextStop() { m_nextStop = m_position + std::min(m_fileEnd - m_position, kReportedBytes); }

  Visitor& m_visitor;
  const TimeRange m_range;
  const ZRKMetaData::int64 m_fileEnd;
  ZRKMetaData::int64 m_position;
  ZRKMetaData::int64 m_reported;
  ZRKMetaData::int64 m_nextStop = 0;
  ZRKMetaData::int64 m_cutRecordBytes = 0;
  bool m_hasVisitorThrown = false;
  bool m_isStopped = false;
};

/// Throws DamagedStream where the file ends before the entry of the stream, whose records were read
/// up to `position`: inside the record there, whose size is `cutRecordBytes`, or for 0 between two.
void requireWhole(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                  ZRKMetaData::int64 position, ZRKMetaData::int64 cutRecordBytes);

}  // namespace detail

/// Calls `visitor(seconds, record)` for each record of stream `id` whose time is in `range`, in
/// file order. A visitor that returns bool ends the reading by returning false; one that returns
/// void sees every record. Times may fall in a stream, so that all of it is read whatever the
/// range.
///
/// A stream that is not indexed, or whose version is refused (`refusedVersion`), has no records.
/// Throws DamagedStream where the reader fails or the file ends, and whatever the visitor throws,
/// unchanged. A record that the file ends inside of is not delivered, although the reader fills it
/// up with zeros. The record is valid during the call.
template <class Record, class Visitor>
void forEachRecord(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                   const TimeRange& range, Visitor&& visitor) {
  const auto found = parser.locations().find(id);
  if (found == parser.locations().end()) return;
  const auto [offset, size] = found->second;
  detail::VisitingObserver<Record, std::remove_reference_t<Visitor>> observer(
      visitor, range, offset + ZRKMetaData::MetaDataHeader::kByteCount,
      sizeOfSource(parser.stream()));
  try {
    ZRKMetaData::MetaDataReader<Record>().parseFile(observer, parser.stream(), offset, size);
  } catch (const std::bad_alloc&) {
    throw;  // the machine's, not the recording's
  } catch (const std::exception& error) {
    if (observer.hasVisitorThrown()) throw;
    throw DamagedStream(id, observer.position(), error.what());
  }
  if (observer.isStopped()) return;
  detail::requireWhole(parser, id, observer.position(), observer.cutRecordBytes());
}

/// The same where the type is known at run time: `visitor` is called with the type's own records,
/// so that its second parameter is `const auto&`.
template <class Visitor>
void forEachRecord(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                   RecordType type, const TimeRange& range, Visitor&& visitor) {
  visitRecordType(type, [&](const auto& row) {
    forEachRecord<typename std::decay_t<decltype(row)>::type>(parser, id, range, visitor);
  });
}

}  // namespace series
