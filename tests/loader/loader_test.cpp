#include <gtest/gtest.h>

#include <atomic>
#include <boost/filesystem/operations.hpp>
#include <boost/rational.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/system/system_error.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cmath>
#include <filesystem>

#include "host/Kestova/KestovaException.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/LeftParameter.h"
#include "tests/support/Captured.h"
#include "tests/support/Streams.h"
#include "tests/support/TempFolder.h"

namespace {

using Kestova::LeftParameter;
using Kestova::Parameter;
using Kestova::RationalTime;
using recording::Bytes;
using recording::Entry;
using recording::streamId;
using testing_support::AssertionLog;
using testing_support::Captured;
using testing_support::TempFolder;

std::string name(unsigned char key) {
  return boost::uuids::to_string(streamId(key));
}

// 30 frames per second. Loads of several threads may share one.
class CountedEditRate final : public Kestova::ProjectEditRate {
 public:
  boost::rational<unsigned int> editRate() const override {
    ++readCount;
    return 30;
  }
  mutable std::atomic<int> readCount{0};
};

class Loading : public testing::Test {
 protected:
  // Writes a recording of one stream and returns the stream file name.
  std::string stream(const Bytes& records, std::int32_t version = 1) {
    return folder.file("take.voxa",
                       recording::atomBlock({Entry{streamId(0xF7), records, version}})) +
           "/" + name(0xF7);
  }

  template <class Operation>
  auto load(Operation operation, const std::string& filename) const {
    return (loader.*operation)(filename, "identifier", project, rate);
  }

  // The keyframes as (frame, value).
  template <class T>
  static std::vector<std::pair<long long, T>> keyFrames(const Parameter<T>& parameter) {
    std::vector<std::pair<long long, T>> pairs;
    const auto times = parameter.keyFrameTimes();
    for (const RationalTime& time : *times) {
      EXPECT_TRUE(time.isWhole());
      EXPECT_EQ(parameter.keyFrameAt(time)->leadInLength(), RationalTime(0, 1));
      pairs.emplace_back(time.numerator(), parameter.keyFrameAt(time)->value());
    }
    return pairs;
  }

