// Whether the last structure of a file ends beyond it.
#include "tools/series/Overrun.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <string>

#include "tests/support/CountingBuffer.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace {

using recording::atom;
using recording::bigEndian;
using recording::Bytes;
using recording::chunk;
using recording::littleEndian;
using ZRKMetaData::Atoms;
using ZRKMetaData::ContainerKind;
using ZRKMetaData::Riff;

// "ZRKM 40 +5": the type, the start and the excess; empty for none.
std::string found(const Bytes& bytes, ContainerKind kind) {
  std::istringstream file(bytes);
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForStream(file, kind));
  const auto overrun = series::findOverrun(file, kind, parser->locations());
  const auto fromStart = series::findOverrun(file, kind, {});
  EXPECT_EQ(overrun ? overrun->text() : "", fromStart ? fromStart->text() : "");
  if (!overrun) return {};
  return overrun->type + " " + std::to_string(overrun->start) + " +" +
         std::to_string(overrun->excess);
}

Bytes cutBy(std::size_t count, const Bytes& bytes) {
  return bytes.substr(0, bytes.size() - count);
}

TEST(Overrun, IsThatOfTheLastStructureOfARecording) {
  const std::vector<recording::Entry> entries = {
      {recording::streamId(0xF0), recording::pointRecord(1, 2, 3)},
      {recording::streamId(0xF9), recording::stringRecord(1, "odd")}};
  const Bytes media = atom("ftyp", "isom") + atom("mdat", Bytes(100, 'm'));
  const Bytes atoms = media + recording::atomBlock(entries);
  const Bytes chunks = chunk("RIFF", "AVI data") + recording::chunkBlock(entries);
  const Bytes small = Bytes(4, '\0') + "free" + bigEndian(std::uint64_t{15});
  const struct {
    const char* name;
    Bytes bytes;
    ContainerKind kind;
    std::string overrun;
  } cases[] = {
      {"whole atoms", atoms, Atoms, ""},
      {"whole chunks", chunks, Riff, ""},
      {"media behind the block", atoms + media, Atoms, ""},
      {"cut in the media behind the block", atoms + cutBy(3, media), Atoms, "mdat 235 +3"},
      {"cut between two entries", cutBy(43, atoms), Atoms, "ZRKM 120 +43"},
      {"cut by a byte", cutBy(1, atoms), Atoms, "ZRKM 120 +1"},
      {"cut chunks", cutBy(30, chunks), Riff, "ZRKM 16 +30"},
      {"cut in the media", cutBy(3, media), Atoms, "mdat 12 +3"},
      {"cut in wide media", cutBy(2, recording::wideAtom("mdat", "abc")), Atoms, "mdat 0 +2"},
      {"cut in a header", cutBy(4, atom("ftyp", "")), Atoms, ""},
      {"a raw file", atoms.substr(0, 60), ZRKMetaData::Raw, ""},
      {"text behind the recording", atoms + "this is no atom", Atoms, ""},
      {"media up to the end", Bytes(4, '\0') + "mdat" + Bytes(20, 'm'), Atoms, ""},
      {"media of an unknown length",
       "RIFF" + littleEndian(std::numeric_limits<std::uint32_t>::max()) + "WAVE", Riff, ""},
      {"a size below that of the header", small + cutBy(1, media), Atoms, ""},
      {"a size that leads backward",
       bigEndian(std::uint32_t{1}) + "free" + bigEndian(~std::uint64_t{0}) + cutBy(1, media), Atoms,
       ""},
      {"no bytes", "", Atoms, ""},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(found(each.bytes, each.kind), each.overrun) << each.name;
  }
}

// The scan has read the whole file already.
TEST(Overrun, IsLookedForFromTheBlockOn) {
  Bytes file;
  for (int count = 0; count < 10'000; ++count) file += atom("free", "");
  file += recording::atomBlock({{recording::streamId(0xF0), recording::pointRecord(1, 2, 3)}});
  testing_support::CountingBuffer source(cutBy(1, file));
  std::istream stream(&source);
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForStream(stream, Atoms));
  const std::size_t scanned = source.byteCount();
  EXPECT_GE(scanned, 80'000U);
  EXPECT_TRUE(series::findOverrun(stream, Atoms, parser->locations()));
  EXPECT_LE(source.byteCount() - scanned, 1'000U);
}

TEST(Overrun, SaysWhatIsMissingAndWhatToDo) {
  EXPECT_EQ((series::Overrun{"ZRKM", 120, 1}).text(),
            "the metadata block ends 1 byte beyond the file; streams may be missing; "
            "voxa salvage may recover them");
  EXPECT_EQ((series::Overrun{"mdat", 12, 30}).text(),
            "'mdat' at byte 12 ends 30 bytes beyond the file; streams may be missing; "
            "voxa salvage may recover them");
}

}  // namespace
