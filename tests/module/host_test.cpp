// A host that knows the module by its public headers alone. Built without optimisation, so that
// whatever is not inline has to be found in the libraries.
#include <gtest/gtest.h>

#include <atomic>
#include <boost/smart_ptr/make_shared.hpp>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "host/Kestova/KeyFrameException.h"
#include "host/Kestova/MediaFileStats.h"
#include "host/Kestova/ReadWriteMutex.h"
#include "host/Kestova/ScreenMetaData.h"
#include "loader/VOXAScreenMetaDataFilenameSetter.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/LeftParameter.h"
#include "params/ParameterIterator.h"
#include "stats/VOXAStatsLoader.h"
#include "tests/support/TempFolder.h"
#include "tools/recording/Movie.h"
#include "tools/recording/Sample.h"

namespace {

using Kestova::Parameter;
using Kestova::ParameterInterface;
using Kestova::RationalTime;
using WriteLock = Kestova::ReadWriteMutex::ScopedWriteLock;

class Thirty final : public Kestova::ProjectEditRate {
 public:
  boost::rational<unsigned int> editRate() const override { return 30; }
};

// The host's slots, by their short keys.
class Slots final : public Kestova::ScreenMetaData {
 public:
  bool isEmpty() const override { return names.empty(); }
  void clear() override { names.clear(); }
  bool holds(const std::string&) const override { return false; }
#define KESTOVA_SLOT(KEY)                                     \
  void set##KEY##Filename(const std::string& name) override { \
    names[#KEY] = name;                                       \
  }
  KESTOVA_SLOT(F0)
  KESTOVA_SLOT(F1)
  KESTOVA_SLOT(F2)
  KESTOVA_SLOT(F3)
  KESTOVA_SLOT(F4)
  KESTOVA_SLOT(F5)
  KESTOVA_SLOT(F6)
  KESTOVA_SLOT(FB)
  KESTOVA_SLOT(F7)
  KESTOVA_SLOT(F8)
  KESTOVA_SLOT(F9)
  KESTOVA_SLOT(FA)
  KESTOVA_SLOT(01)
  std::map<std::string, std::string> names;
};

class Host : public testing::Test {
 protected:
  // Loads the stream of a slot as the type that our samples keep there.
  boost::shared_ptr<ParameterInterface> load(const std::string& slot, const std::string& name) {
    const Kestova::ScreenMetaDataLoader& loader = m_loader;
    if (slot == "F0") return loader.loadPoints(name, slot, project, rate);
    if (slot == "F1") return loader.loadCursorImagePaths(name, slot, project, rate);
    if (slot == "F2") return loader.loadCursorOpacity(name, slot, project, rate);
    if (slot == "F3") return loader.loadKeystrokeData(name, slot, project, rate);
    if (slot == "F5") return loader.loadRects(name, slot, project, rate);
    if (slot == "F6") return loader.loadInts(name, slot, project, rate);
    if (slot == "F8") return loader.loadInt64(name, slot, project, rate);
    if (slot == "F9") return loader.loadStrings(name, slot, project, rate);
    throw std::out_of_range(slot);
  }

  std::map<std::string, std::string> filedStreams() {
    const std::unique_ptr<Kestova::StatsLoader> statsLoader(new VOXAStatsLoader);
    EXPECT_TRUE(statsLoader->canOpenFile(recording));
    Kestova::MediaFileStats stats;
    statsLoader->loadStats(recording, &stats);
    const std::unique_ptr<Kestova::ScreenMetaDataFilenameSetter> setter(
        VOXAScreenMetaDataFilenameSetter::create());
    Slots slots;
    setter->initScreenMetaData(&slots);
    for (const auto& track : stats.trackStats()) {
      for (const std::string& name : track.metaDataFilenames) {
        setter->setScreenMetaData(&slots, name);
      }
    }
    return slots.names;
  }

