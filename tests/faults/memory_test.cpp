// Every allocation of an operation fails once.
#include <gtest/gtest.h>

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <iostream>
#include <new>
#include <sstream>

#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "ZRKMetaData/src/ZRKMScan.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/LeftParameter.h"
#include "tests/faults/Memory.h"
#include "tests/support/TempFolder.h"
#include "tools/host/FixedEditRate.h"
#include "tools/recording/Records.h"
#include "tools/recording/Sample.h"

namespace {

using faults::FailingAllocation;
using Kestova::LeftParameter;
using Kestova::RationalTime;
using Points = LeftParameter<Kestova::Point>;

// Runs `action` repeatedly, each time with another of its allocations failing, and calls `check`
// after each run. `action` throws std::bad_alloc or returns true, and frees what it allocated.
template <class Action, class Check>
void failEachAllocation(Action action, Check check) {
  ASSERT_TRUE(action());  // creates what is allocated once and kept
  bool hasFailed = true;
  for (std::ptrdiff_t number = 0; hasFailed; ++number) {
    const std::ptrdiff_t before = faults::liveAllocations();
    bool isDone = false;
    {
      const FailingAllocation allocation(number);
      try {
        isDone = action();
      } catch (const std::bad_alloc&) {
        isDone = true;
      }
      hasFailed = allocation.hasFailed();
    }
    ASSERT_TRUE(isDone) << "allocation " << number;
    ASSERT_EQ(faults::liveAllocations(), before) << "allocation " << number;
    check();
    ASSERT_TRUE(number > 0 || hasFailed) << "nothing was allocated";
  }
  ASSERT_TRUE(action());
}

// Counts the characters written to it and allocates nothing.
class Counter final : public std::streambuf {
 public:
  std::streamsize count = 0;

 protected:
  std::streamsize xsputn(const char* /*text*/, std::streamsize size) override {
    count += size;
    return size;
  }
};

// The last allocation of this scan is that of its entry, after the message about another entry.
TEST(ScanWithFailingAllocations, WritesItsMessages) {
  const auto block = recording::atom(
      "ZRKM", recording::atom("JUNK", "") + recording::atom("DATA", recording::Bytes(24, '!')));
  Counter counter;
  auto* const before = std::cerr.rdbuf(&counter);
  std::streamsize written = 0;
  for (std::ptrdiff_t number = 0; number >= 0; ++number) {
    std::istringstream in(block);
    ZRKMetaData::MetaDataLocations locations;
    counter.count = 0;
    const FailingAllocation allocation(number);
    try {
      ZRKMetaData::scanAtoms(in, locations);
    } catch (const std::bad_alloc&) {
      written = counter.count;
    }
    if (!allocation.hasFailed()) break;
  }
  std::cerr.rdbuf(before);
  EXPECT_EQ(written, 49);
}

// A copy and a comparison of an image read as many bytes as it states.
TEST(ImagesWithFailingAllocations, StateNoBytesThatTheyLack) {
  std::istringstream in(recording::cursorImageRecord(1, 7, 0, 0, recording::Bytes(1000, '!')));
  failEachAllocation(
      [&in] {
        in.clear();
        in.seekg(0);
        double seconds = 0;
        ZRKMetaData::CursorImage image;
        try {
          readRecord(in, seconds, &image);
        } catch (const std::bad_alloc&) {
          EXPECT_EQ(ZRKMetaData::CursorImage(image), image);
          throw;
        }
        return image.m_dataSize != 0;
      },
      [] {});
}

class FailingAllocations : public testing::Test {
 protected:
  static void add(Points& parameter, int from, int to) {
    for (int time = from; time < to; ++time) {
      parameter.addKeyFrame(RationalTime(2 * time), {1.0 * time, 0, 0}, RationalTime(1));
    }
  }

  boost::shared_ptr<Kestova::ThreadSafe> project = boost::make_shared<Kestova::ThreadSafe>();
};

TEST_F(FailingAllocations, NeverYieldAPartlyLoadedParameter) {
  const testing_support::TempFolder folder;
  const VOXAScreenMetaDataLoader loader;
  const auto rate = boost::make_shared<hosting::FixedEditRate>(30U);
  const std::string file =
      folder.file("take.voxa", recording::atomBlock(recording::sampleEntries(0.5, 1)));
  const auto loads = [&](auto operation, unsigned char key) {
    const std::string stream = file + "/" + boost::uuids::to_string(recording::streamId(key));
    const auto whole = (loader.*operation)(stream, "name", project, rate);
    failEachAllocation(
        [&] { return (loader.*operation)(stream, "name", project, rate)->isEquivalentTo(*whole); },
        [] {});
  };
  loads(&VOXAScreenMetaDataLoader::loadPoints, 0xF0);
  loads(&VOXAScreenMetaDataLoader::loadCursorImagePaths, 0xF1);
  loads(&VOXAScreenMetaDataLoader::loadStrings, 0xF9);
}

TEST_F(FailingAllocations, OfACloneKeepTheOriginal) {
  const auto original = boost::make_shared<Points>(project, "name", nullptr);
  add(*original, 0, 100);
  original->keyFrameAt(RationalTime(4))
      ->addMetaData("key", Kestova::Attribute<std::string>("a text that takes memory", project));
  failEachAllocation(
      [&] {
        const std::unique_ptr<Points> copy(original->clone());
        return copy->isEquivalentTo(*original);
      },
      [&] { ASSERT_EQ(original->numKeyFrames(), 100U); });
}

// A stream sets its state if an allocation in it fails.
TEST_F(FailingAllocations, OfSerialisationSetTheStreamStateOrThrow) {
  const auto parameter = boost::make_shared<Points>(project, "name", nullptr);
  add(*parameter, 0, 100);
  const auto write = [&](std::ostream& out) {
    Kestova::XMLOptions options(out);
    parameter->toXML(options, 0, "");
    parameter->toJSON(Kestova::JSONOptions(out), 0, "", "");
  };
  std::ostringstream whole;
  write(whole);
  failEachAllocation(
      [&] {
        std::ostringstream out;
        write(out);
        return out.fail() || out.str() == whole.str();
      },
      [] {});
}

TEST_F(FailingAllocations, LeaveAParameterUnchanged) {
  using Change = void (*)(Points&);
  for (const Change change : {
           Change([](Points& points) { add(points, 200, 201); }),
           Change([](Points& points) { add(points, -1, 0); }),
           Change(
               [](Points& points) { points.addKeyFrame(RationalTime(101), {}, RationalTime(0)); }),
           Change([](Points& points) {
             points.addKeyFrame(RationalTime(201, 2), {}, RationalTime(0));
           }),
           Change([](Points& points) { points.moveKeyFrame(RationalTime(0), RationalTime(303)); }),
       }) {
    for (const int count : {64, 100, 128}) {
      const auto original = boost::make_shared<Points>(project, "name", nullptr);
      add(*original, 0, count);
      bool hasFailed = true;
      for (std::ptrdiff_t number = 0; hasFailed; ++number) {
        const std::unique_ptr<Points> changed(original->clone());
        {
          const FailingAllocation allocation(number);
          try {
            change(*changed);
          } catch (const std::bad_alloc&) {
          }
          hasFailed = allocation.hasFailed();
        }
        ASSERT_NE(changed->isEquivalentTo(*original), !hasFailed) << count << " " << number;
        if (hasFailed) change(*changed);
      }
    }
  }
}

}  // namespace
