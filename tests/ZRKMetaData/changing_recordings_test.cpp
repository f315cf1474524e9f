// Recordings that change while they are read.
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

constexpr int kRecords = 20'000;  // several times what is read ahead

// Does something to the file at the first record and keeps count.
class Meddler final : public DataStreamObserver<int> {
 public:
  explicit Meddler(std::function<void()> meddle) : m_meddle(std::move(meddle)) {}

  bool onData(double, const int& value) override {
    EXPECT_EQ(value, count++);
    if (count == 1) m_meddle();
    return true;
  }

  int count = 0;

 private:
  const std::function<void()> m_meddle;
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

  // How many records are read, and whether the end of the file was where one should begin.
  std::pair<int, bool> readWhile(const std::function<void()>& meddle) {
    const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForFile(file));
    const MetaDataLocation place = parser->locationOf(recording::streamId(0xF6));
    Meddler observer(meddle);
    try {
      MetaDataReader<int>().parseFile(observer, parser->stream(), place.offset, place.size);
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "invalid meta data entry");
      return {observer.count, true};
    }
    return {observer.count, false};
  }

  testing_support::TempFolder folder;
  std::string file;
};

TEST_F(ChangingRecordings, ThatShrinkEndWhereTheyEndNow) {
  constexpr int kLeft = 15'000;
  const auto [count, isCut] = readWhile(
      [this] { std::filesystem::resize_file(file, 16 + 24 + kLeft * std::uintmax_t{12} + 3); });
  EXPECT_EQ(count, kLeft);
  EXPECT_TRUE(isCut);
}

TEST_F(ChangingRecordings, ThatGrowAreReadAsFarAsTheyWereIndexed) {
  const auto [count, isCut] = readWhile([this] {
    std::ofstream(file, std::ios::binary | std::ios::app) << recording::intRecord(0, -1);
  });
  EXPECT_EQ(count, kRecords);
  EXPECT_FALSE(isCut);
}

TEST_F(ChangingRecordings, ThatVanishAreReadToTheEnd) {
  const auto [count, isCut] = readWhile([this] { std::filesystem::remove(file); });
  EXPECT_EQ(count, kRecords);
  EXPECT_FALSE(isCut);
}

}  // namespace
