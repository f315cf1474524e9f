#include <gtest/gtest.h>

#include <atomic>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "host/Kestova/KestovaException.h"
#include "host/Kestova/ReadWriteMutex.h"

namespace Kestova {
namespace {

using namespace std::chrono_literals;
using ReadLock = ReadWriteMutex::ScopedReadLock;
using WriteLock = ReadWriteMutex::ScopedWriteLock;

// Runs `work` on a thread. Ends the test program if a lock is not acquired in time.
template <class Work>
void withinTime(Work work) {
  auto done = std::async(std::launch::async, work);
  if (done.wait_for(30s) != std::future_status::ready) {
    std::fputs("a lock was not acquired in 30 s\n", stderr);
    std::abort();
  }
  done.get();
}

class Locks : public testing::Test {
 protected:
  // Starts a writer and returns once it waits for the read lock of the caller.
  std::thread waitingWriter() {
    std::promise<void> started;
    auto isStarted = started.get_future();
    std::thread writer([this, &started] {
      started.set_value();
      const WriteLock lock(mutex);
      hasWritten = true;
    });
    isStarted.wait();
    std::this_thread::sleep_for(50ms);
    EXPECT_FALSE(hasWritten);
    return writer;
  }

  boost::shared_ptr<ReadWriteMutex> mutex = boost::make_shared<ReadWriteMutex>();
  std::atomic<bool> hasWritten{false};
};

TEST_F(Locks, NestOnTheThreadThatHoldsTheWriteLock) {
  withinTime([this] {
    const WriteLock write(mutex);
    const ReadLock read(mutex);
    const ReadLock readAgain(mutex);
    const WriteLock writeAgain(mutex);
  });
  withinTime([this] { const WriteLock free(mutex); });  // every lock was released
}

TEST_F(Locks, StayExclusiveUntilTheWriterReleasesTheLastLock) {
  auto write = std::make_unique<WriteLock>(mutex);
  auto read = std::make_unique<ReadLock>(mutex);
  write.reset();
  auto other = std::async(std::launch::async, [this] { const ReadLock lock(mutex); });
  EXPECT_EQ(other.wait_for(50ms), std::future_status::timeout);
  read.reset();
  withinTime([&] { other.get(); });
}

TEST_F(Locks, OfAReaderNestWhileAWriterWaits) {
  std::thread writer;
  withinTime([&] {
    const ReadLock first(mutex);
    writer = waitingWriter();
    const ReadLock second(mutex);
    EXPECT_FALSE(hasWritten);
  });
  withinTime([&] { writer.join(); });
  EXPECT_TRUE(hasWritten);
}

TEST_F(Locks, OfNewReadersQueueBehindAWaitingWriter) {
  auto first = std::make_unique<ReadLock>(mutex);
  std::thread writer = waitingWriter();
  auto sawWritten = std::async(std::launch::async, [this] {
    const ReadLock lock(mutex);
    return hasWritten.load();
  });
  EXPECT_EQ(sawWritten.wait_for(50ms), std::future_status::timeout);
  first.reset();
  withinTime([&] {
    writer.join();
    EXPECT_TRUE(sawWritten.get());
  });
}

TEST_F(Locks, ForWritingThrowOnAThreadThatHoldsAReadLock) {
  withinTime([this] {
    const ReadLock read(mutex);
    testing::internal::CaptureStderr();
    EXPECT_THROW(WriteLock{mutex}, KestovaException);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ReadWriteMutex: assertion failed: write lock asked for while holding only a read "
              "lock\n");
  });
  withinTime([this] { const WriteLock free(mutex); });
}

TEST_F(Locks, OfTwoMutexesAreIndependent) {
  const auto other = boost::make_shared<ReadWriteMutex>();
  withinTime([&] {
    const ReadLock read(mutex);
    const WriteLock write(other);
  });
}

TEST_F(Locks, ReachReadersWhileWritersNeverPause) {
  std::atomic<bool> isOver{false};
  std::vector<std::thread> writers;
  for (int n = 0; n < 2; ++n) {
    writers.emplace_back([&] {
      while (!isOver) const WriteLock lock(mutex);
    });
  }
  withinTime([this] {
    for (int round = 0; round < 100; ++round) const ReadLock lock(mutex);
  });
  isOver = true;
  for (std::thread& writer : writers) writer.join();
}

TEST_F(Locks, ExcludeEachOtherUnderLoad) {
  int balance = 0;
  std::vector<std::thread> threads;
  for (int n = 0; n < 4; ++n) {
    threads.emplace_back([&, n] {
      for (int round = 0; round < 2000; ++round) {
        if (n == 0 || round % 7 == 0) {
          const WriteLock lock(mutex);
          ++balance;
          std::this_thread::yield();
          --balance;
        } else {
          const ReadLock lock(mutex);
          EXPECT_EQ(balance, 0);
        }
      }
    });
  }
  withinTime([&] {
    for (std::thread& thread : threads) thread.join();
  });
}

}  // namespace
}  // namespace Kestova
