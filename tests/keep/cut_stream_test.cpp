// Property: after any edit, a stream has at each edited time the value that it had at the original
// one.
#include "tools/keep/CutStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "loader/FrameNumber.h"
#include "tests/keep/Exact.h"
#include "tests/support/Streams.h"
#include "tools/recording/Container.h"

namespace {

using keep::Piece;
using recording::Bytes;
using series::ExactSeconds;
using testing_support::Collector;
using testing_support::Exact;
using testing_support::exact;
using testing_support::Filler;
using testing_support::RecordTypeNames;
using testing_support::RecordTypes;
using ZRKMetaData::MetaDataParser;

using Timed = std::pair<double, std::string>;

const auto kId = recording::streamId(0xF0);

// Reads an entry back through the parser.
template <class Record>
std::vector<Timed> readBack(const Bytes& entry) {
  std::istringstream file(entry);
  const std::unique_ptr<MetaDataParser> parser(
      MetaDataParser::createForStream(file, ZRKMetaData::Raw));
  Collector<Record> collector;
  ZRKMetaData::MetaDataReader<Record>().parseFile(collector, file, 0, parser->locationOf(kId).size);
  return collector.records;
}

template <class Record>
std::vector<Timed> cut(const Bytes& records, const std::vector<keep::Segment>& segments) {
  std::istringstream file(recording::atomBlock({{kId, records, 1, 77}}));
  const std::unique_ptr<MetaDataParser> parser(
      MetaDataParser::createForStream(file, ZRKMetaData::Atoms));
  keep::CutStream<Record> stream(*parser, kId, segments);
  EXPECT_FALSE(stream.damage());
  Bytes entry;
  stream.write([&entry](std::string_view bytes) { entry += bytes; });
  EXPECT_EQ(entry.size(), stream.byteCount());
  EXPECT_EQ(entry.substr(20, 4), recording::littleEndian(std::uint32_t{77})) << "reserved word";
  return readBack<Record>(entry);
}

// Of the last record at or before the time, at one time the last in the file; before the first
// time, of that one. `key` turns a time into what is compared.
template <class Key, class Time>
std::string valueAt(const std::vector<Timed>& records, const Time& time, Key key) {
  const Timed* value = nullptr;
  const Timed* first = nullptr;
  for (const Timed& record : records) {
    if (first == nullptr || !(key(first->first) < key(record.first))) first = &record;
    if (time < key(record.first)) continue;
    if (value == nullptr || !(key(record.first) < key(value->first))) value = &record;
  }
  if (value == nullptr) value = first;
  return value == nullptr ? "none" : value->second;
}

class Edits {
 public:
  explicit Edits(unsigned seed) : m_dice(seed) {}

  int below(int limit) { return static_cast<int>(m_dice() % static_cast<unsigned>(limit)); }

  /// Bounds are whole frames of `rate`, or any times where there is none.
  std::vector<Piece> pieces(const std::optional<series::FrameRate>& rate) {
    std::vector<Piece> pieces;
    ExactSeconds at = time(rate);
    for (int count = 1 + below(5); count > 0; --count) {
      const ExactSeconds from = time(rate);
      const ExactSeconds length = time(rate);
      pieces.push_back({from, series::plus(from, length), at});
      at = series::plus(at, length);
    }
    if (below(4) == 0) pieces.back().to.reset();
    return pieces;
  }

  ExactSeconds time(const std::optional<series::FrameRate>& rate) {
    if (rate) return series::parseTime(std::to_string(below(200)) + "f", rate);
    constexpr int kDenominators[] = {1, 3, 7, 30, 1000, 30000};
    const int denominator = kDenominators[below(6)];
    return {below(8 * denominator), denominator};
  }

  std::vector<double> times(bool areSorted) {
    std::vector<double> times(static_cast<std::size_t>(below(40)));
    for (double& seconds : times) {
      // Many fall on the bounds of pieces, or on one time.
      seconds = below(2) == 0 ? below(240) / 30.0 : below(8000) / 1000.0;
    }
    if (areSorted) std::sort(times.begin(), times.end());
    return times;
  }

 private:
  std::minstd_rand m_dice;
};

template <class Record>
struct Stream {
  Bytes bytes;
  std::vector<Timed> records;

