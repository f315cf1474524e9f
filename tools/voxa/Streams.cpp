#include <boost/uuid/uuid_io.hpp>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"

namespace voxa {

using ZRKMetaData::MetaDataUUID;

namespace {

const char* containerName(ZRKMetaData::ContainerKind kind) {
  switch (kind) {
    case ZRKMetaData::Riff:
      return "Riff";
    case ZRKMetaData::Atoms:
      return "Atoms";
    case ZRKMetaData::Raw:
      return "Raw";
    case ZRKMetaData::None:
      break;
  }
  return "None";
}

void writeJson(Output& out, const std::string& file, ZRKMetaData::MetaDataParser& parser) {
  JsonRow document(out);
  document.field("file", file);
  document.field("container", containerName(parser.containerKind()));
  document.array("streams", parser.locations(), [&](const auto& stream) {
    const auto& [id, location] = stream;
    JsonRow row(out);
    row.field("id", boost::uuids::to_string(id));
    row.field("key", MetaDataUUID::shortKey(id));
    row.field("known", MetaDataUUID::isKnown(id));
    row.field("offset", location.offset);
    row.field("size", location.size);
    row.field("version", ZRKMetaData::readHeaderAt(parser.stream(), location.offset).version);
    row.end();
  });
  document.end();
  out.write("\n");
}

void writeTable(Output& out, const std::string& file, ZRKMetaData::MetaDataParser& parser) {
  out.writePrintable(file);
  out.write(fmt::format(": {}, {} streams\n", containerName(parser.containerKind()),
                        parser.locations().size()));
  if (parser.locations().empty()) return;
  constexpr auto kRow = "{:<36}  {:<3}  {:<5}  {:>7}  {:>14}  {:>14}\n";
  out.write(fmt::format(kRow, "id", "key", "known", "version", "offset", "size"));
  for (const auto& [id, location] : parser.locations()) {
    const auto header = ZRKMetaData::readHeaderAt(parser.stream(), location.offset);
    out.write(fmt::format(kRow, boost::uuids::to_string(id), MetaDataUUID::shortKey(id),
                          MetaDataUUID::isKnown(id) ? "yes" : "no", header.version, location.offset,
                          location.size));
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
}

}  // namespace voxa
