// Decodes a stream of points into memory of the caller: the floor of reading it as a NumPy array,
// which `bench/python-decode` calls through a C interface.
#include <cstring>
#include <memory>
#include <string>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "ZRKMetaData/src/ZRKMMetaDataReader.h"

namespace {

using ZRKMetaData::MetaDataParser;
using ZRKMetaData::Point;

// Packs time and coordinates without padding, as the array of the package has them.
class PackingObserver final : public ZRKMetaData::DataStreamObserver<Point> {
 public:
  PackingObserver(unsigned char* memory, std::size_t size) : m_next(memory), m_left(size) {}

  bool onData(double seconds, const Point& value) override {
    if (m_left < sizeof seconds + sizeof value) return false;
    std::memcpy(m_next, &seconds, sizeof seconds);
    std::memcpy(m_next + sizeof seconds, &value, sizeof value);
    m_next += sizeof seconds + sizeof value;
    m_left -= sizeof seconds + sizeof value;
    return true;
  }

  std::size_t bytesLeft() const { return m_left; }

 private:
  unsigned char* m_next;
  std::size_t m_left;
};

}  // namespace

// Indexes the recording. The caller never frees it, because the process ends after the measurement.
extern "C" MetaDataParser* openPoints(const char* path) {
  return MetaDataParser::createForFile(path);
}

// Decodes the first stream into `size` bytes and returns how many of them are not written.
extern "C" std::size_t decodePoints(MetaDataParser* recording, unsigned char* memory,
                                    std::size_t size) {
  const auto location = recording->locations().begin()->second;
  PackingObserver observer(memory, size);
  ZRKMetaData::MetaDataReader<Point>().parseFile(observer, recording->stream(), location.offset,
                                                 location.size);
  return observer.bytesLeft();
}
