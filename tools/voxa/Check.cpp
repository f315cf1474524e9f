#include <fmt/format.h>

#include <boost/uuid/uuid_io.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tools/series/Guess.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/Sha256.h"
#include "tools/voxa/StreamSource.h"

namespace voxa {

using series::RecordType;
using ZRKMetaData::MetaDataParser;

namespace {

// A stream as one file has it.
struct Holding {
  std::optional<std::uint64_t> records;  // nothing where the type is not certain
  std::string digest;
};

struct CheckedStream {
  const SourceStream& stream;
  std::optional<RecordType> type;
  Holding original;
  std::optional<Holding> copy;  // nothing where the copy lacks the stream

  const char* state() const {
    if (!copy) return "lost";
    return copy->digest == original.digest ? "kept" : "changed";
  }
};

std::optional<RecordType> typeOf(const SourceStream& stream, const series::NamedTypes& named) {
  const auto found = named.find(stream.id);
  if (found != named.end()) return found->second;
  const QuietModule quiet;
  return series::guessRecordType(*stream.parser, stream.id).certainType();
}

// The records before a damage count.
std::uint64_t recordCount(MetaDataParser& parser, const boost::uuids::uuid& id, RecordType type) {
  const QuietModule quiet;
  std::uint64_t count = 0;
  try {
    series::forEachRecord(parser, id, type, {}, [&](double, const auto&) { ++count; });
  } catch (const series::DamagedStream&) {  // the digest says whether the copy has the same bytes
  }
  return count;
}

Holding holdingOf(MetaDataParser& parser, const boost::uuids::uuid& id,
                  std::optional<RecordType> type) {
  Holding holding;
  if (type) holding.records = recordCount(parser, id, *type);
  Sha256 digest;
  series::readEntry(parser, series::entryExtent(parser, parser.locationOf(id)),
                    [&digest](std::string_view piece) { digest.add(piece); });
  holding.digest = digest.finish();
  return holding;
}

std::string countText(const std::optional<Holding>& holding) {
  return holding && holding->records ? std::to_string(*holding->records) : "-";
}

void writeLine(Output& out, const CheckedStream& checked) {
  out.write(fmt::format("{:<6}  {:<7}  {:<13}  {:>10}  {:>10}  {}\n", checked.stream.name,
                        checked.state(), checked.type ? series::infoOf(*checked.type).name : "-",
                        countText(checked.original), countText(checked.copy),
                        checked.original.digest));
}

void writeJson(Output& out, const CheckedStream& checked) {
  const auto describe = [](JsonRow& row, const std::optional<Holding>& holding) {
    if (holding && holding->records) {
      row.field("records", *holding->records);
    } else {
      row.null("records");
    }
    if (holding) {
      row.field("sha256", holding->digest);
    } else {
      row.null("sha256");
    }
  };
  JsonRow row(out);
  row.field("id", boost::uuids::to_string(checked.stream.id));
  row.field("key", ZRKMetaData::MetaDataUUID::shortKey(checked.stream.id));
  row.field("state", std::string(checked.state()));
  if (checked.type) {
    row.field("type", std::string(series::infoOf(*checked.type).name));
  } else {
    row.null("type");
  }
  row.object("original", [&](JsonRow& inner) { describe(inner, checked.original); });
  row.object("edited", [&](JsonRow& inner) { describe(inner, checked.copy); });
  row.end();
}

}  // namespace

void checkCopy(const CheckOptions& options) {
  const StreamSource original(options.original, kindOfOther(options.original, options.container));
  const auto edited = openScanned(options.edited, kindOfOther(options.edited, options.container));
  const auto named = original.namedTypes(options.types);
  Output out;
  const bool isJson = options.format == Format::Json;
  if (isJson) {
    out.write("{\"original\":");
    out.writeJsonString(options.original);
    out.write(",\"edited\":");
    out.writeJsonString(options.edited);
    out.write(",\"streams\":");
  } else {
    out.write(fmt::format("{:<6}  {:<7}  {:<13}  {:>10}  {:>10}  {}\n", "stream", "state", "type",
                          "original", "edited", "sha256 of the original"));
  }
  Status status = Status::Done;
  const char* before = "[\n";
  // Each stream is read for its records and for its digest, in both files.
  const Progress progress(options.original, 4 * original.byteCount());
  for (const SourceStream& stream : original.streams()) {
    CheckedStream checked{stream, typeOf(stream, named), {}, std::nullopt};
    checked.original = holdingOf(*stream.parser, stream.id, checked.type);
    if (edited->locations().count(stream.id) != 0) {
      checked.copy = holdingOf(*edited, stream.id, checked.type);
    }
    if (!checked.copy || checked.copy->digest != checked.original.digest) status = Status::Lost;
    if (isJson) {
      out.write(before);
      writeJson(out, checked);
      before = ",\n";
    } else {
      writeLine(out, checked);
    }
  }
  if (isJson) out.write(status == Status::Done ? "],\"kept\":true}\n" : "],\"kept\":false}\n");
  out.flush();
  original.damages().throwIfAny();
  if (status != Status::Done) throw Failure(status, "");
}

}  // namespace voxa
