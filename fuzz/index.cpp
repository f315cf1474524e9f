// Fuzzes the index of every container kind. The first byte selects the kind; the rest is the file.
//
// The bytes that a scan reads have two bounds: up to the first backward jump, the size of the file;
// after it, the maximum of structures still to be examined. Inputs are too small to reach that
// maximum, so the second bound is checked with a smaller one.
#include <memory>
#include <sstream>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "ZRKMetaData/src/ZRKMScan.h"
#include "fuzz/Fuzz.h"
#include "tests/support/CountingBuffer.h"

namespace {

using namespace ZRKMetaData;

constexpr std::size_t kMaxStructures = 16;

// A step of at most 1 KiB behind a header lets the next read double.
constexpr std::size_t kBytesPerStructure = 2 * (1024 + 40) + 64;

std::size_t bytesRead(const std::string& bytes, std::size_t maxAfterBackwardJump) {
  testing_support::CountingBuffer source(bytes);
  std::istream in(&source);
  MetaDataLocations locations;
  scanAtoms(in, locations, maxAfterBackwardJump);
  return source.byteCount();
}

void checkBytesRead(const std::string& bytes) {
  const std::size_t forward = bytesRead(bytes, 0);
  fuzz::require(forward <= bytes.size(), "a forward scan reads each byte at most once");
  fuzz::require(bytesRead(bytes, kMaxStructures) <= forward + kMaxStructures * kBytesPerStructure,
                "a structure after a backward jump costs little");
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
  if (kind == Atoms) checkBytesRead(bytes);
  const MetaDataLocations locations = indexOf(bytes, kind);
  fuzz::require(areEqual(locations, indexOf(bytes, kind)), "two scans of the same bytes agree");
  for (const auto& [id, location] : locations) {
    const bool isRaw = kind == Raw;
    const auto offset = static_cast<std::size_t>(location.offset);
    fuzz::require(location.offset >= 0 && (isRaw || offset + 24 <= bytes.size()),
                  "the header of an entry is in the file");
    fuzz::require(isRaw || std::memcmp(bytes.data() + offset, id.data, 16) == 0,
                  "an entry is indexed under its identifier");
    fuzz::require(!isRaw || (offset == 0 && locations.size() == 1), "a raw file is one entry");
  }
  return 0;
}
