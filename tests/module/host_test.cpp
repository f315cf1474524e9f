// Uses the module as a host does, through its public headers. Built without optimisation, so that
// every function that is not inline is resolved in the libraries.
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
#include "loader/VOXAScreenMetaDataFilenameSetter.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/Parameter.h"
#include "params/ParameterIterator.h"
#include "stats/VOXAStatsLoader.h"
#include "tests/support/Slots.h"
#include "tests/support/TempFolder.h"
#include "tools/host/FixedEditRate.h"
#include "tools/recording/Movie.h"
#include "tools/recording/Sample.h"

namespace {

using Kestova::Parameter;
using Kestova::ParameterInterface;
using Kestova::RationalTime;
using WriteLock = Kestova::ReadWriteMutex::ScopedWriteLock;

class Host : public testing::Test {
 protected:
  // Loads the stream of a slot as the type that sample recordings have there.
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

  std::map<std::string, std::string> streamNames() {
    const std::unique_ptr<Kestova::StatsLoader> statsLoader(new VOXAStatsLoader);
    EXPECT_TRUE(statsLoader->canOpenFile(recording));
    Kestova::MediaFileStats stats;
    statsLoader->loadStats(recording, &stats);
    const std::unique_ptr<Kestova::ScreenMetaDataFilenameSetter> setter(
        VOXAScreenMetaDataFilenameSetter::create());
    testing_support::Slots slots;
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
      folder.file("t\xC3\xA9ke.voxa", recording::sampleMovie(20) +
                                          recording::atomBlock(recording::sampleEntries(20, 1)));
  boost::shared_ptr<Kestova::ThreadSafe> project = boost::make_shared<Kestova::ThreadSafe>();
  boost::shared_ptr<Kestova::ProjectEditRate> rate =
      boost::make_shared<hosting::FixedEditRate>(30U);

 private:
  VOXAScreenMetaDataLoader m_loader;
};

TEST_F(Host, FindsLoadsAndWritesEveryStreamOfARecording) {
  const auto streams = streamNames();
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

TEST_F(Host, EvaluatesChangesAndWritesParameters) {
  const auto points =
      boost::dynamic_pointer_cast<Parameter<Kestova::Point>>(load("F0", streamNames()["F0"]));
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
      boost::dynamic_pointer_cast<Parameter<double>>(load("F2", streamNames()["F2"]));
  std::ostringstream json;
  opacity->toJSON(Kestova::JSONOptions(json), 0, "", "");
  EXPECT_EQ(json.str().find("\"F2\" : {\n  \"type\" : \"double\",\n"), 0U);
}

TEST_F(Host, CatchesExceptionsByType) {
  Kestova::MediaFileStats stats;
  EXPECT_THROW(VOXAStatsLoader().loadStats(folder.name("absent.voxa"), &stats),
               Kestova::KestovaException);
  EXPECT_THROW(load("F6", streamNames()["F0"] + "\xFF"), std::runtime_error);
  const boost::shared_ptr<ParameterInterface> empty = load("F6", folder.file("a.voxa", "") + "/x");
  const auto ints = boost::dynamic_pointer_cast<Parameter<int>>(empty);
  EXPECT_THROW(ints->valueAt(RationalTime(0)), Kestova::KeyFrameException);
}

using Threads = Host;

TEST_F(Threads, LoadDifferentStreamsConcurrently) {
  const auto streams = streamNames();
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

// The threads share one loader and load streams of the same recording meanwhile.
TEST_F(Threads, LoadStatisticsConcurrently) {
  const auto streams = streamNames();
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
        EXPECT_EQ(streamNames(), streams);
        EXPECT_GT(load("F0", streams.at("F0"))->numKeyFrames(), 1U);
        EXPECT_THROW(statsLoader.loadStats(folder.name("absent.voxa"), &stats),
                     Kestova::KestovaException);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// Threads evaluate, search, copy, serialise and observe a parameter that another thread changes.
TEST_F(Threads, UseAParameterThatAnotherThreadChanges) {
  const auto points =
      boost::dynamic_pointer_cast<Parameter<Kestova::Point>>(load("F0", streamNames()["F0"]));
  std::atomic<bool> isDone{false};
  std::vector<std::thread> threads;
  const auto repeat = [&](auto action) {
    threads.emplace_back([&isDone, action] {
      for (std::int64_t round = 0; !isDone; ++round) action(RationalTime(round % 700));
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
  std::atomic<int> notifyCount{0};
  repeat([&](const RationalTime&) {
    struct Counter final : Kestova::Observer {
      explicit Counter(std::atomic<int>& count_) : count(count_) {}
      void changed() override { ++count; }
      std::atomic<int>& count;
    } counter(notifyCount);
    points->attach(&counter);
    const WriteLock lock(points->mutex());  // waits until no call is in progress
    points->detach(&counter);
  });

  const auto isOdd = [](const RationalTime& time) { return time.numerator() % 2 != 0; };
  for (int round = 0; round < 20 || notifyCount == 0; ++round) {
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
  isDone = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(points->numKeyFrames(), 601U);
}

}  // namespace
