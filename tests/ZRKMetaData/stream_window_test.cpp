#include <gtest/gtest.h>

#include <sstream>

#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {
namespace {

std::string countingBytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t place = 0; place < count; ++place) bytes[place] = static_cast<char>(place % 251);
  return bytes;
}

// Counts what is asked of the source underneath.
class CountingBuffer final : public std::stringbuf {
 public:
  using std::stringbuf::stringbuf;
  std::size_t reads = 0;
  std::size_t bytes = 0;
  std::size_t seeks = 0;

 protected:
  std::streamsize xsgetn(char* to, std::streamsize count) override {
    ++reads;
    const auto got = std::stringbuf::xsgetn(to, count);
    bytes += static_cast<std::size_t>(got);
    return got;
  }
  pos_type seekoff(off_type offset, std::ios::seekdir way, std::ios::openmode mode) override {
    ++seeks;
    return std::stringbuf::seekoff(offset, way, mode);
  }
  pos_type seekpos(pos_type position, std::ios::openmode mode) override {
    ++seeks;
    return std::stringbuf::seekpos(position, mode);
  }
};

TEST(StreamWindow, FetchesEachByteOnceAndAsksForNoPosition) {
  CountingBuffer source(countingBytes(100'000), std::ios::in);
  std::istream in(&source);
  StreamWindow window(in, 0, 1000);
  char record[16];
  for (int n = 0; n < 100'000 / 16; ++n) {
    window.read(record, 8);
    window.read(record + 8, 8);
    window.peek();
  }
  EXPECT_EQ(source.bytes, 100'000U);
  EXPECT_EQ(source.reads, 101U);  // the last finds the end
  EXPECT_EQ(source.seeks, 1U);    // to where the window begins
}

TEST(StreamWindow, FetchesLittleAfterALongJump) {
  CountingBuffer source(countingBytes(100'000), std::ios::in);
  std::istream in(&source);
  StreamWindow window(in, 0, 1000);
  char record[100];
  for (const auto& [place, count, bytes] : {std::tuple{50'000, 8, 64},   // far: what a header takes
                                            {50'056, 9, 64 + 1000},      // on from there
                                            {51'500, 8, 64 + 2 * 1000},  // beyond, but near
                                            {10'000, 100, 64 + 2 * 1000 + 100}}) {
    window.seek(place);
    window.read(record, static_cast<std::size_t>(count));
    EXPECT_EQ(source.bytes, static_cast<std::size_t>(bytes)) << place;
  }
}

}  // namespace
}  // namespace ZRKMetaData
