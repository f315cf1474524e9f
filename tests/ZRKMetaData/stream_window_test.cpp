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

TEST(StreamWindow, ReadsLittleAfterALongJumpAndThenTwiceAsMuch) {
  CountingBuffer source(countingBytes(100'000));
  std::istream in(&source);
  StreamWindow window(in, 0, 256, 1000);
  char record[500];
  std::size_t bytes = 0;
  for (const auto& [offset, count, fetched] : {std::tuple{0, 8, 256},
                                               {256, 8, 512},
                                               {1'200, 8, 1000},  // a short step
                                               {50'000, 8, 64},   // far: the size of a header
                                               {50'056, 9, 128},  // sequential
                                               {50'070, 8, 0},
                                               {50'030, 8, 0},      // back into the window
                                               {10'000, 500, 500},  // far, more than a window
                                               {10'500, 8, 64},
                                               {10'600, 8, 128}}) {
    window.seek(offset);
    window.read(record, static_cast<std::size_t>(count));
    bytes += static_cast<std::size_t>(fetched);
    EXPECT_EQ(source.byteCount(), bytes) << offset;
  }
}

// Each header reaches over the end of the bytes that are read ahead, and the next one begins inside
// it.
TEST(StreamWindow, ReadsNoByteTwiceInStepsOfOne) {
  CountingBuffer source(countingBytes(10'000));
  std::istream in(&source);
  StreamWindow window(in, 0, 64, 1000);
  char header[40];
  for (int start = 0; start <= 9'960; ++start) {
    window.seek(start);
    window.read(header, sizeof header);
    ASSERT_EQ(header[39], static_cast<char>((start + 39) % 251));
  }
  EXPECT_EQ(source.byteCount(), 10'000U);
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
