// Recordings that change during a read.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "tests/support/TempFolder.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace {

using namespace ZRKMetaData;

constexpr int kRecords = 20'000;  // several times the read-ahead

// Changes the file at the first record and counts the records.
class ChangingObserver final : public DataStreamObserver<int> {
 public:
  explicit ChangingObserver(std::function<void()> change) : m_change(std::move(change)) {}

  bool onData(double, const int& value) override {
    EXPECT_EQ(value, count++);
    if (count == 1) m_change();
    return true;
  }

  int count = 0;

 private:
  const std::function<void()> m_change;
};

class ChangingRecordings : public testing::Test {
 protected:
  ChangingRecordings() {
    recording::Bytes records;
    for (int number = 0; number < kRecords; ++number) {
      records += recording::intRecord(number, number);
    }
    file = folder.file("take.voxa", recording::atomBlock({{recording::streamId(0xF6), records}}));
  }

  // The number of records read, and whether the file ended at the start of a further one.
  std::pair<int, bool> readWhile(const std::function<void()>& change) {
    const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForFile(file));
    const MetaDataLocation location = parser->locationOf(recording::streamId(0xF6));
    ChangingObserver observer(change);
    try {
      MetaDataReader<int>().parseFile(observer, parser->stream(), location.offset, location.size);
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "invalid meta data entry");
      return {observer.count, true};
    }
    return {observer.count, false};
  }

  testing_support::TempFolder folder;
  std::string file;
};

TEST_F(ChangingRecordings, ThatShrinkAreReadToTheirNewEnd) {
  constexpr int kLeft = 15'000;
  const auto [count, isCut] = readWhile(
      [this] { std::filesystem::resize_file(file, 16 + 24 + kLeft * std::uintmax_t{12} + 3); });
  EXPECT_EQ(count, kLeft);
  EXPECT_TRUE(isCut);
}

TEST_F(ChangingRecordings, ThatGrowAreReadToTheirIndexedEnd) {
  const auto [count, isCut] = readWhile([this] {
    std::ofstream(file, std::ios::binary | std::ios::app) << recording::intRecord(0, -1);
  });
  EXPECT_EQ(count, kRecords);
  EXPECT_FALSE(isCut);
}

TEST_F(ChangingRecordings, ThatAreDeletedAreReadToTheEnd) {
  const auto [count, isCut] = readWhile([this] { std::filesystem::remove(file); });
  EXPECT_EQ(count, kRecords);
  EXPECT_FALSE(isCut);
}

}  // namespace
