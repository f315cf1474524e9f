// The index of every container kind. The first byte of the input chooses the kind.
//
// What a scan fetches is bounded twice: until a size leads backward by the bytes of the file, after
// that by the structures that it may still examine. Inputs are much too small for the module's own
// number of those, so the second bound is checked with a smaller one.
#include <memory>
#include <sstream>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "ZRKMetaData/src/ZRKMScan.h"
#include "fuzz/Fuzz.h"
#include "tests/support/CountingBuffer.h"

namespace {

using namespace ZRKMetaData;

constexpr std::size_t kWindowByteCount = 1024;
constexpr std::size_t kMaxStructures = 16;

std::size_t bytesFetched(const std::string& bytes, std::size_t maxAfterBackwardJump) {
  testing_support::CountingBuffer source(bytes);
  std::istream in(&source);
  MetaDataLocations locations;
  scanAtoms(in, locations, maxAfterBackwardJump);
  return source.byteCount();
}

void checkFetching(const std::string& bytes) {
  const std::size_t forward = bytesFetched(bytes, 0);
  fuzz::require(forward <= 2 * bytes.size() + kWindowByteCount,
                "a scan that goes forward fetches each byte twice at most");
  fuzz::require(bytesFetched(bytes, kMaxStructures) <= forward + kMaxStructures * kWindowByteCount,
                "a structure that follows a backward jump costs a window at most");
}

MetaDataLocations indexOf(const std::string& bytes, ContainerKind kind) {
  testing_support::CountingBuffer source(bytes);
  std::istream in(&source);
  const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForStream(in, kind));
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
  if (kind == Atoms) checkFetching(bytes);
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
