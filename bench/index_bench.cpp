// Finds the metadata block; the floors follow the same headers without any checks.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/endian/conversion.hpp>
#include <memory>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "bench/Recordings.h"
#include "bench/Sizes.h"

namespace {

using Recording = std::string (*)(std::int64_t count);

constexpr std::size_t kHeaderSize = 8;

class File {
 public:
  explicit File(const std::string& name)
      : m_descriptor(::open(name.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~File() { ::close(m_descriptor); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  int descriptor() const { return m_descriptor; }
  std::size_t size() const {
    struct stat status {};
    ::fstat(m_descriptor, &status);
    return static_cast<std::size_t>(status.st_size);
  }

 private:
  const int m_descriptor;
};

bool isBlock(const unsigned char* header) {
  return boost::endian::load_big_u32(header + 4) == 0x5A524B4D;  // "ZRKM"
}

std::size_t blockByMap(const std::string& name) {
  const File file(name);
  const std::size_t size = file.size();
  void* const map = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.descriptor(), 0);
  const auto* const bytes = static_cast<const unsigned char*>(map);
  std::size_t offset = 0;
  while (offset < size && !isBlock(bytes + offset)) {
    offset += boost::endian::load_big_u32(bytes + offset);
  }
  ::munmap(map, size);
  return offset;
}

std::size_t blockByPread(const std::string& name) {
  const File file(name);
  unsigned char header[kHeaderSize];
  std::size_t offset = 0;
  while (::pread(file.descriptor(), header, sizeof header, static_cast<off_t>(offset)) ==
             static_cast<ssize_t>(kHeaderSize) &&
         !isBlock(header)) {
    offset += boost::endian::load_big_u32(header);
  }
  return offset;
}

std::size_t blockByParser(const std::string& name) {
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForFile(name));
  return static_cast<std::size_t>(parser->locations().begin()->second.offset);
}

template <std::size_t (&find)(const std::string&)>
void index(benchmark::State& state, Recording recording) {
  const std::string name = recording(state.range());
  while (state.KeepRunning()) benchmark::DoNotOptimize(find(name));
  state.SetItemsProcessed(state.iterations() * state.range());
}

constexpr auto& indexByParser = index<blockByParser>;
constexpr auto& indexByMap = index<blockByMap>;
constexpr auto& indexByPread = index<blockByPread>;

BENCHMARK_CAPTURE(indexByParser, dense, bench::denseRecording)->Apply(bench::tenfold);
BENCHMARK_CAPTURE(indexByMap, dense, bench::denseRecording)->Apply(bench::tenfold);
BENCHMARK_CAPTURE(indexByParser, sparse, bench::sparseRecording)->Arg(1'000)->Arg(10'000);
BENCHMARK_CAPTURE(indexByPread, sparse, bench::sparseRecording)->Arg(1'000)->Arg(10'000);

}  // namespace
