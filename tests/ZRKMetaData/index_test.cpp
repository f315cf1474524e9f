#include <gtest/gtest.h>

#include <boost/uuid/uuid_io.hpp>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "ZRKMetaData/src/ZRKMScan.h"
#include "tests/support/Captured.h"
#include "tests/support/CountingBuffer.h"
#include "tests/support/Device.h"
#include "tests/support/Hex.h"
#include "tests/support/TempFolder.h"
#include "tools/recording/Container.h"

namespace ZRKMetaData {
namespace {

using recording::atom;
using recording::atomBlock;
using recording::bigEndian;
using recording::Bytes;
using recording::chunk;
using recording::chunkBlock;
using recording::Entry;
using recording::entryBytes;
using recording::littleEndian;
using recording::streamId;
using recording::wideAtom;
using testing_support::AssertionLog;
using testing_support::Captured;
using testing_support::Device;
using testing_support::TempFolder;

using Parser = std::unique_ptr<MetaDataParser>;

// The index as text: "F0@16+24" is the stream with the short key F0 at byte 16, 24 bytes long.
std::string shown(const MetaDataParser& parser) {
  std::ostringstream text;
  for (const auto& [id, location] : parser.locations()) {
    const bool isOurs = id == streamId(id.data[3]);
    char key[3] = "--";
    if (isOurs) std::snprintf(key, sizeof key, "%02X", unsigned{id.data[3]});
    text << key << '@' << location.offset << '+' << location.size << ' ';
  }
  return text.str();
}

std::string indexOf(const Bytes& bytes, ContainerKind kind) {
  std::istringstream in(bytes);
  return shown(*Parser(MetaDataParser::createForStream(in, kind)));
}

const Entry kEntryF0{streamId(0xF0), "records of F0"};     // 37 bytes with its header
const Entry kEntryF1{streamId(0xF1), "records of F1!"};    // 38 bytes
const Bytes kDataF0 = atom("DATA", entryBytes(kEntryF0));  // 45 bytes
const Bytes kDataF1 = atom("DATA", entryBytes(kEntryF1));  // 46 bytes
const Bytes kChunkF0 = chunk("DATA", entryBytes(kEntryF0));
const Bytes kChunkF1 = chunk("DATA", entryBytes(kEntryF1));

Bytes atomWithSize(uint32 size, const char* type, const Bytes& payload) {
  return bigEndian(size) + type + payload;
}
Bytes atomWithWideSize(uint64 size, const char* type, const Bytes& payload = "") {
  return bigEndian(uint32{1}) + type + bigEndian(size) + payload;
}

struct Case {
  const char* outcome;
  Bytes bytes;
  std::string index;
  std::string standardError = "";
};

std::string outcomeOf(const testing::TestParamInfo<Case>& info) {
  return info.param.outcome;
}

class ContainerIndex : public testing::TestWithParam<Case> {
 protected:
  static void expectIndex(ContainerKind kind) {
    const Captured errors(std::cerr);
    EXPECT_EQ(indexOf(GetParam().bytes, kind), GetParam().index);
    EXPECT_EQ(errors.text(), GetParam().standardError);
  }
};

class AtomIndex : public ContainerIndex {};
TEST_P(AtomIndex, Scan) {
  expectIndex(Atoms);
}

class ChunkIndex : public ContainerIndex {};
TEST_P(ChunkIndex, Scan) {
  expectIndex(Riff);
}

const char kForeignAtom[] = "Found a non DATA atom mixed in the ZRK meta data\n";
const char kForeignChunk[] = "Found a non DATA chunk mixed in the ZRK meta data\n";

INSTANTIATE_TEST_SUITE_P(
    Containers, AtomIndex,
    testing::Values(
        Case{"EntriesOfABlockBehindMedia",
             atom("ftyp", "isom") + atom("mdat", "media") + atomBlock({kEntryF0, kEntryF1}),
             "F0@41+29 F1@86+30 "},
        Case{"LastEntryWithTheIdentifierWinsAcrossContainers",
             atomBlock({kEntryF0, kEntryF1}) + atomBlock({kEntryF0}), "F0@115+29 F1@61+30 "},
        Case{"ABlockInsideAnotherAtomIsNotFound", atom("moov", atomBlock({kEntryF0})), ""},
        Case{"AWideEntryStandsSixteenBytesBehindItsAtom",
             wideAtom("ZRKM", wideAtom("DATA", entryBytes(kEntryF0))), "F0@32+37 "},
        Case{"AForeignEntryIsNamedAndSkipped",
             atom("ZRKM", kDataF0 + atom("JUNK", "some junk") + kDataF1), "F0@16+29 F1@78+30 ",
             kForeignAtom},
        Case{"AZeroEntrySizeEndsOnlyItsContainer",
             atom("ZRKM", kDataF0 + atomWithWideSize(0, "DATA") + kDataF0) + atomBlock({kEntryF1}),
             "F0@16+29 F1@130+30 "},
        Case{"AZeroTopLevelSizeEndsTheScan",
             atomBlock({kEntryF0}) + atomWithWideSize(0, "free") + atomBlock({kEntryF1}),
             "F0@16+29 "},
        Case{"AnEntryIsIndexedThoughItRunsPastItsContainer",
             atomWithSize(8 + 8 + 24, "ZRKM", atomWithSize(1000, "DATA", entryBytes(kEntryF0))),
             "F0@16+984 "},
        Case{"AnEntryHeaderMustFitIntoTheFileNotIntoItsAtom",
             atomWithSize(8 + 20, "ZRKM", atomWithSize(20, "DATA", entryBytes({kEntryF0.id, ""}))),
             "F0@16+4 "},
        Case{"AnEntryHeaderCutByTheFileIsNotIndexed",
             atom("ZRKM", kDataF0 + kDataF1).substr(0, 8 + 45 + 8 + 23), "F0@16+29 "},
        Case{"AnEntryAtomHeaderCutByTheFileEndsItsContainer", atom("ZRKM", kDataF0 + "cut"),
             "F0@16+29 "},
        Case{"AnAtomHeaderCutByTheFileEndsTheScan", atomBlock({kEntryF0}) + bigEndian(uint32{99}),
             "F0@16+29 "},
        Case{"AnEmptyFileHasNoIndex", "", ""}),
    outcomeOf);

INSTANTIATE_TEST_SUITE_P(
    Containers, ChunkIndex,
    testing::Values(
        Case{"OddPayloadsArePadded", chunk("RIFF", "odd") + chunkBlock({kEntryF0, kEntryF1}),
             "F0@28+37 F1@74+38 "},
        Case{"LastEntryWithTheIdentifierWins", chunkBlock({kEntryF0}) + chunkBlock({kEntryF0}),
             "F0@70+37 "},
        Case{"ABlockInsideTheRiffFormIsNotFound", chunk("RIFF", chunkBlock({kEntryF0})), ""},
        Case{"AForeignEntryIsNamedAndSkipped",
             chunk("ZRKM", kChunkF0 + chunk("JUNK", "junk!") + kChunkF1), "F0@16+37 F1@76+38 ",
             kForeignChunk},
        Case{"AZeroEntrySizeEndsTheScan",
             chunk("ZRKM", kChunkF0 + chunk("DATA", "") + kChunkF0) + chunkBlock({kEntryF1}),
             "F0@16+37 "},
        Case{"AZeroTopLevelSizeEndsTheScan",
             chunkBlock({kEntryF0}) + chunk("JUNK", "") + chunkBlock({kEntryF1}), "F0@16+37 "},
        Case{"AnEntryMayRunPastItsContainerAndTheFile",
             "ZRKM" + littleEndian(uint32{8}) + "DATA" + littleEndian(0xFFFFFFFFU) +
                 entryBytes(kEntryF0),
             "F0@16+4294967295 "},
        Case{"AnEntryHeaderCutByTheFileIsNotIndexed",
             chunkBlock({kEntryF0, kEntryF1}).substr(0, 8 + 46 + 8 + 23), "F0@16+37 "},
        Case{"AnEntryChunkHeaderCutByTheFileEndsItsContainer", chunk("ZRKM", kChunkF0 + "cut"),
             "F0@16+37 "},
        Case{"AnEmptyFileHasNoIndex", "", ""}),
    outcomeOf);

TEST(RawIndex, HasOneEntryWhateverTheFileHolds) {
  const Bytes whole = entryBytes(kEntryF0) + Bytes(63, 'r');
  EXPECT_EQ(indexOf(whole, Raw), "F0@0+100 ");
  EXPECT_EQ(indexOf(whole.substr(0, 16), Raw), "F0@0+16 ");
  EXPECT_EQ(indexOf(whole.substr(0, 15), Raw), "--@0+15 ");  // an incomplete identifier
  std::istringstream empty;
  const Parser parser(MetaDataParser::createForStream(empty, Raw));
  EXPECT_EQ(parser->streamIds(), std::list<boost::uuids::uuid>{boost::uuids::uuid{}});
  EXPECT_EQ(shown(*parser), "--@0+0 ");
}

const Bytes kBlock = atomBlock({kEntryF0});  // 53 bytes
constexpr uint64 kTwoTo63 = uint64{1} << 63U;

INSTANTIATE_TEST_SUITE_P(
    HostileSizes, AtomIndex,
    testing::Values(
        Case{"JustBelow2To63EndsTheScan", kBlock + atomWithWideSize(kTwoTo63 - 1, "free"),
             "F0@16+29 "},
        // Negative once it is added to the position and taken as signed.
        Case{"Of2To63EndsTheScan", kBlock + atomWithWideSize(kTwoTo63, "free"), "F0@16+29 "},
        // -53: byte 0 is scanned a second time, but its jump back is not taken again.
        Case{"BackToByteZeroIsFollowedOnce",
             kBlock + atomWithWideSize(~uint64{0} - 52, "free") + atomBlock({kEntryF1}),
             "F0@16+29 "},
        Case{"BackToBeforeByteZeroEndsTheScan", kBlock + atomWithWideSize(~uint64{0} - 53, "free"),
             "F0@16+29 "},
        // -1: one byte earlier the same bytes form another header.
        Case{"BackByOneByteEndsTheScan", kBlock + atomWithWideSize(~uint64{0}, "free"),
             "F0@16+29 "},
        // The jump back to the DATA atom reaches the foreign entry again, which is named once.
        Case{"OfAnEntryThatJumpsToItsContainerEndsTheScan",
             atom("ZRKM", kDataF0 + atomWithWideSize(~uint64{0} - 44, "JUNK")), "F0@16+29 ",
             kForeignAtom},
        Case{"OfAContainerThatEndsBeforeItBeginsHidesItsEntries",
             atomWithWideSize(kTwoTo63, "ZRKM", kDataF0), ""}),
    outcomeOf);

TEST(BackwardJumps, AreFollowed) {
  // A foreign atom that contains a block, then an atom whose size leads back to that block.
  const Bytes hidden = atom("free", atomBlock({kEntryF0}));
  const Bytes back = atomWithWideSize(~uint64{0} - (hidden.size() - 8) + 1, "free");
  EXPECT_EQ(indexOf(hidden + back, Atoms), "F0@24+29 ");
}

// The first atom leads to the last, which leads back to the second. Empty atoms follow, then a
// block, whose container and entry count as well.
TEST(BackwardJumps, LimitTheScanTo131072FurtherStructures) {
  struct Row {
    uint64 atoms;
    std::string index;
  };
  for (const Row& row : {Row{131'070, "F0@1048592+29 "}, Row{131'071, ""}}) {
    const uint64 size = 8 * row.atoms + 53;
    Bytes bytes = atomWithWideSize(16 + size, "free");
    for (uint64 n = 0; n < row.atoms; ++n) bytes += atom("free", "");
    bytes += atomBlock({kEntryF0}) + atomWithWideSize(uint64{0} - size, "free");
    EXPECT_EQ(indexOf(bytes, Atoms), row.index) << row.atoms;
  }
}

// The entry of each block leads back to a row of small atoms, which the scan then visits again.
TEST(BackwardJumps, LimitTheMessagesOfARepeatedScan) {
  constexpr uint64 kCount = 4000;
  Bytes bytes;
  for (uint64 n = 0; n < kCount; ++n) bytes += atom("free", "");
  for (uint64 n = 0; n < kCount; ++n) {
    bytes += atom("ZRKM", atomWithWideSize(uint64{0} - bytes.size() - 8, "free"));
  }
  const Captured errors(std::cerr);
  EXPECT_EQ(indexOf(bytes, Atoms), "");
  EXPECT_LE(errors.text().size(),
            (kMaxStructuresAfterBackwardJump + 1) * (sizeof kForeignAtom - 1));
}

TEST(BackwardJumps, AreFollowedAThousandTimesButNotAHundredThousandTimes) {
  // Each atom of the first half leads to one of the second, which leads back to the next.
  const auto indexBehindLadder = [](uint64 rungs) {
    Bytes bytes;
    for (uint64 rung = 0; rung < rungs; ++rung) bytes += atomWithWideSize(16 * rungs, "free");
    for (uint64 rung = 1; rung < rungs; ++rung) bytes += atomWithWideSize(16 - 16 * rungs, "free");
    return indexOf(bytes + atomWithWideSize(16, "free") + atomBlock({kEntryF0}), Atoms);
  };
  EXPECT_EQ(indexBehindLadder(1000), "F0@32016+29 ");
  EXPECT_EQ(indexBehindLadder(100'000), "");
}

TEST(EntrySizes, OfSixteenBytesOrLessAreReportedAndGoNegative) {
  const AssertionLog log;
  const Bytes block =
      atomWithSize(8 + 16, "ZRKM", atomWithSize(16, "DATA", entryBytes({streamId(0xF0), ""})));
  EXPECT_EQ(indexOf(block, Atoms), "F0@16+0 ");
  const Bytes shorter =
      atomWithSize(8 + 9, "ZRKM", atomWithSize(9, "DATA", entryBytes({streamId(0xF1), ""})));
  EXPECT_EQ(indexOf(shorter, Atoms), "F1@16+-7 ");
  Device failing(block, 8 + 8 + 23,
                 Device::Ends::Failing);  // before the whole header is read nothing is reported
  std::istream in(&failing);
  EXPECT_EQ(shown(*Parser(MetaDataParser::createForStream(in, Atoms))), "");
  const std::string report = "ZRKMMetaDataParser:87 dataAtomSize > 16\n";
  EXPECT_EQ(log.text(), report + report);
}

// Every byte begins an atom header, whose wide size is often 1; every byte is read at most twice.
TEST(AtomSizes, OfOneByteLetTheScanReadEachByteAtMostTwice) {
  Bytes bytes(1 << 20, '\0');
  for (std::size_t offset = 15; offset < bytes.size(); offset += 16) bytes[offset] = 1;
  testing_support::CountingBuffer source(bytes);
  std::istream in(&source);
  MetaDataLocations locations;
  scanAtoms(in, locations);
  EXPECT_TRUE(locations.empty());
  EXPECT_GT(source.byteCount(), bytes.size() / 2);
  EXPECT_LE(source.byteCount(), 2 * bytes.size());
}

TEST(Files, HaveTheKindOfTheirExtension) {
  struct Row {
    const char* name;
    ContainerKind kind;
  };
  for (const Row& row :
       {Row{"a.voxa", Atoms}, Row{"A.MP4", Atoms}, Row{"a.b.Mov", Atoms}, Row{"CLIP.AVI", Riff},
        Row{"clip.wav", Riff}, Row{"x.DAT", Raw}, Row{"x.mkv", None}, Row{"x", None}, Row{"", None},
        Row{".voxa", Atoms}, Row{"C:\\rec.d\\clip", None}, Row{"a.voxa/", None}, Row{"a.", None}}) {
    EXPECT_EQ(containerKindOfFileName(row.name), row.kind) << row.name;
  }
}

TEST(Files, AreIndexedUnderAnyUtf8Name) {
  const TempFolder folder;
  const std::string name = folder.file("Aufnahme \xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80.mp4",
                                       atomBlock({kEntryF1, kEntryF0}));
  const Parser parser(MetaDataParser::createForFile(name));
  EXPECT_EQ(shown(*parser), "F0@62+29 F1@16+30 ");
  EXPECT_EQ(parser->containerKind(), Atoms);
  EXPECT_EQ(parser->streamIds(), (std::list<boost::uuids::uuid>{streamId(0xF0), streamId(0xF1)}));
  EXPECT_EQ(parser->locationOf(streamId(0xF1)).offset, 16);
  EXPECT_EQ(parser->locationOf(streamId(0xF4)).size, 0);
}

TEST(Files, AreIndexedBeyondFourGibibytes) {
  const TempFolder folder;
  const std::string name = folder.file("large.mp4", atomWithWideSize(5ULL << 30U, "mdat"));
  {
    std::fstream file(std::filesystem::u8path(name),
                      std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(5LL << 30U);  // a sparse file
    file << atomBlock({kEntryF0});
  }
  const Parser parser(MetaDataParser::createForFile(name));
  EXPECT_EQ(shown(*parser), "F0@5368709136+29 ");
  std::map<boost::uuids::uuid, std::string> data;
  parser->readRawData(&data);
  EXPECT_EQ(data[streamId(0xF0)], entryBytes(kEntryF0).substr(0, 29));
}

TEST(Files, WithoutAKnownExtensionAreOpenedButNotScanned) {
  const TempFolder folder;
  const AssertionLog log;
  const Captured out(std::cout);
  const Captured errors(std::cerr);
  const std::string name = folder.file("x.mkv", atomBlock({kEntryF0}));
  const Parser parser(MetaDataParser::createForFile(name));
  EXPECT_EQ(shown(*parser), "");
  EXPECT_TRUE(parser->stream().good());
  EXPECT_EQ(log.text() + out.text() + errors.text(), "");
  EXPECT_EQ(shown(*Parser(MetaDataParser::createForFile(name, Atoms))), "F0@16+29 ");
}

TEST(Files, ThatCannotBeOpenedAreReportedAndHaveNoIndex) {
  namespace fs = std::filesystem;
  const TempFolder folder;
  fs::create_directory(fs::u8path(folder.name("folder.voxa")));
  fs::create_directory(fs::u8path(folder.name("folder.dat")));
#ifndef _WIN32
  fs::create_symlink("nowhere", folder.name("dangling.voxa"));
  fs::create_symlink("loop.voxa", folder.name("loop.voxa"));
#endif
  struct Row {
    const char* leaf;
    const char* index;
  };
  for (const Row& row :
       {Row{"absent.voxa", ""}, Row{"absent.avi", ""}, Row{"absent.dat", "--@0+-1 "},
        Row{"folder.voxa", ""}, Row{"folder.dat", "--@0+-1 "}, Row{"dangling.voxa", ""},
        Row{"loop.voxa", ""}}) {
    const AssertionLog log;
    const Parser parser(MetaDataParser::createForFile(folder.name(row.leaf)));
    EXPECT_EQ(shown(*parser), row.index) << row.leaf;
    EXPECT_EQ(log.text(), "ZRKMMetaDataParser:216 m_infile.is_open()\n") << row.leaf;
  }
}

// Not UTF-8: a stray byte, an encoded surrogate, an overlong form, a character above U+10FFFF.
constexpr const char* kInvalidNames[] = {"\xFF.voxa", "\xED\xA0\x80.voxa", "\xC0\xAF.voxa",
                                         "\xF4\x90\x80\x80.voxa"};

#ifdef _WIN32
TEST(Files, WithInvalidNamesAreNotOpenedAsTheirReplacement) {
  const TempFolder folder;
  for (const char* const replaced : {"\uFFFD.voxa", "\uFFFD\uFFFD.voxa", "\uFFFD\uFFFD\uFFFD.voxa",
                                     "\uFFFD\uFFFD\uFFFD\uFFFD.voxa"}) {
    const std::string name = folder.file(replaced, atomBlock({kEntryF0}));
    ASSERT_EQ(shown(*Parser(MetaDataParser::createForFile(name))), "F0@16+29 ");
  }
  for (const char* const leaf : kInvalidNames) {
    const AssertionLog log;
    const Parser parser(MetaDataParser::createForFile(folder.name("") + leaf));
    EXPECT_EQ(shown(*parser), "") << leaf;
    EXPECT_EQ(log.text(), "ZRKMMetaDataParser:216 m_infile.is_open()\n") << leaf;
  }
}
#else
TEST(Files, AreOpenedByTheBytesOfInvalidNames) {
  const TempFolder folder;
  for (const char* const leaf : kInvalidNames) {
    const std::string name = folder.name("") + leaf;
    std::ofstream(name, std::ios::binary) << atomBlock({kEntryF0});
    EXPECT_EQ(shown(*Parser(MetaDataParser::createForFile(name))), "F0@16+29 ") << leaf;
  }
}
#endif

TEST(Parser, RescansFromByteZero) {
  std::stringstream in(atomBlock({kEntryF0}));
  in.seekg(20);
  const Parser parser(MetaDataParser::createForStream(in, Atoms));
  EXPECT_EQ(shown(*parser), "F0@16+29 ");
  in.str(atomBlock({kEntryF1}));
  parser->scan();
  EXPECT_EQ(shown(*parser), "F1@16+30 ");
  parser->close();  // leaves the caller's stream open
  EXPECT_EQ(&parser->stream(), &in);
}

// The state and position of the stream after a scan, with and without an exception mask, and the
// index of a second scan: the same, unless the stream has failed.
TEST(Parser, LeavesItsStreamAsAScanWithoutReadAheadDoes) {
  constexpr auto kGood = std::ios::goodbit;
  constexpr auto kFail = std::ios::failbit;
  constexpr auto kEnd = std::ios::eofbit | std::ios::failbit;
  const Bytes block = atomBlock({kEntryF0});
  struct Row {
    const char* input;
    Bytes bytes;
    ContainerKind kind;
    std::ios::iostate state;
    std::streamoff position;
    const char* indexAfterwards;
  };
  const Row rows[] = {
      {"a whole block", block, Atoms, kGood, 53, "F0@16+29 "},
      {"an atom header cut off", block + "cut", Atoms, kGood, 53, "F0@16+29 "},
      {"a size of 0", block + atomWithWideSize(0, "free", block), Atoms, kGood, 69, "F0@16+29 "},
      {"a size past the end", block + atomWithSize(99, "free", ""), Atoms, kFail, -1, ""},
      {"a size that leads to before byte 0", block + atomWithWideSize(uint64{1} << 63U, "free"),
       Atoms, kFail, -1, ""},
      {"whole chunks", chunkBlock({kEntryF0}), Riff, kGood, 54, "F0@16+37 "},
      {"a raw entry", entryBytes(kEntryF0), Raw, kGood, 24, "F0@0+37 "},
      {"a raw header cut off", entryBytes(kEntryF0).substr(0, 20), Raw, kEnd, -1, "--@0+-1 "},
  };
  for (const Row& row : rows) {
    for (const auto mask : {std::ios::goodbit, kEnd | std::ios::badbit}) {
      std::istringstream in(row.bytes);
      in.exceptions(mask);
      const Parser parser(MetaDataParser::createForStream(in, row.kind));
      EXPECT_EQ(in.rdstate(), row.state) << row.input;
      EXPECT_EQ(in.good() ? std::streamoff{in.tellg()} : -1, row.position) << row.input;
      parser->scan();
      EXPECT_EQ(shown(*parser), row.indexAfterwards) << row.input;
      EXPECT_EQ(in.exceptions(), mask) << row.input;
    }
  }
}

TEST(Parser, ClosesItsFile) {
  const TempFolder folder;
  const Parser parser(MetaDataParser::createForFile(folder.file("a.voxa", atomBlock({kEntryF0}))));
  parser->close();
  EXPECT_TRUE(parser->stream().seekg(0).fail());
  parser->stream().clear();
  parser->close();  // closing twice is allowed
  EXPECT_TRUE(parser->stream().fail());
}

TEST(Documents, AreWrittenByTheWriterAndIndexedByTheParser) {
  const Bytes point = testing_support::hexDocument("points.hex").substr(24, 16);
  const Bytes text = testing_support::hexDocument("atoms.hex").substr(88);
  const Entry points{streamId(0xF0), point};
  const Entry texts{streamId(0xF9), text};
  const Entry oddTexts{streamId(0xF9), text, 2, 7};
  struct Row {
    const char* document;
    Bytes written;
    ContainerKind kind;
    const char* index;
  };
  for (const Row& row :
       {Row{"atoms.hex", atomBlock({points, oddTexts}), Atoms, "F0@16+32 F9@64+33 "},
        Row{"wide-atoms.hex", wideAtom("ZRKM", wideAtom("DATA", entryBytes(points))), Atoms,
            "F0@32+40 "},
        Row{"chunks.hex", chunkBlock({texts, points}), Riff, "F0@66+40 F9@16+41 "},
        Row{"points.hex", testing_support::hexDocument("points.hex"), Raw, "F0@0+56 "}}) {
    EXPECT_EQ(row.written, testing_support::hexDocument(row.document)) << row.document;
    EXPECT_EQ(indexOf(testing_support::hexDocument(row.document), row.kind), row.index)
        << row.document;
  }
}

TEST(RawData, BeginsWithTheEntryHeader) {
  std::istringstream in(chunkBlock({kEntryF0, kEntryF1}));
  const Parser parser(MetaDataParser::createForStream(in, Riff));
  in.setstate(std::ios::eofbit);
  std::map<boost::uuids::uuid, std::string> data{{streamId(0xF0), "replaced"}};
  parser->readRawData(&data);
  EXPECT_EQ(data[streamId(0xF0)], entryBytes(kEntryF0));
  EXPECT_EQ(data[streamId(0xF1)], entryBytes(kEntryF1));
}

TEST(RawData, IsZeroFilledPastTheEndOfTheFileUpTo64MiB) {
  constexpr uint32 kMaxMissing = 64U << 20U;
  const auto blockAnnouncing = [](uint32 size) {
    return "ZRKM" + littleEndian(size) + "DATA" + littleEndian(size) + entryBytes(kEntryF0);
  };
  std::map<boost::uuids::uuid, std::string> data;
  std::istringstream cut(blockAnnouncing(37 + kMaxMissing));
  cut.exceptions(std::ios::eofbit | std::ios::failbit);
  Parser(MetaDataParser::createForStream(cut, Riff))->readRawData(&data);
  ASSERT_EQ(data[streamId(0xF0)].size(), 37 + kMaxMissing);
  EXPECT_EQ(data[streamId(0xF0)].substr(0, 40), entryBytes(kEntryF0) + Bytes(3, '\0'));

  std::istringstream hostile(blockAnnouncing(37 + kMaxMissing + 1));
  const Parser parser(MetaDataParser::createForStream(hostile, Riff));
  EXPECT_THROW(parser->readRawData(&data), std::length_error);
}

// Two entries of 24 bytes in a file of 80 announce more than the file holds.
TEST(RawData, ExceedsTheFileByAtMost64MiBOverAllEntries) {
  constexpr uint32 kMaxExcess = 64U << 20U;
  const auto announcing = [](unsigned char key, uint32 size) {
    return atomWithSize(40, "ZRKM",
                        atomWithSize(16 + size, "DATA", entryBytes({streamId(key), ""})));
  };
  for (const bool isOver : {false, true}) {
    const uint32 rest = 80 + kMaxExcess - 1000 + (isOver ? 1 : 0);
    std::istringstream in(announcing(0xF0, 1000) + announcing(0xF1, rest));
    const Parser parser(MetaDataParser::createForStream(in, Atoms));
    std::map<boost::uuids::uuid, std::string> data;
    bool isRefused = false;
    try {
      parser->readRawData(&data);
    } catch (const std::length_error&) {
      isRefused = true;
    }
    EXPECT_EQ(isRefused, isOver);
    EXPECT_EQ(data[streamId(0xF0)].size(), 1000U);
    EXPECT_EQ(data[streamId(0xF1)].size(), isOver ? 0 : rest);
  }
}

TEST(RawData, OfAnEmptyFileIsEmpty) {
  const AssertionLog log;
  std::istringstream in;
  std::map<boost::uuids::uuid, std::string> data{{boost::uuids::uuid{}, "stale"}};
  Parser(MetaDataParser::createForStream(in, Raw))->readRawData(&data);
  EXPECT_EQ(data[boost::uuids::uuid{}], "");
  EXPECT_EQ(log.text(), "");
}

TEST(RawData, OfAMissingFileIsReported) {
  const TempFolder folder;
  const AssertionLog log;
  const Parser parser(MetaDataParser::createForFile(folder.name("absent.dat")));
  std::map<boost::uuids::uuid, std::string> data;
  parser->readRawData(&data);
  EXPECT_EQ(log.text(),
            "ZRKMMetaDataParser:216 m_infile.is_open()\n"
            "ZRKMMetaDataParser:339 (*rawDataMap)[UUID].length() == fileSize\n");
}

}  // namespace
}  // namespace ZRKMetaData
