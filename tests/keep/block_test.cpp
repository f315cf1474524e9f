// Blocks that are written in pieces are those that are built in memory.
#include "tools/recording/Block.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tools/recording/Container.h"

namespace {

using recording::Bytes;
using recording::Entry;
using recording::Layout;
using recording::StreamedEntry;

StreamedEntry streamed(const Entry& entry) {
  const Bytes bytes = recording::entryBytes(entry);
  return {"F0", bytes.size(), [bytes](const recording::Write& write) {
            for (const char byte : bytes) write(std::string_view(&byte, 1));
          }};
}

TEST(Block, IsTheOneThatIsBuiltInMemory) {
  const std::vector<Entry> entries = {{recording::streamId(1), "odd"},
                                      {recording::streamId(2), "", 5, 6},
                                      {recording::streamId(3), "even"}};
  std::vector<StreamedEntry> pieces;
  for (const Entry& entry : entries) pieces.push_back(streamed(entry));
  for (const Layout layout : {Layout::Atoms, Layout::Chunks}) {
    Bytes block;
    recording::writeBlock(layout, pieces, [&block](std::string_view bytes) { block += bytes; });
    EXPECT_EQ(block, layout == Layout::Atoms ? recording::atomBlock(entries)
                                             : recording::chunkBlock(entries));
  }
}

TEST(Block, OfChunksHoldsFourGigabytesAndNoMore) {
  const auto refusalOf = [](Layout layout, const std::vector<std::uint64_t>& sizes) -> std::string {
    std::vector<StreamedEntry> entries;
    for (const auto size : sizes) entries.push_back({"F" + std::to_string(size % 10), size, {}});
    try {
      recording::requireFits(layout, entries);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  };
  constexpr std::uint64_t kMax = 0xFFFFFFFF;
  EXPECT_EQ(refusalOf(Layout::Chunks, {kMax - 9}), "");
  for (const auto size : {kMax - 8, kMax, kMax + 30, std::uint64_t{1} << 62}) {
    EXPECT_NE(refusalOf(Layout::Chunks, {size}), "") << size;
    EXPECT_EQ(refusalOf(Layout::Atoms, {size}), "") << size;
  }
  EXPECT_EQ(refusalOf(Layout::Chunks, {kMax / 2, kMax / 2 + 4}),
            "stream F1: with its 2147483651 bytes the block exceeds the 4294967295 bytes that a "
            "RIFF chunk holds; use a container of atoms");
}

TEST(Block, FailsWhenAnEntryIsNotWhatItsSizeSays) {
  StreamedEntry entry = streamed({recording::streamId(1), "odd"});
  ++entry.size;
  EXPECT_THROW(recording::writeBlock(Layout::Atoms, {entry}, [](std::string_view) {}),
               std::runtime_error);
}

TEST(AtomHeader, IsWideWhereThirtyTwoBitsDoNotSuffice) {
  EXPECT_EQ(recording::atomHeader("DATA", 0xFFFFFFF7), Bytes("\xFF\xFF\xFF\xFF") + "DATA");
  EXPECT_EQ(recording::atomHeader("DATA", 0xFFFFFFF8),
            Bytes("\0\0\0\1", 4) + "DATA" + Bytes("\0\0\0\1\0\0\0\x08", 8));
}

}  // namespace
