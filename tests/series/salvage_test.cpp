#include "tools/series/Salvage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>

#include "tools/recording/Container.h"
#include "tools/recording/Dice.h"
#include "tools/recording/Movie.h"
#include "tools/recording/Records.h"
#include "tools/recording/Sample.h"
#include "tools/series/EntrySearch.h"

namespace {

using recording::Bytes;
using recording::Entry;
using series::SalvagedStream;
using ZRKMetaData::ContainerKind;

constexpr std::size_t kHeaderBytes = 24;

std::uint32_t numberAt(const Bytes& bytes, std::size_t offset) {
  return boost::endian::load_little_u32(
      reinterpret_cast<const unsigned char*>(bytes.data() + offset));
}

// Where each record of a sample's stream ends, from the layout of its type.
std::vector<std::size_t> recordEnds(const std::string& type, const Bytes& records) {
  static const std::map<std::string, std::size_t> kSizes = {{"ints", 12},   {"doubles", 16},
                                                            {"int64s", 16}, {"keystrokes", 16},
                                                            {"points", 16}, {"rects", 24}};
  const auto fixed = kSizes.find(type);
  std::vector<std::size_t> ends = {0};
  while (ends.back() < records.size()) {
    const bool isFixed = fixed != kSizes.end();
    ends.push_back(ends.back() + (isFixed ? fixed->second : 4 + numberAt(records, ends.back())));
  }
  return ends;
}

// How a recording is laid out. `Wide` sizes have 64 bits.
enum class Form { Atoms, AtomsBeforeMedia, WideAtoms, Riff };

Bytes wideBlock(const std::vector<Entry>& entries) {
  Bytes payload;
  for (const Entry& entry : entries) {
    payload += recording::wideAtom("DATA", recording::entryBytes(entry));
  }
  return recording::wideAtom("ZRKM", payload);
}

// A recording, where its streams stand, and where the fields are that damage can be seen in.
struct Recorded {
  Bytes file;
  ContainerKind kind = ZRKMetaData::Atoms;
  std::size_t headerSize = 8;  // of the structures
  std::vector<Entry> entries;
  std::vector<std::string> types;
  std::vector<std::size_t> offsets;  // of the entry headers

  Recorded(Form form, double seconds)
      : entries(recording::sampleEntries(seconds, 3)), types(recording::sampleTypes()) {
    file = recording::sampleMovie(seconds);
    if (form == Form::WideAtoms) {
      file += wideBlock(entries);
      headerSize = 16;
    } else if (form == Form::Riff) {
      file = recording::chunk("RIFF", "media") + recording::chunkBlock(entries);
      kind = ZRKMetaData::Riff;
    } else {
      file += recording::atomBlock(entries);
    }
    if (form == Form::AtomsBeforeMedia) file += recording::atom("mdat", Bytes(500, 'm'));
    for (const Entry& entry : entries) {
      offsets.push_back(file.find(Bytes(entry.id.begin(), entry.id.end())));
    }
  }

  std::size_t blockStart() const { return offsets.front() - 2 * headerSize; }

