// The table of record types, reading, and time ranges.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numeric>
#include <sstream>
#include <thread>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tests/support/Captured.h"
#include "tests/support/Streams.h"
#include "text/Counted.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"
#include "tools/series/RecordStream.h"
#include "tools/series/Summary.h"

namespace {

using namespace testing_support;
using series::TimeRange;

const auto kId = recording::streamId(0xF0);

struct Opened {
  explicit Opened(const recording::Bytes& records)
      : stream(recording::entryBytes({kId, records})),
        parser(ZRKMetaData::MetaDataParser::createForStream(stream, ZRKMetaData::Raw)) {}
  std::istringstream stream;
  std::unique_ptr<ZRKMetaData::MetaDataParser> parser;
};

// What an output format sees of a record.
struct FieldNames {
  template <class Value>
  void field(const char* name, const Value&) {
    names.emplace_back(name);
  }
  template <class Numbers>
  void numbers(const char*, const char* const (&columns)[4], const Numbers&) {
    names.insert(names.end(), columns, columns + 4);
  }
  void image(const char* name, const ZRKMetaData::CursorImage&) { names.emplace_back(name); }
  std::vector<std::string> names;
};

template <class T>
class Reading : public testing::Test {};
TYPED_TEST_SUITE(Reading, RecordTypes, RecordTypeNames);

TYPED_TEST(Reading, DeliversTheRangeAndNamesTheFieldsOfTheTable) {
  const auto type = series::recordTypeOf<TypeParam>();
  const auto& info = series::infoOf(type);
  EXPECT_EQ(series::recordTypeNamed(info.name), type);
  Opened opened(filledRecords<TypeParam>(9));
  std::vector<std::pair<double, std::string>> records;
  FieldNames row;
  series::forEachRecord<TypeParam>(*opened.parser, kId, TimeRange::between(3, 6),
                                   [&](double seconds, const TypeParam& record) {
                                     records.emplace_back(seconds, shown(record));
                                     row.names.clear();
                                     series::describeTimed(row, seconds, record);
                                   });
  const auto all = filledTexts<TypeParam>(9);
  EXPECT_EQ(records, decltype(records)(all.begin() + 2, all.begin() + 5));
  std::vector<std::string> names = {"time"};
  for (const series::Field& field : info) names.emplace_back(field.name);
  EXPECT_EQ(row.names, names);
}

TYPED_TEST(Reading, ReportsTheByteOfTheRecordThatIsDamaged) {
  const auto whole = filledRecords<TypeParam>(3);
  Opened opened(whole + "abc");  // too few for any leading field
  int count = 0;
  try {
    series::forEachRecord(*opened.parser, kId, series::recordTypeOf<TypeParam>(), TimeRange(),
                          [&](double, const auto&) { ++count; });
    FAIL() << "no error";
  } catch (const series::DamagedStream& error) {
    EXPECT_EQ(error.byteOffset(), 24 + static_cast<long long>(whole.size()));
    EXPECT_EQ(error.message("a.dat"), "a.dat: stream 2b7b6af0-7a1f-11e2-83d0-0017f200be7f: byte " +
                                          std::to_string(24 + whole.size()) +
                                          ": invalid meta data entry");
  }
  EXPECT_EQ(count, 3);
}

// The reader fills a record that is cut up with zeros.
TYPED_TEST(Reading, EndsBeforeARecordThatTheFileEndsInsideOf) {
  const auto whole = filledRecords<TypeParam>(3);
  const auto all = recording::atomBlock({{kId, whole}});
  const std::size_t lastBytes = Filler<TypeParam>::bytes(3, 3).size();
  for (std::size_t missing = 0; missing <= lastBytes; ++missing) {
    std::istringstream file(all.substr(0, all.size() - missing));
    const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
        ZRKMetaData::MetaDataParser::createForStream(file, ZRKMetaData::Atoms));
    std::vector<std::pair<double, std::string>> records;
    std::string reason;
    try {
      series::forEachRecord<TypeParam>(*parser, kId, TimeRange(),
                                       [&](double seconds, const TypeParam& record) {
                                         records.emplace_back(seconds, shown(record));
                                       });
    } catch (const series::DamagedStream& error) {
      EXPECT_EQ(error.byteOffset(), static_cast<long long>(all.size() - lastBytes)) << missing;
      reason = error.reason();
    }
    EXPECT_EQ(records, filledTexts<TypeParam>(missing == 0 ? 3 : 2)) << missing;
    const std::string there = text::counted(lastBytes - missing, "byte");
    if (missing == 0) {
      EXPECT_EQ(reason, "");
    } else if (missing == lastBytes) {
      EXPECT_EQ(reason,
                "the file ends " + std::to_string(missing) + " bytes before the stream does");
    } else if (reason != "invalid meta data entry") {  // of the reader, inside the first field
      // The size is not known where its own bytes are cut.
      EXPECT_EQ(reason.rfind("the file ends " + there + " into a record of ", 0), 0U) << reason;
    } else {
      EXPECT_LT(lastBytes - missing, 8U);
    }
    int count = 0;
    series::forEachRecord<TypeParam>(*parser, kId, TimeRange(),
                                     [&](double, const TypeParam&) { return ++count < 2; });
    EXPECT_EQ(count, 2) << "a visitor that has enough learns of no damage";
  }
}

