#include <gtest/gtest.h>

#include <istream>
#include <tuple>

#include "ZRKMetaData/src/ZRKMStreamWindow.h"
#include "tests/support/CountingBuffer.h"

namespace ZRKMetaData {
namespace {

using testing_support::CountingBuffer;

std::string countingBytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t offset = 0; offset < count; ++offset)
    bytes[offset] = static_cast<char>(offset % 251);
  return bytes;
}

TEST(StreamWindow, ReadsEachByteOnceAndSeeksOnce) {
  CountingBuffer source(countingBytes(100'000));
  std::istream in(&source);
  StreamWindow window(in, 0, 1000);
  char record[16];
  for (int n = 0; n < 100'000 / 16; ++n) {
    window.read(record, 8);
    window.read(record + 8, 8);
    window.peek();
  }
  EXPECT_EQ(source.byteCount(), 100'000U);
  EXPECT_EQ(source.readCount(), 101U);  // the last one reaches the end
  EXPECT_EQ(source.seekCount(), 1U);    // to the begin of the window
}

TEST(StreamWindow, ReadsLittleAfterALongJump) {
  CountingBuffer source(countingBytes(100'000));
  std::istream in(&source);
  StreamWindow window(in, 0, 1000);
  char record[100];
  for (const auto& [offset, count, bytes] :
       {std::tuple{50'000, 8, 64},   // far: the size of a header
        {50'056, 9, 64 + 1000},      // sequential
        {51'500, 8, 64 + 2 * 1000},  // near
        {10'000, 100, 64 + 2 * 1000 + 100}}) {
    window.seek(offset);
    window.read(record, static_cast<std::size_t>(count));
    EXPECT_EQ(source.byteCount(), static_cast<std::size_t>(bytes)) << offset;
  }
}

// A scan that skips far and returns, as each container with a large foreign entry makes it do.
TEST(StreamWindow, ReadsAsFarAheadAsBeforeAfterAReturn) {
  CountingBuffer source(countingBytes(100'000));
  std::istream in(&source);
  StreamWindow window(in, 0, 1000);
  char header[8];
  for (int start = 0; start <= 30'000; start += 10) {
    window.seek(start);
    window.read(header, sizeof header);
    window.seek(90'000);
  }
  EXPECT_LE(source.readCount(), 33U);
}

}  // namespace
}  // namespace ZRKMetaData
