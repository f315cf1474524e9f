#include "tools/series/Guess.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>

#include "tests/series/Generators.h"
#include "tools/recording/Container.h"

namespace {

using namespace series_tests;
using recording::Entry;
using series::Guess;

enum Wrapping { OrdinaryAtom, WideAtom, Chunk, RawFile };

// Calls `function` with a stream in a recording of its own and between others.
template <class Function>
auto withStream(const Bytes& records, int wrapping, std::size_t cutBytes, Function function) {
  const Entry entry{recording::streamId(0xF0), records};
  const Entry neighbour{recording::streamId(0xF1), "neighbour"};
  Bytes file;
  auto kind = ZRKMetaData::Atoms;
  if (wrapping == OrdinaryAtom) {
    file = recording::atom("mdat", "media") + recording::atomBlock({entry, neighbour});
  } else if (wrapping == WideAtom) {
    file = recording::atom("ZRKM", recording::wideAtom("DATA", recording::entryBytes(entry)));
  } else if (wrapping == Chunk) {
    kind = ZRKMetaData::Riff;
    file = recording::chunkBlock({entry, neighbour});
  } else {
    kind = ZRKMetaData::Raw;
    file = recording::entryBytes(entry);
  }
  std::istringstream stream(file.substr(0, file.size() - cutBytes));
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForStream(stream, kind));
  return function(*parser, entry.id);
}

Guess guessOf(const Bytes& records, int wrapping = OrdinaryAtom, std::size_t cutBytes = 0) {
  return withStream(records, wrapping, cutBytes, [](auto& parser, const auto& id) {
    return series::guessRecordType(parser, id);
  });
}

series::PossibleTypes possibleTypesOf(const Bytes& records) {
  return withStream(records, OrdinaryAtom, 0, [](auto& parser, const auto& id) {
    return series::possibleRecordTypes(parser, id);
  });
}

std::string nameOf(const series::GuessCandidate& candidate) {
  return series::infoOf(candidate.type).name;
}

std::string recordSizeOf(const std::string& type) {
  const auto bytes = series::infoOf(*series::recordTypeNamed(type)).byteCount;
  return bytes == 0 ? type : std::to_string(bytes);
}

int countBetween(Random& random, int low, int high) {
  return int(std::exp(random.between(std::log(low), std::log(high + 1))));
}

struct Tally {
  int streams = 0, ofSize = 0, longer = 0, first = 0, firstTwo = 0, certain = 0, certainWrong = 0,
      unknown = 0;
  std::map<std::string, std::array<int, 5>>
      perGenerator;  // streams, first, first two, certain, wrong

  void add(const Generator& truth, int count, const Guess& guess) {
    const std::string likeliest = nameOf(guess.candidates[0]);
    const bool isFirst = likeliest == truth.type;
    const bool isFirstTwo = isFirst || nameOf(guess.candidates[1]) == truth.type;
    ++streams;
    ofSize += recordSizeOf(likeliest) == recordSizeOf(truth.type);
    unknown += guess.isUnknown;
    certain += guess.isCertain;
    certainWrong += guess.isCertain && !isFirst;
    auto& row = perGenerator[std::string(truth.type) + ": " + truth.what];
    row[3] += guess.isCertain;
    row[4] += guess.isCertain && !isFirst;
    ++row[0];
    row[1] += isFirst;
    row[2] += isFirstTwo;
    if (count < 30) return;
    ++longer;
    first += isFirst;
    firstTwo += isFirstTwo;
  }

  void print(unsigned seed) const {
    std::printf(
        "seed %u: %d streams, record size right %d, unknown %d, certain %d, wrongly %d; "
        "from 30 records: %d, first %d, first two %d\n",
        seed, streams, ofSize, unknown, certain, certainWrong, longer, first, firstTwo);
    if (std::getenv("SERIES_GUESS_DETAILS") == nullptr) return;
    for (const auto& [name, row] : perGenerator) {
      std::printf("  %-44s %5d first %5d two %5d certain %5d wrong %d\n", name.c_str(), row[0],
                  row[1], row[2], row[3], row[4]);
    }
  }
};

Tally measure(unsigned seed, int streams) {
  Random random(seed);
  Tally tally;
  std::vector<std::vector<Generator>> byType(series::kRecordTypeCount);
  for (const Generator& generator : generators()) {
    byType[std::size_t(*series::recordTypeNamed(generator.type))].push_back(generator);
  }
  for (int index = 0; index < streams; ++index) {
    const Generator generator = random.oneOf(random.oneOf(byType));
    const int count = countBetween(random, 3, 3000);
    const Bytes records = generator.bytes(random, count);
    tally.add(generator, count, guessOf(records, index % 4));
  }
  return tally;
}

struct StreamSet {
  const char* name;
  unsigned seed;
};

class MeasuredGuess : public testing::TestWithParam<StreamSet> {};

TEST_P(MeasuredGuess, MeetsItsRatesOnTenThousandStreams) {
  const Tally tally = measure(GetParam().seed, 10000);
  tally.print(GetParam().seed);
  EXPECT_GE(tally.ofSize, 0.999 * tally.streams);
  EXPECT_GE(tally.firstTwo, 0.99 * tally.longer);
  EXPECT_GE(tally.first, 0.90 * tally.longer);
  EXPECT_LE(tally.certainWrong, 0.001 * tally.certain);
  EXPECT_GE(tally.certain, tally.streams / 2) << "a guess that is never certain is of no use";
}

