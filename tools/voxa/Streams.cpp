#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "text/Counted.h"
#include "tools/series/Containers.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/Overrun.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"

namespace voxa {

using ZRKMetaData::int64;
using ZRKMetaData::MetaDataUUID;
using ZRKMetaData::uint64;

namespace {

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
uint64 missingBytes(ZRKMetaData::MetaDataParser& parser,
                    const ZRKMetaData::MetaDataLocation& location, int64 fileSize) {
  constexpr uint64 kMaxShort = 8;  // that the indexed size of an atom is short
  // An atom may announce 2^63 bytes or more, and then has a negative size in the index. One that is
  // too small for its header has a negative size of this at least.
  constexpr int64 kSmallest = -16;
  constexpr uint64 kMaxExtent = uint64{1} << 61U;  // far below what `entryExtent` measures
  const auto size = static_cast<uint64>(
      location.size < kSmallest ? location.size : std::max<int64>(location.size, 0));
  const auto available = static_cast<uint64>(std::max<int64>(fileSize - location.offset, 0));
  // Only entries near the end are examined: a file may have a million.
  if (size + kMaxShort <= available) return 0;
  if (size > kMaxExtent) return size - available;
  const series::EntryExtent extent = series::entryExtent(parser, location);
  return static_cast<uint64>(extent.announced - extent.present);
}

// Reports entries that run beyond the end of the file, as in a truncated file.
void reportMissingBytes(const std::string& file, ZRKMetaData::MetaDataParser& parser) {
  const int64 fileSize = series::sizeOfSource(parser.stream());
  int count = 0;
  std::string first;
  for (const auto& [id, location] : parser.locations()) {
    const auto missing = missingBytes(parser, location, fileSize);
    if (missing == 0) continue;
    if (++count == 1) {
      first = fmt::format("stream {} by {}", boost::uuids::to_string(id),
                          text::counted(missing, "byte"));
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
  const auto overrun =
      series::findOverrun(parser->stream(), parser->containerKind(), parser->locations());
  if (overrun) say(options.file + ": " + overrun->text());
}

}  // namespace voxa