  std::vector<std::size_t> damageableBytes() const {
    std::vector<std::size_t> bytes;
    const auto add = [&bytes](std::size_t from, std::size_t count) {
      for (std::size_t n = 0; n < count; ++n) bytes.push_back(from + n);
    };
    add(blockStart(), headerSize);
    for (std::size_t index = 0; index < entries.size(); ++index) {
      add(offsets[index] - headerSize, headerSize + 16 + 4);  // size, type, identifier, version
      const bool isText = types[index] == "strings";
      if (!isText && types[index] != "cursor-images") continue;
      for (const std::size_t record : recordEnds(types[index], entries[index].records)) {
        if (record == entries[index].records.size()) break;
        add(offsets[index] + kHeaderBytes + record, 4);
        if (!isText) add(offsets[index] + kHeaderBytes + record + 20, 4);
      }
    }
    return bytes;
  }
};

std::vector<SalvagedStream> salvaged(const Bytes& file, ContainerKind kind) {
  std::istringstream stream(file);
  auto streams = series::salvageStreams(stream, kind);
  std::int64_t end = 0;
  for (const SalvagedStream& each : streams) {
    EXPECT_GE(each.offset, end) << "ranges overlap";
    end = each.offset + each.size;
  }
  EXPECT_LE(end, static_cast<std::int64_t>(file.size()));
  return streams;
}

Bytes bytesOf(const Bytes& file, const SalvagedStream& stream) {
  return file.substr(static_cast<std::size_t>(stream.offset),
                     static_cast<std::size_t>(stream.size));
}

std::size_t certainCount(const std::vector<SalvagedStream>& streams) {
  return static_cast<std::size_t>(
      std::count_if(streams.begin(), streams.end(), std::mem_fn(&SalvagedStream::isCertain)));
}

class SalvageOf : public testing::TestWithParam<Form> {};
std::string nameOf(Form form) {
  static constexpr const char* kNames[] = {"Atoms", "AtomsBeforeMedia", "WideAtoms", "Riff"};
  return kNames[static_cast<std::size_t>(form)];
}

INSTANTIATE_TEST_SUITE_P(Forms, SalvageOf,
                         testing::Values(Form::Atoms, Form::AtomsBeforeMedia, Form::WideAtoms,
                                         Form::Riff),
                         [](const auto& form) { return nameOf(form.param); });

TEST_P(SalvageOf, AWholeRecordingIsCertain) {
  const Recorded recorded(GetParam(), 3);
  const auto streams = salvaged(recorded.file, recorded.kind);
  ASSERT_EQ(streams.size(), recorded.entries.size());
  for (std::size_t index = 0; index < streams.size(); ++index) {
    EXPECT_EQ(streams[index].reason, "") << recorded.types[index];
    EXPECT_FALSE(streams[index].isCut);
    EXPECT_EQ(streams[index].recordCount,
              recordEnds(recorded.types[index], recorded.entries[index].records).size() - 1);
    EXPECT_EQ(bytesOf(recorded.file, streams[index]),
              recording::entryBytes(recorded.entries[index]));
  }
}

TEST_P(SalvageOf, ACutRecordingHasEveryRecordBeforeTheCutAndNoOther) {
  constexpr int kCuts = 1000;
  const Recorded recorded(GetParam(), 3);
  recording::Dice dice(1);
  std::size_t doubtful = 0;
  for (int n = 0; n < kCuts; ++n) {
    const auto cut = recorded.blockStart() + static_cast<std::size_t>(dice.below(static_cast<int>(
                                                 recorded.file.size() - recorded.blockStart())));
    const Bytes file = recorded.file.substr(0, cut);
    const auto streams = salvaged(file, recorded.kind);
    std::size_t expected = 0;
    for (; expected < recorded.entries.size() && recorded.offsets[expected] + kHeaderBytes <= cut;
         ++expected) {
      ASSERT_LT(expected, streams.size()) << cut;
      const SalvagedStream& stream = streams[expected];
      const auto ends = recordEnds(recorded.types[expected], recorded.entries[expected].records);
      const std::size_t room = cut - recorded.offsets[expected] - kHeaderBytes;
      const std::size_t whole = *(std::upper_bound(ends.begin(), ends.end(), room) - 1);
      const Bytes bytes = bytesOf(file, stream);
      ASSERT_EQ(stream.offset, recorded.offsets[expected]);
      ASSERT_GE(bytes.size(), kHeaderBytes + whole) << cut << ' ' << stream.reason;
      if (stream.isCertain()) {
        ASSERT_EQ(bytes.size(), kHeaderBytes + whole) << cut << ' ' << recorded.types[expected];
        ASSERT_TRUE(room >= ends.back() || stream.isCut) << cut;
      }
    }
    EXPECT_EQ(streams.size(), expected) << cut;
    doubtful += streams.size() - certainCount(streams);
  }
  std::printf("%d cuts: %zu streams are doubtful\n", kCuts, doubtful);
  EXPECT_LE(doubtful, static_cast<std::size_t>(kCuts) / 20);
}

TEST_P(SalvageOf, ADamagedFieldNeverMakesACertainRecord) {
  const Recorded recorded(GetParam(), 1);
  std::size_t flips = 0;
  std::size_t unseen = 0;
  std::size_t lostCertain = 0;
  for (const std::size_t byte : recorded.damageableBytes()) {
    for (int bit = 0; bit < 8; ++bit) {
      Bytes file = recorded.file;
      file[byte] = static_cast<char>(file[byte] ^ (1 << bit));
      const auto streams = salvaged(file, recorded.kind);
      ++flips;
      lostCertain +=
          recorded.entries.size() - std::min(recorded.entries.size(), certainCount(streams));
      for (const SalvagedStream& stream : streams) {
        if (!stream.isCertain()) continue;
        const auto entry =
            std::find_if(recorded.entries.begin(), recorded.entries.end(),
                         [&](const Entry& each) { return each.id == stream.header.uuid; });
        if (entry == recorded.entries.end()) {
          // An identifier that became another registered one, which the recording does not have.
          ASSERT_GE(byte, static_cast<std::size_t>(stream.offset));
          ASSERT_LT(byte, static_cast<std::size_t>(stream.offset) + 16);
          ++unseen;
          continue;
        }
        ASSERT_EQ(bytesOf(file, stream), recording::entryBytes(*entry))
            << "byte " << byte << " bit " << bit;
      }
    }
  }
  std::printf("%zu flips: %zu of identifiers are not seen; %zu streams are not certain\n", flips,
              unseen, lostCertain);
  EXPECT_EQ(unseen, 8U) << "of identifiers that differ from another registered one in a bit";
  EXPECT_LE(4 * lostCertain, 5 * flips) << "damage spreads to other streams";
}

Entry pointsEntry(unsigned char key, std::int32_t version = 1) {
  return {recording::streamId(key), recording::sampleEntry("points", 1, 1).records, version};
}

Bytes withFirstByteOfId(Bytes file, char byte) {
  file[file.find("DATA") + 4] = byte;
  return file;
}

struct DoubtCase {
  const char* name;
  Bytes file;
  std::vector<std::string> doubts;
};

TEST(Salvage, SaysWhyAStreamIsDoubtful) {
  const Bytes block = recording::atomBlock({pointsEntry(0xF0)});
  const Entry texts{recording::streamId(0xF9), recording::stringRecord(0, "a text of some length") +
                                                   recording::stringRecord(1, block) +
                                                   recording::stringRecord(2, "the last text")};
  const DoubtCase cases[] = {
      {"a whole block", block, {""}},
      {"wide atoms", wideBlock({pointsEntry(0xF0)}), {""}},
      {"a block behind a damaged atom", Bytes("\0\0\0\4abcd", 8) + block, {""}},
      {"in free space",
       recording::atom("free", block),
       {"it is inside another structure than a metadata block"}},
      {"a block in media",
       recording::atom("mdat", "media" + block) + recording::atom("free", ""),
       {"it is inside another structure than a metadata block"}},
      {"a block in large media",
       recording::atom("mdat", block + Bytes(1 << 16, 'm')) + recording::atom("free", ""),
       {}},
      {"a block behind large media", recording::atom("mdat", Bytes(3 << 20, 'm')) + block, {""}},
      {"a block behind large media that are damaged",
       Bytes("\0\x4\0\0mdat", 8) + Bytes(3 << 20, 'm') + block,
       {""}},
      {"a block that a later one replaces",
       block + recording::atomBlock({pointsEntry(0xF1), pointsEntry(0xF0)}),
       {"a later block has the streams of its block", "", ""}},
      {"a block that a later one replaces in part",
       recording::atomBlock({pointsEntry(0xF1), pointsEntry(0xF0)}) + block,
       {"", "another entry has the same identifier", "another entry has the same identifier"}},
      {"a whole block before one in free space",
       block + recording::atom("free", block),
       {"", "it is inside another structure than a metadata block"}},
      {"a refused version",
       recording::atomBlock({pointsEntry(0xF0, 2)}),
       {"its version is 2, not 1"}},
      {"an unregistered identifier",
       withFirstByteOfId(block, 'x'),
       {"its identifier is not registered"}},
      {"a text that holds a recording",
       recording::atomBlock({texts, pointsEntry(0xF1)}),
       {"another entry header is inside it", "it is inside another entry", ""}},
      {"without its beginning",
       block.substr(8),
       {"it is inside another structure than a metadata block"}},
      {"entries behind a damaged block",
       Bytes("\0\0\0\4ZRKL", 8) +
           recording::atomBlock({pointsEntry(0xF0), pointsEntry(0xF1)}).substr(8),
       {"neither a block nor the entry before leads to it", "its size leads to no structure"}},
      {"chance",
       recording::atomBlock({{recording::streamId(0xF0), Bytes(160, 'x')}}),
       {"its records are of no type that is known"}},
      {"no recording", Bytes(1000, 'D'), {}},
  };
  for (const DoubtCase& each : cases) {
    std::vector<std::string> doubts;
    for (const SalvagedStream& stream : salvaged(each.file, ZRKMetaData::Atoms))
      doubts.push_back(stream.reason);
    EXPECT_EQ(doubts, each.doubts) << each.name;
  }
}

TEST(Salvage, PrefersOneOfTheDoubtfulEntriesWithAnIdentifier) {
  using series::SalvageState;
  const Bytes twice = recording::atomBlock({pointsEntry(0xF0), pointsEntry(0xF0)});
  const Bytes refused = recording::atomBlock({pointsEntry(0xF0, 2)});
  const std::pair<Bytes, std::vector<SalvageState>> cases[] = {
      {twice, {SalvageState::Superseded, SalvageState::Doubtful}},
      {refused + recording::atom("free", refused),
       {SalvageState::Doubtful, SalvageState::Superseded}},
      {recording::atom("free", refused) + refused,
       {SalvageState::Superseded, SalvageState::Doubtful}},
  };
  for (const auto& [file, expected] : cases) {
    std::vector<SalvageState> states;
    for (const SalvagedStream& stream : salvaged(file, ZRKMetaData::Atoms))
      states.push_back(stream.state);
    EXPECT_EQ(states, expected);
  }
}

TEST(Salvage, ReadsARawFileUpToItsLastWholeRecord) {
  constexpr std::size_t kRecordBytes = 16;
  const Bytes file = recording::entryBytes(pointsEntry(0xF0));
  for (std::size_t cut = 0; cut < kRecordBytes; ++cut) {
    const auto streams = salvaged(file.substr(0, file.size() - cut), ZRKMetaData::Raw);
    ASSERT_EQ(streams.size(), 1U);
    EXPECT_EQ(streams[0].reason, "");
    EXPECT_EQ(bytesOf(file, streams[0]).size(), file.size() - (cut == 0 ? 0 : kRecordBytes));
    EXPECT_EQ(streams[0].isCut, cut != 0);
  }
  EXPECT_TRUE(salvaged(file.substr(0, kHeaderBytes - 1), ZRKMetaData::Raw).empty());
}

TEST(Salvage, RefusesAFileOfHeaders) {
  const Bytes entry =
      recording::atom("DATA", recording::entryBytes({recording::streamId(0xF0), ""}));
  Bytes entries;
  for (std::size_t count = 0; count <= series::kMaxFoundEntries; ++count) entries += entry;
  std::istringstream file(recording::atom("ZRKM", entries));
  EXPECT_THROW(series::findEntries(file, ZRKMetaData::Atoms), std::runtime_error);
}

}  // namespace
