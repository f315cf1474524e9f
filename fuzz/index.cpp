// The index of every container kind. The first byte of the input chooses the kind.
#include <memory>
#include <sstream>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "fuzz/CountingBuffer.h"
#include "fuzz/Fuzz.h"

namespace {

using namespace ZRKMetaData;

constexpr std::size_t kMostFetchedPerByte = 2100;  // two structures a byte, a window of 1 KiB each
constexpr std::size_t kAtLeast = 4096;

MetaDataLocations indexOf(const std::string& bytes, ContainerKind kind) {
  fuzz::CountingBuffer source(bytes);
  std::istream in(&source);
  const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForStream(in, kind));
  fuzz::require(source.fetched() <= kMostFetchedPerByte * bytes.size() + kAtLeast,
                "what a scan reads is bounded by the bytes of the file");
  return parser->locations();
}

bool areEqual(const MetaDataLocations& left, const MetaDataLocations& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const auto& a, const auto& b) {
                      return a.first == b.first && a.second.offset == b.second.offset &&
                             a.second.size == b.second.size;
                    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Quiet quiet;
  setAssertionHandler([](const char*, const char*, int) {});
  fuzz::Input input(data, size);
  const auto kind = static_cast<ContainerKind>(1 + input.take<std::uint8_t>() % 3);
  const std::string bytes = input.rest();
  const MetaDataLocations locations = indexOf(bytes, kind);
  fuzz::require(areEqual(locations, indexOf(bytes, kind)), "two scans of the same bytes agree");
  for (const auto& [id, location] : locations) {
    const bool isRaw = kind == Raw;
    const auto offset = static_cast<std::size_t>(location.offset);
    fuzz::require(location.offset >= 0 && (isRaw || offset + 24 <= bytes.size()),
                  "an entry's header lies in the file");
    fuzz::require(isRaw || std::memcmp(bytes.data() + offset, id.data, 16) == 0,
                  "an entry is indexed under the identifier that stands there");
    fuzz::require(!isRaw || (offset == 0 && locations.size() == 1), "a raw file is one entry");
  }
  return 0;
}
