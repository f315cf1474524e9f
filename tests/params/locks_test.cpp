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

  // True when `query`, run by another thread, waits as long as this one writes.
  template <class Query>
  bool waits(Query query) {
    std::future<void> done;
    bool isWaiting = false;
    {
      const WriteLock lock(shared->mutex());
      done = std::async(std::launch::async, query);
      isWaiting = done.wait_for(30ms) == std::future_status::timeout;
    }
    done.get();
    return isWaiting;
  }
};

TEST_F(Locking, IsDoneByTheQueriesThatSaySo) {
  EXPECT_TRUE(waits([this] { shared->keyFrameExists(T(10)); }));
  EXPECT_TRUE(waits([this] { shared->previousKeyFrameTime(T(10)); }));
  EXPECT_TRUE(waits([this] { shared->nextKeyFrameTime(T(10)); }));
  EXPECT_TRUE(waits([this] { shared->keyFrameAt(T(10)); }));
  EXPECT_TRUE(waits([this] { shared->firstKeyFrameTime(); }));
  EXPECT_TRUE(waits([this] { shared->hasKeyFrameIn({T(10), T(0)}); }));
  EXPECT_TRUE(waits([this] { shared->valueAt(T(10)); }));
  EXPECT_TRUE(waits([this] { delete shared->clone(); }));
  EXPECT_TRUE(waits([this] { shared->identifier()->value(); }));
  EXPECT_TRUE(waits([this] { delete shared->identifier()->clone(); }));
}

TEST_F(Locking, IsLeftToTheCallerByTheOthers) {
  EXPECT_FALSE(waits([this] { shared->numKeyFrames(); }));
  EXPECT_FALSE(waits([this] { shared->keyFrameTimes(); }));
  EXPECT_FALSE(waits([this] { shared->identifier()->valueString(); }));
  EXPECT_FALSE(waits([this] { shared->identifier()->setValue("x"); }));
}

TEST_F(Locking, LetsTheWriterUseEveryOperation) {
  auto done = std::async(std::launch::async, [this] {
    const WriteLock lock(shared->mutex());
    shared->addKeyFrame(T(30), 3, T(0));
    shared->moveKeyFrame(T(30), T(40));
    shared->shiftKeyFrames(T(1), [](const RationalTime&) { return true; });
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

TEST_F(Locking, WithoutAProjectIsNone) {
  project.reset();
  EXPECT_EQ(shared->mutex(), nullptr);
  EXPECT_EQ(shared->valueAt(T(10)), 10);
  shared->addMetaData("key", Attribute<std::string>("text", project));
  EXPECT_EQ(shared->metaDataMap()->size(), 1U);
}

TEST_F(Locking, LetsReadersSeeWholeStatesOfAWritersWork) {
  add({15});
  std::atomic<bool> isOver{false};
  std::thread reader([&] {
    while (!isOver) {
      const int value = shared->valueAt(T(10));
      EXPECT_TRUE(value == 10 || value == 11) << value;
      shared->keyFrameExists(T(15));
      const boost::shared_ptr<LeftParameter<int>> copy(shared->clone());
      EXPECT_NE(copy->numKeyFrames(), 2U);
    }
  });
  for (int round = 0; round < 300; ++round) {
    const WriteLock lock(shared->mutex());
    shared->removeKeyFrame(T(15));
    shared->setKeyFrameValue(T(10), 10 + round % 2);
    add({15});
  }
  isOver = true;
  reader.join();
}

}  // namespace
}  // namespace Kestova
