#include <gtest/gtest.h>

#include <boost/uuid/uuid_io.hpp>
#include <sstream>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "tests/support/Captured.h"
#include "tests/support/Device.h"
#include "tests/support/GroupingLocale.h"
#include "tests/support/Hex.h"
#include "tests/support/PlainReading.h"
#include "tests/support/ReadOutcome.h"
#include "tests/support/Streams.h"

namespace ZRKMetaData {
namespace {

using recording::Bytes;
using recording::Entry;
using recording::entryBytes;
using recording::littleEndian;
using recording::streamId;
using testing_support::AssertionLog;
using testing_support::Captured;
using testing_support::Collector;
using testing_support::Device;
using testing_support::filledRecords;
using testing_support::filledTexts;
using testing_support::Filler;
using testing_support::readPlainly;

template <class T, class Read>
auto outcomeOf(const Bytes& bytes, std::size_t maxRecords, Read read) {
  std::istringstream in(bytes);
  const Captured quiet(std::cout);
  return testing_support::outcomeOf(in, Collector<T>(maxRecords), read);
}

template <class T>
class Streams : public testing::Test {};
TYPED_TEST_SUITE(Streams, testing_support::RecordTypes, testing_support::RecordTypeNames);

TYPED_TEST(Streams, DeliverTheirRecordsInFileOrder) {
  Collector<TypeParam> observer;
  std::istringstream in("before" + entryBytes({streamId(0xF0), filledRecords<TypeParam>(3)}));
  in.setstate(std::ios::failbit);            // as a scan may leave it
  for (int round = 0; round < 2; ++round) {  // from any position of the stream
    observer.records.clear();
    MetaDataReader<TypeParam>().parseFile(observer, in, 6, 1 << 20);
    EXPECT_EQ(observer.records, filledTexts<TypeParam>(3));
  }
}

// For every truncation, several bounds and an early stop, the records, the exception, and the state
// and position of the stream equal those of a reader that does not read ahead.
TYPED_TEST(Streams, AreReadAheadAsIfRecordByRecord) {
  const Bytes whole = entryBytes({streamId(0xF0), filledRecords<TypeParam>(3)}) + "next entry";
  for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
    for (const std::size_t size : {std::size_t{24}, std::size_t{25}, cut, cut - cut / 3,
                                   whole.size() - 18, whole.size() + 100}) {
      for (const std::size_t maxRecords : {std::size_t{1}, std::size_t{99}}) {
        const Bytes bytes = whole.substr(0, cut);
        const auto bound = static_cast<int64>(size);
        ASSERT_EQ(outcomeOf<TypeParam>(bytes, maxRecords,
                                       [&](Collector<TypeParam>& observer, std::istream& in) {
                                         in.seekg(0, std::ios::end);
                                         in.exceptions(std::ios::eofbit | std::ios::failbit);
                                         MetaDataReader<TypeParam>().parseFile(observer, in, 0,
                                                                               bound);
                                       }),
                  outcomeOf<TypeParam>(bytes, maxRecords,
                                       [&](Collector<TypeParam>& observer, std::istream& in) {
                                         readPlainly(observer, in, 0, bound);
                                       }))
            << "cut " << cut << " size " << size << " records " << maxRecords;
      }
    }
  }
}

// The same of streams that fill the read-ahead several times, so that records lie across its ends.
TYPED_TEST(Streams, AreReadAheadSeveralTimesAsIfRecordByRecord) {
  constexpr int kCount = 12'000;
  const Bytes bytes = entryBytes({streamId(0xF0), filledRecords<TypeParam>(kCount)});
  for (const std::size_t size : {bytes.size() - 1, bytes.size() / 2 + 1}) {
    for (const std::size_t maxRecords : {std::size_t{kCount}, std::size_t{kCount} / 3}) {
      const auto bound = static_cast<int64>(size);
      ASSERT_EQ(outcomeOf<TypeParam>(bytes, maxRecords,
                                     [&](Collector<TypeParam>& observer, std::istream& in) {
                                       MetaDataReader<TypeParam>().parseFile(observer, in, 0,
                                                                             bound);
                                     }),
                outcomeOf<TypeParam>(bytes, maxRecords,
                                     [&](Collector<TypeParam>& observer, std::istream& in) {
                                       readPlainly(observer, in, 0, bound);
                                     }))
          << "size " << size << " records " << maxRecords;
    }
  }
}

// If the device fails, the records before the failure are delivered and no others. A short read is
// the end of the file.
TYPED_TEST(Streams, EndWhereTheDeviceFailsOrReadsShort) {
  const Bytes whole = entryBytes({streamId(0xF0), filledRecords<TypeParam>(3)});
  const auto all = filledTexts<TypeParam>(3);
  const auto outcomeOn = [](auto& source) {
    std::istream in(&source);
    Collector<TypeParam> observer;
    try {
      MetaDataReader<TypeParam>().parseFile(observer, in, 0, 1 << 20);
    } catch (const std::runtime_error&) {  // the leading field is incomplete
    }
    return observer.records;
  };
  for (std::size_t last = 0; last <= whole.size(); ++last) {
    Device failing(whole, last, Device::Ends::Failing);
    const auto records = outcomeOn(failing);
    ASSERT_TRUE(std::equal(records.begin(), records.end(), all.begin())) << last;
    EXPECT_EQ(records.size() == all.size(), last == whole.size()) << last;

    Device shortened(whole, last, Device::Ends::Short);
    std::stringbuf cut(whole.substr(0, last));
    EXPECT_EQ(outcomeOn(shortened), outcomeOn(cut)) << last;
  }
}

template <class T>
T& argumentFor(T& value) {
  return value;
}
CursorImage* argumentFor(CursorImage& value) {
  return &value;
}

TYPED_TEST(Streams, FailWhenARecordIsReadAtTheEnd) {
  std::istringstream in;
  in.exceptions(std::ios::failbit);
  in.setstate(std::ios::eofbit);
  double seconds = 0;
  TypeParam value{};
  std::string error;
  try {
    readRecord(in, seconds, argumentFor(value));
  } catch (const std::exception& thrown) {
    error = thrown.what();
  }
  EXPECT_EQ(error, "invalid meta data entry");
  EXPECT_EQ(in.rdstate(), std::ios::eofbit | std::ios::failbit);
  EXPECT_EQ(in.exceptions(), std::ios::failbit);
}

TYPED_TEST(Streams, OfAnotherVersionAreRejected) {
  for (const int32 version : {0, 2}) {
    std::istringstream in(entryBytes({streamId(0xF0), filledRecords<TypeParam>(3), version}));
    Collector<TypeParam> observer;
    const Captured out(std::cout);
    MetaDataReader<TypeParam>().parseFile(observer, in, 0, 1 << 20);
    EXPECT_TRUE(observer.records.empty());
    EXPECT_EQ(out.text(),
              "MetaDataReader<T>::parseFile - Version is larger than what we can handle\n");
    EXPECT_EQ(in.tellg(), 24);
  }
}

TYPED_TEST(Streams, OfAnUnknownIdentifierAreReadWithVersionMinusOne) {
  std::istringstream in(entryBytes({streamId(0xF4), filledRecords<TypeParam>(2), -1}));
  Collector<TypeParam> observer;
  const Captured out(std::cout);
  MetaDataReader<TypeParam>().parseFile(observer, in, 0, 1 << 20);
  EXPECT_EQ(observer.records, filledTexts<TypeParam>(2));
  EXPECT_EQ(out.text(),
            "MetaDataUUID::currentVersionForUUID - unsupported UUID = "
            "2b7b6af4-7a1f-11e2-83d0-0017f200be7f\n");
}

TYPED_TEST(Streams, OutsideTheFileAreEmpty) {
  const Bytes bytes = entryBytes({streamId(0xF0), filledRecords<TypeParam>(2)});
  constexpr int64 kMax = std::numeric_limits<int64>::max();
  struct Location {
    int64 offset;
    int64 size;
  };
  for (const Location location :
       {Location{0, 0}, Location{0, -1}, Location{0, kMax * -1 - 1}, Location{-1, 100},
        Location{1000, 100}, Location{kMax, kMax}, Location{1, kMax}}) {  // the sum overflows
    const auto outcome =
        outcomeOf<TypeParam>(bytes, 99, [&](Collector<TypeParam>& observer, std::istream& in) {
          MetaDataReader<TypeParam>().parseFile(observer, in, location.offset, location.size);
        });
    EXPECT_TRUE(outcome.records.empty()) << location.offset << " " << location.size;
    EXPECT_EQ(outcome.error, "") << location.offset << " " << location.size;
  }
}

TYPED_TEST(Streams, PropagateTheExceptionOfAnObserverAndStandAfterItsRecord) {
  struct Thrower final : DataStreamObserver<TypeParam> {
    bool onData(double, const TypeParam&) override { throw std::domain_error("enough"); }
  } observer;
  std::istringstream in(entryBytes({streamId(0xF0), filledRecords<TypeParam>(3)}));
  EXPECT_THROW(MetaDataReader<TypeParam>().parseFile(observer, in, 0, 1 << 20), std::domain_error);
  EXPECT_EQ(in.tellg(), static_cast<std::streamoff>(24 + Filler<TypeParam>::bytes(1, 1).size()));
}

template <class T>
std::vector<std::pair<double, std::string>> readDocument(const char* name) {
  std::istringstream in(testing_support::hexDocument(name));
  Collector<T> observer;
  MetaDataReader<T>().parseFile(observer, in, 0, 1 << 20);
  return observer.records;
}

TEST(Documents, AreWrittenByTheWriter) {
  using namespace recording;
  const Bytes same = int64Record(0.5, 4294967297) + int64Record(1, -2);
  struct Row {
    const char* document;
    unsigned char key;
    Bytes records;
  };
  for (const Row& row : {
           Row{"ints.hex", 0xF6, intRecord(0.5, 258) + intRecord(1.5, -2)},
           Row{"doubles.hex", 0xF2, doubleRecord(0.5, 1.5) + doubleRecord(2, -0.25)},
           Row{"int64s.hex", 0xF8, same},
           Row{"strings.hex", 0xF9, stringRecord(0.5, "Hi") + stringRecord(1, "")},
           Row{"keystrokes.hex", 0xF3,
               keystrokeRecord(0.5, 65, 3) +
                   keystrokeRecord(1, -1, std::numeric_limits<int32>::min())},
           Row{"points.hex", 0xF0, pointRecord(0.5, -5, 7) + pointRecord(1, 1920, 1080)},
           Row{"rects.hex", 0xF5,
               rectRecord(0.5, 1, 2, 3, 4) + rectRecord(1, -1, 256, 65536, 16777217)},
           Row{"cursor-images.hex", 0xF1,
               cursorImageRecord(0.5, 4294967298, 16, -1, "\xAA\xBB\xCC") +
                   cursorReferenceRecord(1, 4294967298)},
       }) {
    EXPECT_EQ(entryBytes({streamId(row.key), row.records}),
              testing_support::hexDocument(row.document))
        << row.document;
  }
}

TEST(Documents, AreReadByTheReader) {
  using Records = std::vector<std::pair<double, std::string>>;
  EXPECT_EQ(readDocument<int>("ints.hex"), (Records{{0.5, "258"}, {1.5, "-2"}}));
  EXPECT_EQ(readDocument<double>("doubles.hex"), (Records{{0.5, "1.500000"}, {2, "-0.250000"}}));
  EXPECT_EQ(readDocument<int64>("int64s.hex"), (Records{{0.5, "4294967297"}, {1, "-2"}}));
  EXPECT_EQ(readDocument<std::string>("strings.hex"), (Records{{0.5, "\"Hi\""}, {1, "\"\""}}));
  EXPECT_EQ(readDocument<KeyStroke>("keystrokes.hex"),
            (Records{{0.5, "65/3"}, {1, "-1/-2147483648"}}));
  EXPECT_EQ(readDocument<Point>("points.hex"), (Records{{0.5, "-5,7"}, {1, "1920,1080"}}));
  EXPECT_EQ(readDocument<Rect>("rects.hex"),
            (Records{{0.5, "{ 1, 2, 3, 4 }"}, {1, "{ -1, 256, 65536, 16777217 }"}}));
  EXPECT_EQ(
      readDocument<CursorImage>("cursor-images.hex"),
      (Records{{0.5, "4294967298:11:16:-1:\"\\xAA\\xBB\\xCC\""}, {1, "4294967298:0:0:0:\"\""}}));
}

TEST(TruncatedRecords, AreZeroFilled) {
  const auto lastOf = [](const Bytes& record, auto type) {
    using T = decltype(type);
    std::istringstream in(entryBytes({streamId(0xF0), record}));
    Collector<T> observer;
    MetaDataReader<T>().parseFile(observer, in, 0, 1 << 20);
    return observer.records.at(0).second;
  };
  using namespace recording;
  EXPECT_EQ(lastOf(rectRecord(1, 1, 2, 3, 0x44332211).substr(0, 22), Rect()),
            "{ 1, 2, 3, 8721 }");  // two bytes of the last number remain: 0x2211
  EXPECT_EQ(lastOf(pointRecord(1, -1, -1).substr(0, 12), Point()), "-1,0");
  EXPECT_EQ(lastOf(stringRecord(1, "abcde").substr(0, 14), std::string()), "\"ab\\0\\0\\0\"");
  EXPECT_EQ(lastOf(stringRecord(1, "abcde").substr(0, 6), std::string()), "\"\\0\\0\\0\\0\\0\"");
  EXPECT_EQ(lastOf(cursorImageRecord(1, 5, 6, 7, "abc").substr(0, 33), CursorImage()),
            "5:11:6:7:\"a\\0\\0\"");
  EXPECT_EQ(lastOf(cursorImageRecord(1, 5, 6, 7, "abc").substr(0, 12), CursorImage()),
            "0:0:0:0:\"\"");
}

TEST(RecordDecoders, LeaveBytesPastTheEndUnchanged) {
  double seconds = 0;
  Point point(0x0A0A0A0A, 0x0B0B0B0B);
  std::istringstream in(recording::pointRecord(2, 1, 0x01020304).substr(0, 14));
  readRecord(in, seconds, point);
  EXPECT_EQ(seconds, 2);
  EXPECT_EQ(point.x, 1);
  EXPECT_EQ(point.y, 0x0B0B0304);
  EXPECT_TRUE(in.eof());
}

TEST(StringLists, AreDecodedWithoutATime) {
  using recording::stringRecord;
  const Bytes list = littleEndian(uint32{999}) + littleEndian(uint32{2}) + stringRecord(1, "one") +
                     stringRecord(2, "");
  double seconds = -1;
  std::list<std::string> value{"zero"};
  std::istringstream in(list);
  readRecord(in, seconds, value);
  EXPECT_EQ(value, (std::list<std::string>{"zero", "one", ""}));
  EXPECT_EQ(seconds, -1);
  EXPECT_FALSE(in.eof());

  for (const std::size_t cut : {std::size_t{3}, std::size_t{8 + 4 + 11 + 2}}) {
    std::istringstream cutShort(list.substr(0, cut));
    EXPECT_THROW(readRecord(cutShort, seconds, value), std::runtime_error) << cut;
  }
  std::istringstream noCount(list.substr(0, 4));
  readRecord(noCount, seconds, value);
  EXPECT_EQ(value.back(), "one");  // read before the end above
}

// At the limit, one byte over it, at the maximum of the field and below the minimum.
TEST(AnnouncedLengths, AreRejectedIfMoreThan64MiBAreMissing) {
  constexpr uint32 kMaxMissing = 64U << 20U;
  struct Row {
    uint32 size;
    bool isRejected;
  };
  for (const Row& row : {Row{8 + 3 + kMaxMissing, false}, Row{8 + 3 + kMaxMissing + 1, true},
                         Row{0xFFFFFFFF, true}, Row{8, false}, Row{7, true}, Row{0, true}}) {
    std::istringstream in(
        entryBytes({streamId(0xF9), recording::stringRecord(1, "kept") + littleEndian(row.size) +
                                        littleEndian(2.0) + "abc"}));
    Collector<std::string> observer(2);
    bool isRejected = false;
    try {
      MetaDataReader<std::string>().parseFile(observer, in, 0, 1 << 20);
    } catch (const std::length_error& error) {
      isRejected = true;
      const std::string number = std::to_string(row.size < 8 ? row.size : row.size - 8);
      EXPECT_NE(std::string(error.what()).find(" " + number + " bytes"), std::string::npos)
          << error.what();
    }
    EXPECT_EQ(isRejected, row.isRejected) << row.size;
    EXPECT_EQ(observer.records.at(0).second, "\"kept\"") << row.size;
  }

  std::istringstream image(entryBytes(
      {streamId(0xF1), recording::cursorReferenceRecord(1, 1) + littleEndian(uint32{0}) +
                           littleEndian(2.0) + littleEndian(uint64{2}) +
                           littleEndian(uint32{8 + kMaxMissing + 1}) + littleEndian(uint64{0})}));
  Collector<CursorImage> observer;
  EXPECT_THROW(MetaDataReader<CursorImage>().parseFile(observer, image, 0, 1 << 20),
               std::length_error);
  EXPECT_EQ(observer.records.size(), 1U);
}

TEST(CursorImages, WithInvalidDataSizesAreReportedAndEndAfterTheSize) {
  for (const uint32 size : {1U, 5U, 8U}) {
    const AssertionLog log;
    const Captured out(std::cout);
    std::istringstream in(entryBytes(
        {streamId(0xF1), littleEndian(uint32{24}) + littleEndian(1.0) + littleEndian(uint64{7}) +
                             littleEndian(size) + recording::cursorReferenceRecord(2, 8)}));
    Collector<CursorImage> observer;
    MetaDataReader<CursorImage>().parseFile(observer, in, 0, 1 << 20);
    const std::vector<std::pair<double, std::string>> expected{{1, "7:0:0:0:\"\""},
                                                               {2, "8:0:0:0:\"\""}};
    EXPECT_EQ(observer.records, expected) << size;
    EXPECT_EQ(log.text(), "ZRKMMetaDataReader:93 data->m_dataSize == 0 || data->m_dataSize > 8\n");
    EXPECT_EQ(out.text(),
              "WARNING: Invalid data size in ZRKMETADATA::CursorImage stream data->m_dataSize = " +
                  std::to_string(size));
  }
}

TEST(CursorImages, AreWrittenInDecimalWhateverTheStream) {
  const testing_support::GroupingLocale locale;
  CursorImage image;
  image.m_imageId = 18446744073709551615U;
  image.m_dataSize = 7;  // no bytes of an image
  image.m_imageInfo0 = -1234;
  image.m_imageInfo1 = 5678;
  std::ostringstream out;
  out << std::hex << image;
  EXPECT_EQ(out.str(), "(18446744073709551615,7,-1234,5678,0)");
}

TEST(CursorImages, AreEmptyAfterAnException) {
  const Bytes whole = recording::cursorImageRecord(1, 5, 6, 7, "abc");
  const Bytes tooLong = whole.substr(0, 20) + littleEndian(0xFFFFFFFFU) + whole.substr(24);
  for (const Bytes& bytes : {whole.substr(0, 3), tooLong}) {
    std::istringstream in(whole + bytes);
    double seconds = 0;
    CursorImage image;
    readRecord(in, seconds, &image);
    EXPECT_EQ(image.imageByteCount(), 3U);
    EXPECT_THROW(readRecord(in, seconds, &image), std::exception);
    const CursorImage copy = image;
    EXPECT_EQ(copy, CursorImage());
  }
}

CursorImage image(uint64 id, uint32 size, int32 info0, int32 info1, const char* bytes = nullptr) {
  unsigned char* data = nullptr;
  if (bytes != nullptr) {
    data = new unsigned char[size - 8];
    std::memcpy(data, bytes, size - 8);
  }
  return {id, size, info0, info1, data};
}

TEST(CursorImages, CompareByContent) {
  struct Row {
    CursorImage left;
    CursorImage right;
    bool areEqual;
  };
  const Row rows[] = {
      {image(1, 0, 2, 3), image(1, 0, 9, 9), true},  // the info words are ignored without an image
      {image(1, 0, 2, 3), image(2, 0, 2, 3), false},
      {image(1, 11, 2, 3, "abc"), image(1, 11, 2, 3, "abc"), true},
      {image(1, 11, 2, 3, "abc"), image(1, 11, 2, 3, "abd"), false},
      {image(1, 11, 2, 3, "abc"), image(1, 11, 9, 3, "abc"), false},
      {image(1, 11, 2, 3, "abc"), image(1, 11, 2, 9, "abc"), false},
      {image(1, 11, 2, 3, "abc"), image(1, 10, 2, 3, "ab"), false},
      {image(1, 11, 2, 3, "abc"), image(1, 0, 2, 3), false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.left == row.right, row.areEqual) << row.left << row.right;
    EXPECT_EQ(row.left != row.right, !row.areEqual) << row.left << row.right;
  }
}

TEST(CursorImages, CopyDeeplyAndReleaseTheirPreviousData) {
  const CursorImage original = image(1, 11, 2, 3, "abc");
  CursorImage copy = original;
  EXPECT_EQ(copy, original);
  EXPECT_NE(copy.m_data.get(), original.m_data.get());
  const CursorImage& same = copy;
  copy = same;
  EXPECT_EQ(copy, original);
  copy = image(5, 0, 6, 7);
  EXPECT_EQ(copy.m_imageInfo1, 7);
  EXPECT_EQ(copy.m_data, nullptr);
}

TEST(CursorImages, PrintTheirFields) {
  std::ostringstream out;
  out << image(18446744073709551615ULL, 0, -2, 3);
  EXPECT_EQ(out.str(), "(18446744073709551615,0,-2,3,0)");
}

}  // namespace
}  // namespace ZRKMetaData