  using Loader = VOXAScreenMetaDataLoader;
  TempFolder folder;
  boost::shared_ptr<Kestova::ThreadSafe> project = boost::make_shared<Kestova::ThreadSafe>();
  boost::shared_ptr<CountedEditRate> rate = boost::make_shared<CountedEditRate>();
  Loader loader;
};

template <class T>
using Pairs = std::vector<std::pair<long long, T>>;

TEST_F(Loading, KeepsTheLastRecordOfEachFrame) {
  using recording::intRecord;
  const auto parameter = load(&Loader::loadInts, stream(intRecord(1, 7) + intRecord(0.010, 1) +
                                                        intRecord(0.012, 2) + intRecord(-0.5, 3)));
  EXPECT_EQ(keyFrames(*parameter), (Pairs<int>{{-14, 3}, {0, 2}, {30, 7}}));
  EXPECT_EQ(parameter->valueAt(RationalTime(29)), 2);
  EXPECT_EQ(parameter->name(), "identifier");
  EXPECT_EQ(parameter->projectMutex().lock(), project);
  EXPECT_EQ(parameter.use_count(), 1);
  EXPECT_EQ(rate->readCount, 1);
  EXPECT_NE(boost::dynamic_pointer_cast<LeftParameter<int>>(parameter), nullptr);
  EXPECT_EQ(parameter->shared_from_this(), parameter);
}

TEST_F(Loading, ConvertsEachTypeOfRecord) {
  using namespace recording;
  EXPECT_EQ(keyFrames(*load(&Loader::loadDoubles, stream(doubleRecord(1, 0.1)))),
            (Pairs<double>{{30, 0.1}}));
  EXPECT_EQ(keyFrames(*load(&Loader::loadCursorOpacity, stream(doubleRecord(1, 0.1)))),
            (Pairs<double>{{30, 0.1}}));
  EXPECT_EQ(keyFrames(*load(&Loader::loadInt64, stream(int64Record(1, -(1LL << 40))))),
            (Pairs<Kestova::int64>{{30, -(1LL << 40)}}));
  EXPECT_EQ(keyFrames(*load(&Loader::loadStrings, stream(stringRecord(1, "\xFF any")))),
            (Pairs<std::string>{{30, "\xFF any"}}));
  Kestova::KeystrokeData key;
  key.setCharacter(65);
  key.setEventFlags(-3);
  EXPECT_EQ(keyFrames(*load(&Loader::loadKeystrokeData, stream(keystrokeRecord(1, 65, -3)))),
            (Pairs<Kestova::KeystrokeData>{{30, key}}));
  EXPECT_EQ(keyFrames(*load(&Loader::loadPoints, stream(pointRecord(1, -5, 7)))),
            (Pairs<Kestova::Point>{{30, Kestova::Point(-5.0, 7.0, 0.0)}}));
  EXPECT_EQ(keyFrames(*load(&Loader::loadRects, stream(rectRecord(1, 1, 2, 3, 16777217)))),
            (Pairs<Kestova::Rect<float>>{{30, Kestova::Rect<float>(1, 2, 3, 16777216.0F)}}));
}

TEST_F(Loading, NamesCursorImagesByTheIdentifierAsWritten) {
  using namespace recording;
  const std::string lower = stream(cursorImageRecord(1, 18446744073709551615ULL, 1, 2, "pixels") +
                                   cursorReferenceRecord(2, 0));
  EXPECT_EQ(
      keyFrames(*load(&Loader::loadCursorImagePaths, lower)),
      (Pairs<std::string>{{30, name(0xF7) + "/18446744073709551615"}, {60, name(0xF7) + "/0"}}));
  const std::string upper = "2B7B6AF7-7A1F-11E2-83D0-0017F200BE7F";
  EXPECT_EQ(
      keyFrames(*load(&Loader::loadCursorImagePaths, lower.substr(0, lower.size() - 36) + upper))[1]
          .second,
      upper + "/0");
}

TEST_F(Loading, SkipsRecordsWithoutAFrameNumber) {
  using recording::intRecord;
  const auto parameter = load(
      &Loader::loadInts,
      stream(intRecord(0, 1) + intRecord(std::nan(""), 2) + intRecord(1e300, 3) + intRecord(1, 4)));
  EXPECT_EQ(keyFrames(*parameter), (Pairs<int>{{0, 1}, {30, 4}}));
}

TEST_F(Loading, ReturnsAnEmptyParameterIfThereIsNoStream) {
  const std::string there = stream(recording::intRecord(0, 1));
  const std::string recordingPath = there.substr(0, there.size() - 37);
  const std::string raw =
      folder.file("nil.dat", recording::entryBytes({{}, recording::intRecord(0, 1), -1}));
  const AssertionLog quiet;
  for (const std::string& absent : {recordingPath + "/" + name(0xF0),  // not in the recording
                                    there + "/",                       // the last component is "."
                                    recordingPath + "/{" + name(0xF7) + "}",
                                    raw + "/none",  // not the nil identifier of a raw file either
                                    folder.name("absent.voxa") + "/" + name(0xF7), name(0xF7)}) {
    rate->readCount = 0;
    EXPECT_EQ(load(&Loader::loadInts, absent)->numKeyFrames(), 0U) << absent;
    EXPECT_EQ(rate->readCount, 1) << absent;
  }
  const Captured out(std::cout);
  EXPECT_EQ(load(&Loader::loadInts, stream(recording::intRecord(0, 1), 2))->numKeyFrames(), 0U);
  EXPECT_EQ(out.text(),
            "MetaDataReader<T>::parseFile - Version is larger than what we can handle\n");
}

TEST_F(Loading, ThrowsForDamagedStreams) {
  const std::string whole = recording::atomBlock(
      {Entry{streamId(0xF7), recording::intRecord(0, 1) + recording::intRecord(1, 2)}});
  const std::string cut = folder.file("cut.voxa", whole.substr(0, whole.size() - 8));
  EXPECT_THROW(load(&Loader::loadInts, cut + "/" + name(0xF7)), std::runtime_error);
  EXPECT_THROW(
      load(&Loader::loadStrings, stream(recording::littleEndian(0xFFFFFFFFU) + "12345678")),
      std::length_error);
}

TEST_F(Loading, RejectsNamesThatAreNotUtf8) {
  const auto expectRejection = [](const std::string& bad, const auto& action) {
    try {
      action(bad);
      ADD_FAILURE() << bad << " was accepted";
    } catch (const boost::system::system_error& error) {
      EXPECT_EQ(std::string(error.what()).find("boost::filesystem::path codecvt to wstring"), 0U);
    }
  };
  for (const char* const bad : {"\xFF.voxa/x", "a.voxa/\xC3", "\xED\xA0\x80.voxa/x",
                                "a.voxa/\xED\xBF\xBF", "\xC0\xAF", "\xF4\x90\x80\x80"}) {
    expectRejection(bad, [this](const std::string& name) { load(&Loader::loadInts, name); });
    expectRejection(bad, [this](const std::string& name) { loader.fileExists(name); });
  }
}

TEST_F(Loading, RequiresAnEditRate) {
  const std::string there = stream(recording::intRecord(0, 1));
  rate.reset();
  try {
    load(&Loader::loadInts, there);
    ADD_FAILURE() << "was loaded";
  } catch (const Kestova::KestovaException& error) {
    EXPECT_EQ(error.what(), "no edit rate to load " + there + " at");
  }
  // The name is checked before the edit rate.
  EXPECT_THROW(load(&Loader::loadInts, "\xFF"), boost::system::system_error);
}

TEST_F(Loading, OfRectangleListsReadsNeitherFileNorEditRate) {
  rate.reset();
  const auto parameter = load(&Loader::loadRectCollection, "\xFF not a name");
  EXPECT_EQ(parameter->numKeyFrames(), 0U);
  EXPECT_EQ(parameter->name(), "identifier");
}

TEST_F(Loading, OfOpacityCallsLoadDoubles) {
  class Derived final : public VOXAScreenMetaDataLoader {
   public:
    boost::shared_ptr<Parameter<double>> loadDoubles(
        const std::string&, const std::string&, const boost::weak_ptr<const Kestova::ThreadSafe>&,
        const boost::weak_ptr<const Kestova::ProjectEditRate>&) const override {
      return nullptr;
    }
  } derived;
  EXPECT_EQ(derived.loadCursorOpacity("", "", project, rate), nullptr);
}

TEST_F(Loading, FindsExistingRecordings) {
  const std::string there = stream(recording::intRecord(0, 1));
  std::filesystem::create_directory(std::filesystem::u8path(folder.name("folder")));
  EXPECT_TRUE(loader.fileExists(there));
  EXPECT_TRUE(loader.fileExists(folder.name("take.voxa/anything")));
  EXPECT_TRUE(loader.fileExists(folder.name("folder/anything")));
  EXPECT_FALSE(loader.fileExists(folder.name("absent.voxa/") + name(0xF7)));
  EXPECT_FALSE(loader.fileExists(name(0xF7)));
  EXPECT_FALSE(loader.fileExists(""));
#ifndef _WIN32
  // The system rejects the name for a reason other than absence.
  EXPECT_THROW(loader.fileExists(std::string(5000, 'x') + "/" + name(0xF7)),
               boost::filesystem::filesystem_error);
#endif
}

TEST_F(Loading, OpensRecordingsByAnyUtf8Name) {
  const std::string file =
      folder.file("\xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80.voxa",
                  recording::atomBlock({Entry{streamId(0xF7), recording::intRecord(0, 1)}}));
  EXPECT_EQ(load(&Loader::loadInts, file + "\\" + name(0xF7))->numKeyFrames(), 1U);
}

}  // namespace
