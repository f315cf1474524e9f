#include <boost/uuid/uuid_io.hpp>
#include <nlohmann/json.hpp>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "host/Kestova/Utf8.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Recording.h"

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
  nlohmann::ordered_json document;
  document["file"] = Kestova::wellFormedUtf8(file);
  document["container"] = containerName(parser.containerKind());
  auto& streams = document["streams"] = nlohmann::ordered_json::array();
  for (const auto& [id, location] : parser.locations()) {
    nlohmann::ordered_json stream;
    stream["id"] = boost::uuids::to_string(id);
    stream["key"] = MetaDataUUID::shortKey(id);
    stream["known"] = MetaDataUUID::isKnown(id);
    stream["offset"] = location.offset;
    stream["size"] = location.size;
    stream["version"] = ZRKMetaData::readHeaderAt(parser.stream(), location.offset).version;
    streams.push_back(std::move(stream));
  }
  out.write(document.dump() + "\n");
}

void writeTable(Output& out, const std::string& file, ZRKMetaData::MetaDataParser& parser) {
  out.write(fmt::format("{}: {}, {} streams\n", printable(file),
                        containerName(parser.containerKind()), parser.locations().size()));
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
