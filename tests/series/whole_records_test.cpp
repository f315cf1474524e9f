#include "tools/series/WholeRecords.h"

#include <gtest/gtest.h>

#include <sstream>
#include <type_traits>

#include "tests/support/Streams.h"

namespace {

using recording::Bytes;
using series::WholeRecords;
using testing_support::Filler;

WholeRecords found(const Bytes& records, bool isCut) {
  const Bytes before = "bytes before the records";
  std::istringstream file(before + records + "bytes behind them");
  return series::findWholeRecords(file, static_cast<std::int64_t>(before.size()),
                                  static_cast<std::int64_t>(records.size()), isCut);
}

template <class T>
class WholeRecordsOf : public testing::Test {};
TYPED_TEST_SUITE(WholeRecordsOf, testing_support::RecordTypes, testing_support::RecordTypeNames);

TYPED_TEST(WholeRecordsOf, EndWhereTheLastOneThatIsWholeEnds) {
  constexpr int kCount = 40;
  constexpr bool isText = std::is_same_v<TypeParam, std::string>;
  const auto records = [](int count) {
    Bytes bytes;
    for (int n = 1; n <= count; ++n) {
      bytes += isText ? recording::stringRecord(n, "title " + std::to_string(n))
                      : Filler<TypeParam>::bytes(n, n);
    }
    return bytes;
  };
  const Bytes whole = records(kCount - 1);
  const Bytes all = records(kCount);
  for (std::size_t size = whole.size(); size <= all.size(); ++size) {
    const WholeRecords cut = found(all.substr(0, size), true);
    const bool isAll = size == all.size();
    EXPECT_EQ(cut.doubt, "") << size;
    EXPECT_EQ(cut.byteCount, static_cast<std::int64_t>(isAll ? all.size() : whole.size())) << size;
    EXPECT_EQ(cut.count, static_cast<std::uint64_t>(isAll ? kCount : kCount - 1)) << size;
    const bool isWhole = isAll || size == whole.size();
    EXPECT_EQ(found(all.substr(0, size), false).doubt.empty(), isWhole) << size;
  }
}

struct DoubtCase {
  const char* name;
  Bytes records;
  bool isCut;
  bool isCertain;
  std::int64_t byteCount;
};

TEST(WholeRecords, AreDoubtfulWhereALengthOrATimeIsNotPlausible) {
  const auto texts = [](const std::string& last) {
    Bytes bytes;
    for (int n = 0; n < 20; ++n) bytes += recording::stringRecord(n, "a title of a window");
    return bytes + recording::stringRecord(20, last);
  };
  const auto images = [](double lastSeconds) {
    Bytes bytes;
    for (int n = 0; n < 20; ++n) {
      bytes += recording::cursorImageRecord(n, 7, 1, 2, Bytes(50, 'p'));
    }
    return bytes + recording::cursorImageRecord(lastSeconds, 7, 1, 2, Bytes(50, 'p'));
  };
  Bytes unequal = images(20);
  unequal[unequal.size() - 82] = '\x7F';  // the size of the last record
  const Bytes image = recording::cursorImageRecord(0, 7, 1, 2, Bytes(500, 'p'));
  const auto sizeOf = [](const Bytes& bytes) { return static_cast<std::int64_t>(bytes.size()); };
  const DoubtCase cases[] = {
      {"nothing", "", false, true, 0},
      {"a cut before the first record ends", Bytes(11, 'x'), true, true, 0},
      {"a cut behind the first number", recording::intRecord(1, 2), true, false, 12},
      {"texts", texts("the last"), false, true, sizeOf(texts("the last"))},
      {"a text with a NUL", texts(Bytes("a\0b", 3)), false, false, sizeOf(texts("abc"))},
      {"images", images(20), false, true, sizeOf(images(20))},
      {"an image before the one before", images(3), false, false, sizeOf(images(3))},
      {"an image with two sizes", unequal, false, false, sizeOf(unequal)},
      {"a cut in the first image", image.substr(0, 100), true, true, 0},
      {"chance", Bytes(300, 'x'), false, false, 300},
  };
  for (const DoubtCase& each : cases) {
    const WholeRecords records = found(each.records, each.isCut);
    EXPECT_EQ(records.doubt.empty(), each.isCertain) << each.name << ": " << records.doubt;
    EXPECT_EQ(records.byteCount, each.byteCount) << each.name;
  }
}

}  // namespace
