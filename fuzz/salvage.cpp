// Fuzzes `voxa salvage`, which takes damaged recordings apart. The first byte of the input selects
// the container; the rest is the file.
#include <boost/uuid/uuid.hpp>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "fuzz/Fuzz.h"
#include "fuzz/TempFile.h"
#include "tools/series/Salvage.h"
#include "tools/voxa/Commands.h"

namespace {

using RawData = std::map<boost::uuids::uuid, std::string>;
using series::SalvagedStream;
using ZRKMetaData::MetaDataHeader;
using ZRKMetaData::MetaDataParser;

// The entries that the parser reads. Their indexed sizes are 8 bytes short.
RawData readBack(const fuzz::TempFile& file) {
  const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForFile(file.name()));
  const std::string bytes = file.read();
  RawData data;
  for (const auto& [id, location] : parser->locations()) {
    constexpr std::size_t kShort = 8;
    data[id] = bytes.substr(static_cast<std::size_t>(location.offset),
                            static_cast<std::size_t>(location.size) + kShort);
  }
  return data;
}

// What the listing says: the range of the file, but for the version.
RawData expected(const std::vector<SalvagedStream>& streams, const std::string& file,
                 bool isCertain) {
  RawData data;
  std::int64_t end = 0;
  for (const SalvagedStream& stream : streams) {
    fuzz::require(stream.offset >= end && stream.size >= MetaDataHeader::kByteCount,
                  "ranges rise and do not overlap");
    end = stream.offset + stream.size;
    fuzz::require(end <= static_cast<std::int64_t>(file.size()), "ranges are in the file");
    if (stream.state !=
        (isCertain ? series::SalvageState::Certain : series::SalvageState::Doubtful))
      continue;
    std::string bytes =
        file.substr(static_cast<std::size_t>(stream.offset), static_cast<std::size_t>(stream.size));
    const bool isKnown = ZRKMetaData::MetaDataUUID::isKnown(stream.header.uuid);
    fuzz::require(!isCertain || (isKnown && stream.header.version == 1),
                  "what is certain is registered");
    bytes.replace(16, 4, isKnown ? std::string("\1\0\0\0", 4) : std::string("\xFF\xFF\xFF\xFF"));
    fuzz::require(data.emplace(stream.header.uuid, bytes).second, "an identifier is written once");
  }
  return data;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Quiet quiet;
  ZRKMetaData::setAssertionHandler([](const char*, const char*, int) {});
  static const fuzz::TempFile kFile(".damaged");
  static const fuzz::TempFile kOut(".voxa");
  static const fuzz::TempFile kDoubtful(kOut, ".doubtful.voxa");
  fuzz::Input input(data, size);
  constexpr ZRKMetaData::ContainerKind kKinds[] = {ZRKMetaData::Riff, ZRKMetaData::Atoms,
                                                   ZRKMetaData::Raw};
  const auto kind = kKinds[input.take<std::uint8_t>() % 3];
  const std::string bytes = input.rest();
  kFile.write(bytes);
  voxa::SalvageOptions options;
  options.file = kFile.name();
  options.out = kOut.name();
  options.container = kind;
  try {
    voxa::salvageRecording(options);
  } catch (const voxa::Failure&) {  // no stream, or a doubtful one
  }
  std::istringstream stream(bytes);
  const auto streams = series::salvageStreams(stream, kind);
  fuzz::require(readBack(kOut) == expected(streams, bytes, true),
                "the parser reads back what is certain");
  fuzz::require(readBack(kDoubtful) == expected(streams, bytes, false),
                "the parser reads back what is doubtful");
  fuzz::require(kFile.read() == bytes, "the recording is only read");
  kOut.remove();
  kDoubtful.remove();
  return 0;
}