  explicit Stream(const std::vector<double>& times) {
    int number = 0;
    for (const double seconds : times) {
      bytes += Filler<Record>::bytes(seconds, ++number);
      records.emplace_back(seconds, Filler<Record>::text(number));
    }
  }
};

template <class T>
class Cut : public testing::Test {};
TYPED_TEST_SUITE(Cut, RecordTypes, RecordTypeNames);

bool isIn(const Piece& piece, const Exact& time) {
  return time >= exact(piece.from) && (!piece.to || time < exact(*piece.to));
}

TYPED_TEST(Cut, MovesTheRecordsOfEachPieceWithinOneUlp) {
  Edits edits(3);
  for (int round = 0; round < 120; ++round) {
    const Stream<TypeParam> stream(edits.times(round % 2 == 0));
    const auto pieces = edits.pieces({});
    const ExactSeconds shift{edits.below(7) - 3, 3};
    const auto found = cut<TypeParam>(stream.bytes, keep::segmentsOf(pieces, shift));
    auto next = found.begin();
    for (const Piece& piece : pieces) {
      if (piece.to && exact(*piece.to) == exact(piece.from)) continue;
      const Exact start = exact(piece.at) + exact(shift);
      std::vector<Timed> kept;
      bool hasOwnStart = false;
      for (const Timed& record : stream.records) {
        if (!isIn(piece, Exact(record.first))) continue;
        kept.push_back(record);
        hasOwnStart = hasOwnStart || record.first == leastDoubleFrom(piece.from);
      }
      const bool isHeldBefore = std::any_of(
          stream.records.begin(), stream.records.end(),
          [&piece](const Timed& record) { return Exact(record.first) < exact(piece.from); });
      const bool isAnyWritten = next != found.begin();
      if (series::kIsHeld<TypeParam> && !hasOwnStart && !stream.records.empty() &&
          (isHeldBefore || isAnyWritten || kept.empty())) {
        ASSERT_NE(next, found.end());
        EXPECT_TRUE(testing_support::isWithinOneUlp(next->first, start));
        EXPECT_EQ(next->second, valueAt(stream.records, exact(piece.from),
                                        [](double seconds) { return Exact(seconds); }));
        ++next;
      }
      for (const Timed& record : kept) {
        ASSERT_NE(next, found.end());
        EXPECT_EQ(next->second, record.second);
        EXPECT_TRUE(testing_support::isWithinOneUlp(
            next->first, Exact(record.first) - exact(piece.from) + start));
        ++next;
      }
    }
    EXPECT_EQ(next, found.end()) << "nothing else is written";
  }
}

TYPED_TEST(Cut, HoldsTheValueOfTheOriginalAtEveryTime) {
  if (!series::kIsHeld<TypeParam>) return;  // keys are events: the test above has them all
  const auto key = [](double seconds) { return Exact(seconds); };
  Edits edits(5);
  for (int round = 0; round < 40; ++round) {
    const Stream<TypeParam> stream(edits.times(round % 2 == 0));
    const auto pieces = edits.pieces({});
    const auto found = cut<TypeParam>(stream.bytes, keep::segmentsOf(pieces, {}));
    // Far from where rounding could matter.
    const Exact away(1, 1'000'000);
    for (const Piece& piece : pieces) {
      std::vector<Exact> times = {exact(piece.from) + away};
      for (const Timed& record : stream.records) times.push_back(Exact(record.first) + away);
      for (const Exact& time : times) {
        if (!isIn(piece, time) || (piece.to && time + 2 * away >= exact(*piece.to))) continue;
        const Exact edited = time - exact(piece.from) + exact(piece.at);
        ASSERT_EQ(valueAt(found, edited, key), valueAt(stream.records, time, key));
      }
    }
  }
}

TYPED_TEST(Cut, LoadsTheSameFramesWhereCutsAreWholeFrames) {
  if (!series::kIsHeld<TypeParam>) return;
  Edits edits(7);
  constexpr unsigned kRates[][2] = {{25, 1}, {30000, 1001}, {60, 1}};
  for (int round = 0; round < 60; ++round) {
    const auto& [numerator, denominator] = kRates[round % 3];
    const series::FrameRate rate(numerator, denominator);
    const double perSecond = loader::framesPerSecond(rate);
    const auto key = [perSecond](double seconds) {
      return loader::frameNumber(perSecond, seconds).value();
    };
    auto times = edits.times(true);
    // Between two frames a rounding error may decide.
    times.erase(std::remove_if(times.begin(), times.end(),
                               [perSecond](double seconds) {
                                 const double frames = perSecond * seconds;
                                 return std::abs(frames - std::floor(frames) - 0.5) < 1e-6;
                               }),
                times.end());
    const Stream<TypeParam> stream(times);
    const auto pieces = edits.pieces(rate);
    const auto found = cut<TypeParam>(stream.bytes, keep::segmentsOf(pieces, {}));
    const auto frameAt = [&rate](const ExactSeconds& time) {
      return std::llround(exact(time).convert_to<double>() * rate.numerator() / rate.denominator());
    };
    for (const Piece& piece : pieces) {
      if (edits.below(3) != 0 || !piece.to) continue;
      const long long offset = frameAt(piece.at) - frameAt(piece.from);
      for (long long frame = frameAt(piece.from); frame < frameAt(*piece.to); ++frame) {
        ASSERT_EQ(valueAt(found, frame + offset, key), valueAt(stream.records, frame, key))
            << "frame " << frame << " of round " << round;
      }
    }
  }
}

// The image that each record of a stream shows: its own, or that stored last before with the
// identifier.
std::vector<std::string> shownImages(const std::vector<Timed>& records) {
  std::map<std::string, std::string> stored;
  std::vector<std::string> shown;
  for (const auto& [seconds, text] : records) {
    const std::string id = text.substr(0, text.find(':'));
    if (text != id + ":0:0:0:\"\"") stored[id] = text;
    shown.push_back(stored[id]);
  }
  return shown;
}

TEST(CutImages, AreThereForEveryReference) {
  Edits edits(11);
  std::size_t references = 0;
  for (int round = 0; round < 200; ++round) {
    Bytes records;
    const auto times = edits.times(round % 2 == 0);
    for (const double seconds : times) {
      const auto id = static_cast<std::uint64_t>(edits.below(3));
      const Bytes pixels(static_cast<std::size_t>(1 + edits.below(3)), 'p');
      records += edits.below(3) == 0 ? recording::cursorImageRecord(seconds, id, 1, 2, pixels)
                                     : recording::cursorReferenceRecord(seconds, id);
    }
    // What stands where does not depend on the images: their identifiers tell the records apart.
    const auto original =
        readBack<ZRKMetaData::CursorImage>(recording::entryBytes({kId, records, 1, 77}));
    const auto all = shownImages(original);
    const auto pieces = edits.pieces({});
    const auto found = cut<ZRKMetaData::CursorImage>(records, keep::segmentsOf(pieces, {}));
    const auto shown = shownImages(found);
    for (const Piece& piece : pieces) {
      for (std::size_t index = 0; index < original.size(); ++index) {
        if (all[index].empty() || !isIn(piece, Exact(original[index].first))) continue;
        const Exact moved = Exact(original[index].first) - exact(piece.from) + exact(piece.at);
        // Several records may have one time; each has its place in the order of the file.
        const bool isFound = std::any_of(found.begin(), found.end(), [&](const Timed& record) {
          return testing_support::isWithinOneUlp(record.first, moved) &&
                 shown[static_cast<std::size_t>(&record - found.data())] == all[index];
        });
        ASSERT_TRUE(isFound) << "round " << round << ", record " << index << ": " << all[index];
        ++references;
      }
    }
  }
  EXPECT_GT(references, 100U);
}

TEST(CutDamage, CountsRecordsThatHaveNoTime) {
  const Bytes records = recording::intRecord(1, 7) + recording::intRecord(std::nan(""), 8);
  std::istringstream file(recording::atomBlock({{kId, records}}));
  const std::unique_ptr<MetaDataParser> parser(
      MetaDataParser::createForStream(file, ZRKMetaData::Atoms));
  const auto parts = keep::segmentsOf({{{0, 1}, {{5, 1}}, {0, 1}}}, {});
  EXPECT_EQ(keep::CutStream<int>(*parser, kId, parts).leftOutCount(), 1U);
  const auto all = keep::segmentsOf({}, {1, 1});
  EXPECT_EQ(keep::CutStream<int>(*parser, kId, all).leftOutCount(), 0U);
}

TEST(CutDamage, RefusesManyPartsOfAStreamOutOfOrder) {
  Bytes records;
  for (int n = 0; n < 1000; ++n) records += recording::intRecord(n * 37 % 1000, n);
  std::vector<Piece> pieces;
  for (int n = 0; n < 100; ++n) pieces.push_back({{10 * n, 1}, {{10 * n + 9, 1}}, {10 * n, 1}});
  const auto segments = keep::segmentsOf(pieces, {});
  std::istringstream file(recording::atomBlock({{kId, records}}));
  const std::unique_ptr<MetaDataParser> parser(
      MetaDataParser::createForStream(file, ZRKMetaData::Atoms));
  EXPECT_THROW(keep::CutStream<int>(*parser, kId, segments), std::runtime_error);
}

TEST(CutDamage, KeepsTheRecordsBeforeIt) {
  const Bytes good = recording::stringRecord(1, "a") + recording::stringRecord(2, "b");
  std::istringstream file(recording::chunkBlock({{kId, good + recording::littleEndian(3U)}}));
  const std::unique_ptr<MetaDataParser> parser(
      MetaDataParser::createForStream(file, ZRKMetaData::Riff));
  const auto segments = keep::segmentsOf({{{0, 1}, {{5, 1}}, {10, 1}}}, {});
  keep::CutStream<std::string> stream(*parser, kId, segments);
  EXPECT_TRUE(stream.damage());
  Bytes entry;
  stream.write([&entry](std::string_view bytes) { entry += bytes; });
  EXPECT_EQ(readBack<std::string>(entry), (std::vector<Timed>{{11, "\"a\""}, {12, "\"b\""}}));
}

TEST(CutShift, MovesEveryRecordOfAStream) {
  const double nan = std::nan("");
  const Bytes records =
      recording::intRecord(1, 7) + recording::intRecord(nan, 8) + recording::intRecord(0.25, 9);
  const auto found = cut<int>(records, keep::segmentsOf({}, {-1, 4}));
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0], Timed(0.75, "7"));
  EXPECT_TRUE(std::isnan(found[1].first));
  EXPECT_EQ(found[2], Timed(0, "9"));
}

}  // namespace
