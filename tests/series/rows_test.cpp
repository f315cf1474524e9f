// Streams as blocks of rows.
#include <cstring>
#include <memory>
#include <sstream>

#include "tests/support/Streams.h"
#include "tools/series/RecordRows.h"

namespace {

using namespace testing_support;

const auto kId = recording::streamId(0xF0);

template <class T>
std::pair<double, std::string> shownRow(const series::TimedRow<T>& row) {
  return {row.seconds, shown(row.record)};
}

template <class T, std::size_t size>
std::pair<double, std::string> shownPacked(const std::array<unsigned char, size>& row) {
  std::pair<double, T> copy;
  std::memcpy(&copy.first, row.data(), sizeof copy.first);
  std::memcpy(&copy.second, row.data() + sizeof copy.first, sizeof copy.second);
  return {copy.first, shown(copy.second)};
}

template <class T>
class Rows : public testing::Test {
 public:
  series::RecordRows<T> read(const recording::Bytes& records, const series::TimeRange& range = {}) {
    m_stream.str(recording::entryBytes({kId, records}));
    m_parser.reset(ZRKMetaData::MetaDataParser::createForStream(m_stream, ZRKMetaData::Raw));
    return series::readRows<T>(*m_parser, kId, range);
  }

  static auto shownRows(const series::RecordRows<T>& table) {
    std::vector<std::pair<double, std::string>> texts;
    for (const auto& row : table.rows) {
      if constexpr (series::infoOf(series::recordTypeOf<T>()).byteCount == 0) {
        texts.push_back(shownRow(row));
      } else {
        texts.push_back(shownPacked<T>(row));
      }
    }
    return texts;
  }

 private:
  std::istringstream m_stream;
  std::unique_ptr<ZRKMetaData::MetaDataParser> m_parser;
};
TYPED_TEST_SUITE(Rows, RecordTypes, RecordTypeNames);

TYPED_TEST(Rows, HoldWhatTheStreamHolds) {
  const auto table = this->read(filledRecords<TypeParam>(9));
  EXPECT_EQ(this->shownRows(table), filledTexts<TypeParam>(9));
  EXPECT_FALSE(table.damage);
}

TYPED_TEST(Rows, EndBeforeTheDamageAndStateIt) {
  const auto whole = filledRecords<TypeParam>(3);
  const auto table = this->read(whole + "abc");  // too few for any leading field
  EXPECT_EQ(this->shownRows(table), filledTexts<TypeParam>(3));
  ASSERT_TRUE(table.damage);
  EXPECT_EQ(table.damage->byteOffset(), 24 + static_cast<long long>(whole.size()));
}

TYPED_TEST(Rows, AreThoseOfTheRange) {
  const auto table = this->read(filledRecords<TypeParam>(9), series::TimeRange::between(3, 6));
  const auto all = filledTexts<TypeParam>(9);
  EXPECT_EQ(this->shownRows(table),
            decltype(this->shownRows(table))(all.begin() + 2, all.begin() + 5));
}

TEST(RowsOfPoints, ReserveNoMoreThanTheFileCanHold) {
  constexpr int kCount = 5;
  recording::Bytes file = recording::atomBlock({{kId, filledRecords<ZRKMetaData::Point>(kCount)}});
  file.replace(8, 4, recording::Bytes("\x7F\xFF\xFF\xFF", 4));  // the entry announces 2 GB
  std::istringstream stream(file);
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForStream(stream, ZRKMetaData::Atoms));
  ASSERT_GT(parser->locationOf(kId).size, 1 << 30);
  const auto table = series::readRows<ZRKMetaData::Point>(*parser, kId, {});
  EXPECT_EQ(table.rows.size(), std::size_t{kCount});
  EXPECT_LT(table.rows.capacity(), std::size_t{2 * kCount + 4});
}

}  // namespace
