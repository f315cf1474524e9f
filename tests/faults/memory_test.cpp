// Every allocation of an operation fails in turn.
#include <gtest/gtest.h>

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <iostream>
#include <sstream>

#include "ZRKMetaData/src/ZRKMScan.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/LeftParameter.h"
#include "tests/faults/Memory.h"
#include "tests/support/TempFolder.h"
#include "tools/recording/Sample.h"

namespace {

using faults::Fuse;
using Kestova::LeftParameter;
using Kestova::RationalTime;
using Points = LeftParameter<Kestova::Point>;

// Runs `action`, which cleans up after itself, with each of its allocations failing in turn; calls
// `check` after each failure. An action that gets by without a memory is right as well, if it says
// so by returning true.
template <class Action, class Check>
void failEachAllocation(Action action, Check check) {
  ASSERT_TRUE(action());  // what is made once and kept is made now
  bool isBlown = true;
  for (std::ptrdiff_t number = 0; isBlown; ++number) {
    const std::ptrdiff_t before = faults::liveAllocations();
    bool isDone = false;
    {
      const Fuse fuse(number);
      try {
        isDone = action();
      } catch (const std::bad_alloc&) {
        isDone = true;
      }
      isBlown = fuse.isBlown();
    }
    ASSERT_TRUE(isDone) << "allocation " << number;
    ASSERT_EQ(faults::liveAllocations(), before) << "allocation " << number;
    check();
    ASSERT_TRUE(number > 0 || isBlown) << "nothing was allocated";
  }
  ASSERT_TRUE(action());
}

// Counts what is written to it, without memory.
class Counter final : public std::streambuf {
 public:
  std::streamsize count = 0;

 protected:
  std::streamsize xsputn(const char* /*text*/, std::streamsize size) override {
    count += size;
    return size;
  }
};

// The last allocation of this scan is the one for its entry, behind the message of another.
TEST(ScanFaults, LeaveNoMessageUnwritten) {
  const auto block = recording::atom(
      "ZRKM", recording::atom("JUNK", "") + recording::atom("DATA", recording::Bytes(24, '!')));
  Counter counter;
  auto* const before = std::cerr.rdbuf(&counter);
  std::streamsize written = 0;
  for (std::ptrdiff_t number = 0; number >= 0; ++number) {
    std::istringstream in(block);
    ZRKMetaData::MetaDataLocations locations;
    counter.count = 0;
    const Fuse fuse(number);
    try {
      ZRKMetaData::scanAtoms(in, locations);
    } catch (const std::bad_alloc&) {
      written = counter.count;
    }
    if (!fuse.isBlown()) break;
  }
  std::cerr.rdbuf(before);
  EXPECT_EQ(written, 49);
}

class Rate final : public Kestova::ProjectEditRate {
 public:
  boost::rational<unsigned int> editRate() const override { return 30; }
};

class MemoryFaults : public testing::Test {
 protected:
  static void add(Points& parameter, int from, int to) {
    for (int time = from; time < to; ++time) {
      parameter.addKeyFrame(RationalTime(2 * time), {1.0 * time, 0, 0}, RationalTime(1));
    }
  }

  boost::shared_ptr<Kestova::ThreadSafe> project = boost::make_shared<Kestova::ThreadSafe>();
};

TEST_F(MemoryFaults, LeaveNothingOfALoadButTheWholeOne) {
  const testing_support::TempFolder folder;
  const VOXAScreenMetaDataLoader loader;
  const boost::shared_ptr<const Kestova::ProjectEditRate> rate = boost::make_shared<Rate>();
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

TEST_F(MemoryFaults, LeaveTheOriginalOfACopyAlone) {
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

// A stream that has no memory says so in its state.
TEST_F(MemoryFaults, OfSerialisationShowInTheStreamOrAreThrown) {
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

TEST_F(MemoryFaults, ChangeNothingOfAParameter) {
  using Change = void (*)(Points&);
  for (const Change change : {
           Change([](Points& points) { add(points, 200, 201); }),
           Change([](Points& points) { add(points, -1, 0); }),
           Change(
               [](Points& points) { points.addKeyFrame(RationalTime(101), {}, RationalTime(0)); }),
           Change([](Points& points) { points.moveKeyFrame(RationalTime(0), RationalTime(303)); }),
       }) {
    for (const int count : {64, 100, 128}) {
      const auto original = boost::make_shared<Points>(project, "name", nullptr);
      add(*original, 0, count);
      bool isBlown = true;
      for (std::ptrdiff_t number = 0; isBlown; ++number) {
        const std::unique_ptr<Points> changed(original->clone());
        {
          const Fuse fuse(number);
          try {
            change(*changed);
          } catch (const std::bad_alloc&) {
          }
          isBlown = fuse.isBlown();
        }
        ASSERT_NE(changed->isEquivalentTo(*original), !isBlown) << count << " " << number;
        if (isBlown) change(*changed);
      }
    }
  }
}

}  // namespace