TEST(ReadingOfOneStream, OfARefusedVersionIsNotDamagedWhereTheFileEnds) {
  const auto all = recording::atomBlock({{kId, filledRecords<int>(3), 9}});
  std::istringstream file(all.substr(0, all.size() - 12));
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForStream(file, ZRKMetaData::Atoms));
  const Captured quiet(std::cout);
  EXPECT_NO_THROW(series::forEachRecord<int>(*parser, kId, TimeRange(), [](double, int) {}));
}

TEST(ReadingOfOneStream, KnowsWhichVersionsAreRefused) {
  const auto unregistered = recording::streamId(0x10);
  const struct {
    boost::uuids::uuid id;
    std::int32_t version;
    bool isRefused;
  } cases[] = {{kId, 1, false}, {kId, 0, true},          {kId, 9, true},
               {kId, -1, true}, {unregistered, 1, true}, {unregistered, -1, false}};
  for (const auto& row : cases) {
    std::istringstream stream(recording::entryBytes({row.id, filledRecords<int>(3), row.version}));
    const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
        ZRKMetaData::MetaDataParser::createForStream(stream, ZRKMetaData::Raw));
    const auto refused = series::refusedVersion(*parser, row.id);
    EXPECT_EQ(refused, row.isRefused ? std::optional(row.version) : std::nullopt);
    int count = 0;
    series::forEachRecord<int>(*parser, row.id, TimeRange(), [&](double, int) { ++count; });
    EXPECT_EQ(count == 0, row.isRefused) << row.version;
    EXPECT_EQ(series::refusedVersion(*parser, recording::streamId(0xF9)), std::nullopt);
  }
}

TEST(ReadingOfOneStream, StopsWhenTheVisitorSaysSoAndPassesOnWhatItThrows) {
  Opened opened(filledRecords<int>(9));
  int count = 0;
  series::forEachRecord<int>(*opened.parser, kId, TimeRange(),
                             [&](double, int) { return ++count < 4; });
  EXPECT_EQ(count, 4);
  EXPECT_THROW(series::forEachRecord<int>(*opened.parser, kId, TimeRange(),
                                          [](double, int) { throw std::out_of_range("mine"); }),
               std::out_of_range);
}

class ByteCounter final : public series::ReadListener {
 public:
  ByteCounter() : m_before(series::setReadListener(this)) {}
  ~ByteCounter() { series::setReadListener(m_before); }
  ByteCounter(const ByteCounter&) = delete;
  ByteCounter& operator=(const ByteCounter&) = delete;

  void onBytesRead(ZRKMetaData::int64 byteCount) noexcept override {
    bytes += byteCount;
    greatest = std::max(greatest, byteCount);
  }

  ZRKMetaData::int64 bytes = 0;
  ZRKMetaData::int64 greatest = 0;

 private:
  series::ReadListener* const m_before;
};

TEST(ReadListener, LearnsOfEveryByteThatWasRead) {
  constexpr int kCount = 200'000;  // 3.2 MB
  recording::Bytes records;
  for (int i = 0; i < kCount; ++i) records += recording::pointRecord(i, 1, 2);
  Opened opened(records + "damage");
  const auto read = [&opened](const TimeRange& range, int limit) {
    ByteCounter counter;
    int count = 0;
    try {
      series::forEachRecord<ZRKMetaData::Point>(
          *opened.parser, kId, range,
          [&](double, const ZRKMetaData::Point&) { return ++count < limit; });
    } catch (const series::DamagedStream&) {  // at the end
    }
    EXPECT_LT(counter.greatest, series::kReportedBytes + 16);
    return counter.bytes;
  };
  EXPECT_EQ(read({}, 2 * kCount), 16 * kCount);
  EXPECT_EQ(read(TimeRange::between(10, 20), kCount), 16 * kCount) << "of any time";
  EXPECT_EQ(read({}, 3), 48);

  const ByteCounter outer;
  EXPECT_EQ(read({}, 3), 48);
  EXPECT_EQ(outer.bytes, 0) << "the innermost listener alone";
  std::thread([&] {
    Opened other(records);
    series::forEachRecord<ZRKMetaData::Point>(*other.parser, kId, {},
                                              [](double, const ZRKMetaData::Point&) {});
  }).join();
  EXPECT_EQ(outer.bytes, 0) << "another thread has its own";
}

