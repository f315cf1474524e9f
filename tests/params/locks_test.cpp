#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "tests/params/Values.h"

namespace Kestova {
namespace {

using namespace std::chrono_literals;
using WriteLock = ReadWriteMutex::ScopedWriteLock;

class Locking : public Fixture<int> {
 protected:
  void SetUp() override { add({10, 20}); }

  // True when `query` on another thread blocks while this thread holds the write lock.
  template <class Query>
  bool blocks(Query query) {
    std::future<void> done;
    bool isBlocked = false;
    {
      const WriteLock lock(shared->mutex());
      done = std::async(std::launch::async, query);
      isBlocked = done.wait_for(30ms) == std::future_status::timeout;
    }
    done.get();
    return isBlocked;
  }
};

TEST_F(Locking, IsDoneByReadLockedQueries) {
  EXPECT_TRUE(blocks([this] { shared->keyFrameExists(time(10)); }));
  EXPECT_TRUE(blocks([this] { shared->previousKeyFrameTime(time(10)); }));
  EXPECT_TRUE(blocks([this] { shared->nextKeyFrameTime(time(10)); }));
  EXPECT_TRUE(blocks([this] { shared->keyFrameAt(time(10)); }));
  EXPECT_TRUE(blocks([this] { shared->firstKeyFrameTime(); }));
  EXPECT_TRUE(blocks([this] { shared->hasKeyFrameIn({time(10), time(0)}); }));
  EXPECT_TRUE(blocks([this] { shared->valueAt(time(10)); }));
  EXPECT_TRUE(blocks([this] { delete shared->clone(); }));
  EXPECT_TRUE(blocks([this] { shared->identifier()->value(); }));
  EXPECT_TRUE(blocks([this] { delete shared->identifier()->clone(); }));
}

TEST_F(Locking, IsLeftToTheCallerByOtherOperations) {
  EXPECT_FALSE(blocks([this] { shared->numKeyFrames(); }));
  EXPECT_FALSE(blocks([this] { shared->keyFrameTimes(); }));
  EXPECT_FALSE(blocks([this] { shared->identifier()->valueString(); }));
  EXPECT_FALSE(blocks([this] { shared->identifier()->setValue("x"); }));
}

TEST_F(Locking, LetsTheWriterUseEveryOperation) {
  auto done = std::async(std::launch::async, [this] {
    const WriteLock lock(shared->mutex());
    shared->addKeyFrame(time(30), 3, time(0));
    shared->moveKeyFrame(time(30), time(40));
    shared->shiftKeyFrames(time(1), [](const RationalTime&) { return true; });
    shared->addMetaData("key", Attribute<std::string>("text", project));
    delete shared->clone();
  });
  ASSERT_EQ(done.wait_for(30s), std::future_status::ready);
  done.get();
}

TEST_F(Locking, KeepsTheProjectAlive) {
  const boost::weak_ptr<ThreadSafe> watched = project;
  const auto mutex = shared->mutex();
  project.reset();
  EXPECT_FALSE(watched.expired());
}

TEST_F(Locking, WithoutAProjectDoesNothing) {
  project.reset();
  EXPECT_EQ(shared->mutex(), nullptr);
  EXPECT_EQ(shared->valueAt(time(10)), 10);
  shared->addMetaData("key", Attribute<std::string>("text", project));
  EXPECT_EQ(shared->metaDataMap()->size(), 1U);
}

TEST_F(Locking, LetsReadersSeeOnlyConsistentStates) {
  add({15});
  std::atomic<bool> isOver{false};
  std::thread reader([&] {
    while (!isOver) {
      const int value = shared->valueAt(time(10));
      EXPECT_TRUE(value == 10 || value == 11) << value;
      shared->keyFrameExists(time(15));
      const boost::shared_ptr<LeftParameter<int>> copy(shared->clone());
      EXPECT_NE(copy->numKeyFrames(), 2U);
    }
  });
  for (int round = 0; round < 300; ++round) {
    const WriteLock lock(shared->mutex());
    shared->removeKeyFrame(time(15));
    shared->setKeyFrameValue(time(10), 10 + round % 2);
    add({15});
  }
  isOver = true;
  reader.join();
}

}  // namespace
}  // namespace Kestova