  testing_support::TempFolder folder;
  const std::string recording =
      folder.file("take.voxa", recording::sampleMovie(20) +
                                   recording::atomBlock(recording::sampleEntries(20, 1)));
  boost::shared_ptr<Kestova::ThreadSafe> project = boost::make_shared<Kestova::ThreadSafe>();
  boost::shared_ptr<Kestova::ProjectEditRate> rate = boost::make_shared<Thirty>();

 private:
  VOXAScreenMetaDataLoader m_loader;
};

TEST_F(Host, WalksTheWholeRoadOfARecording) {
  const auto streams = filedStreams();
  EXPECT_EQ(streams.size(), recording::sampleTypes().size());
  for (const auto& [slot, name] : streams) {
    EXPECT_TRUE(VOXAScreenMetaDataLoader().fileExists(name));
    const auto parameter = load(slot, name);
    EXPECT_GT(parameter->numKeyFrames(), 1U) << slot;
    EXPECT_EQ(parameter->name(), slot);
    EXPECT_EQ(parameter->description(), "");
    std::ostringstream xml;
    Kestova::XMLOptions options(xml);
    parameter->toXML(options, 0, "");
    EXPECT_NE(xml.str().find("<Keyframe  time=\"0\""), std::string::npos) << slot;
  }
}

TEST_F(Host, EvaluatesChangesAndWritesWhatItLoaded) {
  const auto points =
      boost::dynamic_pointer_cast<Parameter<Kestova::Point>>(load("F0", filedStreams()["F0"]));
  ASSERT_TRUE(points);
  EXPECT_EQ(points->numKeyFrames(), 601U);
  std::uint32_t count = 0;
  for (Kestova::ParameterIterator<Kestova::Point> at(*points); !at.atEnd(); at.next()) {
    EXPECT_EQ(at.keyFrame()->value(), points->valueAt(at.time()));
    ++count;
  }
  EXPECT_EQ(count, 601U);

  const WriteLock lock(points->mutex());
  const auto removed = points->removeKeyFrame(RationalTime(0));
  const boost::shared_ptr<Kestova::KeyFrame<Kestova::Point>> copy(removed->clone());
  copy->setTime(RationalTime(-5));
  points->addKeyFrame(copy);
  EXPECT_EQ(points->firstKeyFrame()->time(), RationalTime(-5));
  EXPECT_THROW(points->removeKeyFrame(RationalTime(0)), Kestova::KeyFrameException);
  EXPECT_EQ(points->interpolater(), Kestova::LeftInterpolater<Kestova::Point>::getInstance());

  const auto opacity =
      boost::dynamic_pointer_cast<Parameter<double>>(load("F2", filedStreams()["F2"]));
  std::ostringstream json;
  opacity->toJSON(Kestova::JSONOptions(json), 0, "", "");
  EXPECT_EQ(json.str().find("\"F2\" : {\n  \"type\" : \"double\",\n"), 0U);
}

TEST_F(Host, CatchesTheModulesExceptionsByTheirTypes) {
  Kestova::MediaFileStats stats;
  EXPECT_THROW(VOXAStatsLoader().loadStats(folder.name("absent.voxa"), &stats),
               Kestova::KestovaException);
  EXPECT_THROW(load("F6", filedStreams()["F0"] + "\xFF"), std::runtime_error);
  const boost::shared_ptr<ParameterInterface> empty = load("F6", folder.file("a.voxa", "") + "/x");
  const auto ints = boost::dynamic_pointer_cast<Parameter<int>>(empty);
  EXPECT_THROW(ints->valueAt(RationalTime(0)), Kestova::KeyFrameException);
}

using Threads = Host;

TEST_F(Threads, LoadDifferentStreamsOfOneRecordingAtOnce) {
  const auto streams = filedStreams();
  std::vector<std::thread> threads;
  for (const auto& stream : streams) {
    threads.emplace_back([this, &stream] {
      for (int round = 0; round < 10; ++round) {
        EXPECT_GT(load(stream.first, stream.second)->numKeyFrames(), 1U) << stream.first;
      }
    });
  }
  EXPECT_EQ(threads.size(), 8U);
  for (std::thread& thread : threads) thread.join();
}

// One loader object serves all threads, while others load streams of the same recording.
TEST_F(Threads, LoadStatisticsOfOneRecordingAtOnce) {
  const auto streams = filedStreams();
  const std::size_t streamCount = recording::sampleTypes().size();
  VOXAStatsLoader statsLoader;
  std::vector<std::thread> threads;
  for (int n = 0; n < 4; ++n) {
    threads.emplace_back([&] {
      for (int round = 0; round < 10; ++round) {
        Kestova::MediaFileStats stats;
        EXPECT_TRUE(statsLoader.canOpenFile(recording));
        statsLoader.loadStats(recording, &stats);
        EXPECT_EQ(stats.trackStats().at(0).metaDataFilenames.size(), streamCount);
        EXPECT_EQ(filedStreams(), streams);
        EXPECT_GT(load("F0", streams.at("F0"))->numKeyFrames(), 1U);
        EXPECT_THROW(statsLoader.loadStats(folder.name("absent.voxa"), &stats),
                     Kestova::KestovaException);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// Readers evaluate, search, copy and write, others watch, and one changes all the while.
TEST_F(Threads, UseAParameterWhileAWriterChanges) {
  const auto points =
      boost::dynamic_pointer_cast<Parameter<Kestova::Point>>(load("F0", filedStreams()["F0"]));
  std::atomic<bool> isOver{false};
  std::vector<std::thread> threads;
  const auto repeat = [&](auto action) {
    threads.emplace_back([&isOver, action] {
      for (std::int64_t round = 0; !isOver; ++round) action(RationalTime(round % 700));
    });
  };
  for (int n = 0; n < 2; ++n) {
    repeat([&](const RationalTime& time) {
      points->valueAt(time);
      points->hasKeyFrameIn({time, RationalTime(3)});
      points->keyFrameExists(points->nextKeyFrameTime(time));
    });
  }
  repeat([&](const RationalTime&) {
    const boost::shared_ptr<Kestova::SubProject> copy(
        dynamic_cast<Kestova::SubProject*>(points->clone()));
    const Kestova::ReadWriteMutex::ScopedReadLock lock(points->mutex());
    std::ostringstream out;
    Kestova::XMLOptions options(out);
    points->toXML(options, 0, "");
    points->toJSON(Kestova::JSONOptions(out), 0, "", "");
  });
  std::atomic<int> told{0};
  repeat([&](const RationalTime&) {
    struct Watcher final : Kestova::Observer {
      explicit Watcher(std::atomic<int>& told_) : told(told_) {}
      void changed() override { ++told; }
      std::atomic<int>& told;
    } watcher(told);
    points->attach(&watcher);
    const WriteLock lock(points->mutex());  // nobody is calling it any more
    points->detach(&watcher);
  });

  const auto isOdd = [](const RationalTime& time) { return time.numerator() % 2 != 0; };
  for (int round = 0; round < 20 || told == 0; ++round) {
    const WriteLock lock(points->mutex());
    points->removeKeyFrame(RationalTime(10));
    points->addKeyFrame(RationalTime(10), {1.0, 2.0, 0.0}, RationalTime(0));
    points->moveKeyFrame(RationalTime(12), RationalTime(25, 2));
    points->moveKeyFrame(RationalTime(25, 2), RationalTime(12));
    points->replaceKeyFrame(RationalTime(14), points->removeKeyFrame(RationalTime(16)));
    points->addKeyFrame(RationalTime(16), {5.0, 6.0, 0.0}, RationalTime(0));
    points->setValue({3.0, 4.0, 0.0}, RationalTime(20));
    points->shiftKeyFrames(RationalTime(1, 2), isOdd);
    points->shiftKeyFrames(RationalTime(-1, 2),
                           [](const RationalTime& time) { return !time.isWhole(); });
  }
  isOver = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(points->numKeyFrames(), 601U);
}

}  // namespace