TEST(TimeText, IsExact) {
  const struct {
    const char* text;
    long long numerator, denominator;
  } cases[] = {{"12.5", 25, 2},
               {"12.5s", 25, 2},
               {"-0.1", -1, 10},
               {"01:02:03.004", 930751, 250},
               {"1:30", 90, 1},
               {"100:00:00", 360000, 1},
               {"1001/30", 1001, 30},
               {"75f", 5005, 2000},
               {"9223372036854775807", INT64_MAX, 1}};
  for (const auto& row : cases) {
    const auto time = series::parseTime(row.text, series::FrameRate(30000, 1001));
    EXPECT_EQ(time.numerator * (row.denominator / std::gcd(row.numerator, row.denominator)),
              row.numerator / std::gcd(row.numerator, row.denominator) * time.denominator)
        << row.text;
  }
  for (const char* const text :
       {"", "-", "s", "f", "1.", ".5", "1e3", "--1", "1/0", "1/", "1:60", "1:60:00", "0x10", "nan",
        "9223372036854775808", " 1", "1.0000000000000000001"}) {
    EXPECT_THROW(series::parseTime(text, series::FrameRate(25)), std::invalid_argument) << text;
  }
  EXPECT_THROW(series::parseTime("75f", {}), std::invalid_argument);
}

TEST(TimeRange, ComparesDoublesWithFractionsExactly) {
  // The double 0.1 is above 1/10, the double 0.3 is below 3/10.
  const TimeRange range(series::ExactSeconds{1, 10}, series::ExactSeconds{3, 10});
  EXPECT_TRUE(range.contains(0.1));
  EXPECT_FALSE(range.contains(std::nextafter(0.1, 0)));
  EXPECT_TRUE(range.contains(0.3));
  EXPECT_FALSE(range.contains(std::nextafter(0.3, 1)));
  EXPECT_FALSE(range.contains(NAN));
  EXPECT_TRUE(TimeRange().contains(NAN));
  EXPECT_EQ(series::leastDoubleFrom({INT64_MAX, 1}), 0x1p63);
  EXPECT_EQ(series::leastDoubleFrom({-INT64_MAX, 1}), -0x1.fffffffffffffp62);
  EXPECT_EQ(series::leastDoubleFrom({1, INT64_MAX}), std::nextafter(0x1p-63, 1));
  EXPECT_THROW(TimeRange(series::ExactSeconds{1, 1}, series::ExactSeconds{1, 2}),
               std::invalid_argument);
}

TEST(Summary, CoversTheStreamsAndTimesOfItsScope) {
  const auto other = recording::streamId(0xF2);
  std::istringstream stream(recording::atomBlock(
      {{kId, filledRecords<ZRKMetaData::Point>(9)}, {other, filledRecords<double>(4)}}));
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForStream(stream, ZRKMetaData::Atoms));
  const series::NamedTypes types = {{kId, series::recordTypeOf<ZRKMetaData::Point>()},
                                    {other, series::recordTypeOf<double>()}};
  const auto counts = [&](const series::SummaryScope& scope) {
    std::vector<std::pair<std::string, std::uint64_t>> result;
    for (const auto& each : series::summariseStreams(*parser, "take.voxa", scope).streams) {
      result.emplace_back(each.key, each.recordCount);
    }
    return result;
  };
  using Counts = decltype(counts({}));
  EXPECT_EQ(counts({{}, {}, types}), Counts());
  EXPECT_EQ(counts({{other, kId}, {}, types}), (Counts{{"F2", 4}, {"F0", 9}}));
  EXPECT_EQ(counts({{kId}, TimeRange::between(3, 6), types}), (Counts{{"F0", 3}}));
  const auto summary =
      series::summariseStreams(*parser, "take.voxa", {{kId}, TimeRange::between(3, 6), types});
  EXPECT_EQ(summary.streams.front().first, 3);
  EXPECT_EQ(summary.streams.front().last, 5);
}

TEST(Summary, StatesHowManyBytesOfAStreamTheFileLacks) {
  const auto ordinary = recording::atomBlock({{kId, filledRecords<int>(9)}});
  const auto wide = recording::atom(
      "ZRKM", recording::wideAtom("DATA", recording::entryBytes({kId, filledRecords<int>(9)})));
  for (const auto& all : {ordinary, wide}) {
    for (const std::size_t missing : {0U, 1U, 8U, 9U, 100U}) {
      std::istringstream file(all.substr(0, all.size() - missing));
      const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
          ZRKMetaData::MetaDataParser::createForStream(file, ZRKMetaData::Atoms));
      const auto summary = series::summariseStreams(
          *parser, "a.voxa", {{kId}, {}, {{kId, series::recordTypeOf<int>()}}});
      EXPECT_EQ(summary.isDamaged(), missing != 0);
      if (missing == 0) continue;
      EXPECT_EQ(summary.warnings.at(1),  // behind that about the block
                "F0: the file ends " + text::counted(missing, "byte") + " before the stream does");
    }
  }
}

}  // namespace
