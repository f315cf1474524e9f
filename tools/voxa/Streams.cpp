#include <fmt/format.h>

#include <boost/uuid/uuid_io.hpp>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "text/Counted.h"
#include "tools/series/Containers.h"
#include "tools/series/EntryExtent.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"

namespace voxa {

using ZRKMetaData::MetaDataUUID;

namespace {

// No file is larger, and sums with a larger size could overflow.
constexpr ZRKMetaData::int64 kMaxSize = ZRKMetaData::int64{1} << 62U;

template <class Row>
void describeStream(Row& row, ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                    const ZRKMetaData::MetaDataLocation& location) {
  row.field("id", boost::uuids::to_string(id));
  row.field("key", MetaDataUUID::shortKey(id));
  row.field("known", MetaDataUUID::isKnown(id));
  row.field("version", ZRKMetaData::readHeaderAt(parser.stream(), location.offset).version);
  row.field("offset", location.offset);
  row.field("size", location.size);
}

void writeJson(Output& out, const std::string& file, ZRKMetaData::MetaDataParser& parser) {
  JsonRow document(out);
  document.field("file", file);
  document.field("container", series::containerName(parser.containerKind()));
  document.array("streams", parser.locations(), [&](const auto& stream) {
    JsonRow row(out);
    describeStream(row, parser, stream.first, stream.second);
    row.end();
  });
  document.end();
  out.write("\n");
}

void writeTable(Output& out, const std::string& file, ZRKMetaData::MetaDataParser& parser) {
  out.writePrintable(file);
  out.write(fmt::format(": {}, {}\n", series::containerName(parser.containerKind()),
                        text::counted(parser.locations().size(), "stream")));
  if (parser.locations().empty()) return;
  RowWriter rows(out, Format::Table, {-36, -3, -5, 7, 14, 14});
  rows.header([&](auto& row) { describeStream(row, parser, {}, {}); });
  for (const auto& stream : parser.locations()) {
    rows.write([&](auto& row) { describeStream(row, parser, stream.first, stream.second); });
  }
}

// Returns the number of bytes of the entry at `location` that are beyond the end of the file.
ZRKMetaData::int64 missingBytes(ZRKMetaData::MetaDataParser& parser,
                                const ZRKMetaData::MetaDataLocation& location,
                                ZRKMetaData::int64 fileSize) {
  constexpr int kMaxShort = 8;  // that the indexed size of an atom is short
  const bool isMeasured = location.size >= 0 && location.size <= kMaxSize;
  // Only entries near the end are examined: a file may have a million.
  if (!isMeasured || location.offset + location.size + kMaxShort <= fileSize) return 0;
  const series::EntryExtent extent = series::entryExtent(parser, location);
  return extent.announced - extent.present;
}

// Reports entries that run beyond the end of the file, as in a truncated file.
void reportMissingBytes(const std::string& file, ZRKMetaData::MetaDataParser& parser) {
  const ZRKMetaData::int64 fileSize = series::sizeOfSource(parser.stream());
  int count = 0;
  std::string first;
  for (const auto& [id, location] : parser.locations()) {
    const auto missing = missingBytes(parser, location, fileSize);
    if (missing <= 0) continue;
    if (++count == 1) {
      first = fmt::format("stream {} by {} bytes", boost::uuids::to_string(id), missing);
    }
  }
  if (count == 1) say(fmt::format("{}: 1 entry runs beyond the end of the file: {}", file, first));
  if (count > 1) {
    say(fmt::format("{}: {} entries run beyond the end of the file, the first: {}", file, count,
                    first));
  }
}

}  // namespace

void listStreams(const StreamsOptions& options) {
  const auto parser = openRecording(options.file, options.container);
  Output out;
  if (options.format == Format::Json) {
    writeJson(out, options.file, *parser);
  } else {
    writeTable(out, options.file, *parser);
  }
  out.flush();
  reportMissingBytes(options.file, *parser);
}

}  // namespace voxa
