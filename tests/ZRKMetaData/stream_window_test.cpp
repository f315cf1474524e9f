#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "ZRKMetaData/src/ZRKMStreamWindow.h"
#include "tests/support/Device.h"

namespace ZRKMetaData {
namespace {

std::string countingBytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t place = 0; place < count; ++place) bytes[place] = static_cast<char>(place % 251);
  return bytes;
}

// Any run of reads, seeks and peeks gives what the stream itself gives, and leaves it alike.
TEST(StreamWindow, ReadsAsTheStreamDoes) {
  const std::string bytes = countingBytes(300);
  std::mt19937 dice(7);
  for (int round = 0; round < 2000; ++round) {
    std::istringstream plain(bytes);
    std::istringstream windowed(bytes);
    const std::size_t capacities[] = {0, 1, 7, 64, 1000};
    StreamWindow window(windowed, 0, capacities[dice() % 5]);
    if (dice() % 2 == 0) window.limitReadAhead(dice() % 320);
    for (int step = 0; step < 12 && plain.good(); ++step) {
      switch (dice() % 4) {
        case 0: {
          const auto to = static_cast<int64>(dice() % 301);
          plain.seekg(to);
          window.seek(to);
          break;
        }
        case 1:
          plain.peek();
          window.peek();
          break;
        default: {
          std::string expected(dice() % 40, '?');
          std::string got = expected;
          plain.read(expected.data(), static_cast<std::streamsize>(expected.size()));
          EXPECT_EQ(window.read(got.data(), got.size()), static_cast<std::size_t>(plain.gcount()));
          EXPECT_EQ(got, expected);
        }
      }
      ASSERT_EQ(window.eof(), plain.eof()) << round;
      ASSERT_EQ(window.good(), plain.good()) << round;
    }
    window.settle();
    EXPECT_EQ(windowed.rdstate(), plain.rdstate()) << round;
    plain.clear();
    windowed.clear();
    ASSERT_EQ(windowed.tellg(), plain.tellg()) << round;
  }
}

TEST(StreamWindow, CountsWhatIsLeft) {
  std::istringstream in(countingBytes(300));
  StreamWindow window(in, 0, 64);
  char byte = 0;
  EXPECT_EQ(window.bytesLeft(), 300U);
  window.read(&byte, 1);
  EXPECT_EQ(window.bytesLeft(), 299U);
  window.seek(290);
  EXPECT_EQ(window.bytesLeft(), 10U);
  window.read(&byte, 1);
  EXPECT_EQ(static_cast<unsigned char>(byte), 290 % 251);
  window.seek(400);
  EXPECT_EQ(window.bytesLeft(), 0U);
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

// Everything before it is still delivered, large window or not.
TEST(StreamWindow, DeliversWhatStandsBeforeAFailingByte) {
  const std::string bytes = countingBytes(200);
  testing_support::Device source(bytes, 100, testing_support::Device::Ends::Failing);
  std::istream in(&source);
  StreamWindow window(in, 0, 64);
  std::string got(10, '?');
  for (std::size_t n = 0; n < 10; ++n) {
    ASSERT_EQ(window.read(got.data(), 10), 10U) << n;
    EXPECT_EQ(got, bytes.substr(10 * n, 10));
  }
  EXPECT_EQ(window.read(got.data(), 10), 0U);
  EXPECT_TRUE(window.bad());
}

}  // namespace
}  // namespace ZRKMetaData