INSTANTIATE_TEST_SUITE_P(Streams, MeasuredGuess,
                         testing::Values(StreamSet{"ThatTunedTheModels", 1},
                                         StreamSet{"Unseen", 20261},
                                         StreamSet{"UnseenOfAnotherSeed", 90210}),
                         [](const auto& set) { return std::string(set.param.name); });

// Typed text repeats few values, so that its lead over other types hardly grows.
TEST(Guess, OfTypedTextThatIsCertainOnceStaysSo) {
  for (const Generator& generator : generators()) {
    if (std::string(generator.what) != "prose with shift") continue;
    for (const unsigned seed : {1U, 2U, 3U}) {
      Random random(seed);
      const Bytes records = generator.bytes(random, 1 << 14);
      int certainCount = 0;
      for (std::size_t count = 32; count <= 1 << 14; count *= 2) {
        const Guess guess = guessOf(records.substr(0, count * 16), 0);
        if (guess.isCertain) ++certainCount;
        if (certainCount > 0) {
          EXPECT_TRUE(guess.isCertain) << seed << ", " << count << " keys";
          EXPECT_EQ(nameOf(guess.candidates[0]), "keystrokes");
        }
      }
      EXPECT_GT(certainCount, 5);
    }
  }
}

Bytes randomBytes(Random& random, int size) {
  Bytes bytes;
  while (int(bytes.size()) < size) bytes += recording::littleEndian(random.bits());
  bytes.resize(std::size_t(size));
  return bytes;
}

TEST(Guess, RandomBytesAreUnknown) {
  Random random(3);
  int unknown = 0;
  constexpr int kStreams = 2000;
  static constexpr int kSizes[] = {12, 16, 24, 48, 1};
  for (int index = 0; index < kStreams; ++index) {
    const int size = random.oneOf(kSizes) * countBetween(random, 3, 3000);
    unknown += guessOf(randomBytes(random, size), index % 4).isUnknown;
  }
  std::printf("random bytes: %d of %d unknown\n", unknown, kStreams);
  EXPECT_GE(unknown, 0.99 * kStreams);
}

Bytes zeros(int count) {
  Bytes bytes;
  for (int index = 0; index < count; ++index) bytes += recording::doubleRecord(index + 1, 0);
  return bytes;
}

TEST(Guess, ZerosAreATieAndNoRecordsAreEmpty) {
  const Guess tie = guessOf(zeros(20));
  EXPECT_GE(tie.tieCount, 2U);
  EXPECT_FALSE(tie.isCertain || tie.isUnknown);
  const Guess empty = guessOf("");
  EXPECT_TRUE(empty.isEmpty);
  EXPECT_FALSE(empty.isCertain || empty.isUnknown);
}

TEST(Guess, ACutFileStillShowsItsType) {
  Random random(5);
  const Bytes points = walk(random, 500, 0, 0, 1919, 1079, 1);
  EXPECT_EQ(guessOf(points, WideAtom, 5).certainType(), series::recordTypeNamed("points"));
}

// Beyond the 256 KiB that are read at the front.
TEST(Guess, ReadsTheEndOfALongStream) {
  Random random(6);
  Bytes points = walk(random, 40000, 0, 0, 1919, 1079, 1);
  EXPECT_EQ(guessOf(points).certainType(), series::recordTypeNamed("points"));
  const Bytes early = recording::pointRecord(0, 1, 1);
  EXPECT_TRUE(guessOf(points + early).isUnknown) << "the last time falls";
}

// Text must not be overlooked because of a time or of how little there is.
TEST(Guess, TypesThatArePossibleMayHaveAnyTimes) {
  const auto typed = [](const std::vector<double>& times) {
    Bytes bytes;
    for (const double seconds : times) {
      for (const char key : std::string("dam@acme.org")) {
        bytes += recording::keystrokeRecord(seconds, key, 0);
      }
    }
    return bytes;
  };
  Random random(7);
  const struct {
    Bytes records;
    std::string first;
    bool isExplained, isOnlyType;
  } cases[] = {
      {typed({5, 4, 3}), "keystrokes", true, false},
      {typed({1, NAN, 1e300, -INFINITY, 2}), "keystrokes", true, false},
      {recording::keystrokeRecord(1.1, 'a', 0), "keystrokes", true, false},
      {recording::stringRecord(2, "Notes, drafts") + recording::stringRecord(1, "Terminal"),
       "strings", true, true},
      {walk(random, 500, 0, 0, 1919, 1079, 1) + recording::pointRecord(0, 7, 7), "points", true,
       true},
      {randomBytes(random, 16 * 400), "int64s", false, true},
      {randomBytes(random, 99), "", false, false},
      {"", "", false, false},
  };
  for (const auto& row : cases) {
    const auto possible = possibleTypesOf(row.records);
    const auto& types = possible.types;
    EXPECT_EQ(types.empty() ? "" : series::infoOf(types.front()).name, row.first);
    EXPECT_EQ(possible.isExplained, row.isExplained) << row.first;
    EXPECT_EQ(types.size() == 1, row.isOnlyType) << row.first;
  }
}

}  // namespace
