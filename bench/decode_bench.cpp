// Decodes a stream into an observer; the floor is a minimal loop over the same records.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "bench/Recordings.h"
#include "bench/Sizes.h"

namespace {

using bench::Stream;

constexpr std::size_t kHeaderSize = 24;  // header of an entry
constexpr std::size_t kPointSize = 16;

// Counts the records and keeps none.
template <class T>
class CountingObserver final : public ZRKMetaData::DataStreamObserver<T> {
 public:
  bool onData(double seconds, const T& value) override {
    benchmark::DoNotOptimize(seconds);
    benchmark::DoNotOptimize(&value);
    ++m_count;
    return true;
  }
  std::int64_t count() const { return m_count; }

 private:
  std::int64_t m_count = 0;
};

// A recording of one stream and the location of its records.
struct Measured {
  Measured(Stream stream, std::int64_t count)
      : name(bench::recordingOf(stream, bench::Order::Rising, count)),
        parser(ZRKMetaData::MetaDataParser::createForFile(name)),
        location(parser->locations().begin()->second) {}

  off_t firstRecord() const { return location.offset + static_cast<off_t>(kHeaderSize); }

  const std::string name;
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser;
  const ZRKMetaData::MetaDataLocation location;
};

void report(benchmark::State& state, const Measured& measured) {
  state.SetItemsProcessed(state.iterations() * state.range());
  state.SetBytesProcessed(state.iterations() * measured.location.size);
}

template <class T, Stream stream>
void decode(benchmark::State& state) {
  const Measured measured(stream, state.range());
  while (state.KeepRunning()) {
    CountingObserver<T> observer;
    ZRKMetaData::MetaDataReader<T>().parseFile(observer, measured.parser->stream(),
                                               measured.location.offset, measured.location.size);
    if (observer.count() != state.range()) state.SkipWithError("records are missing");
  }
  report(state, measured);
}
constexpr auto& decodePoints = decode<ZRKMetaData::Point, Stream::Points>;
constexpr auto& decodeStrings = decode<std::string, Stream::Strings>;
BENCHMARK(decodePoints)->Apply(bench::tenfold);
BENCHMARK(decodeStrings)->Apply(bench::tenfold);

// Reads blocks of 64 KiB and decodes the records in place.
void decodePointsInBlocks(benchmark::State& state) {
  const Measured measured(Stream::Points, state.range());
  const int file = ::open(measured.name.c_str(), O_RDONLY | O_CLOEXEC);
  std::vector<char> block(std::size_t{64} << 10U);
  while (state.KeepRunning()) {
    ::lseek(file, measured.firstRecord(), SEEK_SET);
    for (ssize_t got = 0; (got = ::read(file, block.data(), block.size())) > 0;) {
      const char* const end = block.data() + got;
      for (const char* next = block.data(); next < end; next += kPointSize) {
        double seconds = 0;
        ZRKMetaData::Point value;
        std::memcpy(&seconds, next, sizeof seconds);
        std::memcpy(&value, next + sizeof seconds, sizeof value);
        benchmark::DoNotOptimize(seconds);
        benchmark::DoNotOptimize(&value);
      }
    }
  }
  ::close(file);
  report(state, measured);
}
BENCHMARK(decodePointsInBlocks)->Apply(bench::tenfold);

// Decodes from memory and copies the characters of each record into a string.
void decodeStringsFromMemory(benchmark::State& state) {
  const Measured measured(Stream::Strings, state.range());
  std::ifstream file(measured.name, std::ios::binary);
  file.seekg(measured.firstRecord());
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  while (state.KeepRunning()) {
    std::string value;
    for (std::size_t offset = 0; offset < bytes.size();) {
      std::uint32_t size = 0;
      double seconds = 0;
      std::memcpy(&size, &bytes[offset], sizeof size);
      std::memcpy(&seconds, &bytes[offset + sizeof size], sizeof seconds);
      value.assign(&bytes[offset + sizeof size + sizeof seconds], size - sizeof seconds);
      benchmark::DoNotOptimize(seconds);
      benchmark::DoNotOptimize(&value);
      offset += sizeof size + size;
    }
  }
  report(state, measured);
}
BENCHMARK(decodeStringsFromMemory)->Apply(bench::tenfold);

}  // namespace
