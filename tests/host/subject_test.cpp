#include <gtest/gtest.h>

#include <atomic>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "host/Kestova/Subject.h"
#include "host/Kestova/ThreadSafe.h"

namespace Kestova {
namespace {

static_assert(sizeof(Subject) ==
                  sizeof(Observable) + sizeof(boost::weak_ptr<const ThreadSafe>) + sizeof(void*),
              "a subject without observers is its owner and one pointer");

// Appends its letter to a log, then runs an action.
class Named final : public Observer {
 public:
  Named(std::string& log, char letter, std::function<void()> then = {})
      : m_log(log), m_letter(letter), m_then(std::move(then)) {}
  void changed() override {
    m_log += m_letter;
    if (m_then) m_then();
  }

 private:
  std::string& m_log;
  const char m_letter;
  const std::function<void()> m_then;
};

class Subjects : public testing::Test {
 protected:
  std::string told() {
    log.clear();
    subject.notify();
    return log;
  }

  std::string log;
  Subject subject{boost::weak_ptr<const ThreadSafe>()};
  Named a{log, 'a'};
  Named b{log, 'b'};
  Named c{log, 'c'};
};

TEST_F(Subjects, CallEachObserverOnceInOrderOfAttaching) {
  EXPECT_EQ(told(), "");
  subject.attach(&b);
  subject.attach(&a);
  subject.attachWithoutNotifyDelay(&b);  // is attached already and keeps its position
  EXPECT_EQ(told(), "ba");
  subject.detach(&b);
  subject.detach(&c);  // was never attached
  EXPECT_EQ(told(), "a");
  subject.attach(&b);
  EXPECT_EQ(told(), "ab");
}

TEST_F(Subjects, DoNotCallAnObserverThatIsDetachedDuringTheRound) {
  Named remover(log, 'r', [&] { subject.detach(&b); });
  subject.attach(&a);
  subject.attach(&remover);
  subject.attach(&b);
  subject.attach(&c);
  EXPECT_EQ(told(), "arc");
}

TEST_F(Subjects, CallAnObserverThatIsAttachedDuringTheRoundInTheNextOne) {
  bool isDone = false;
  Named adder(log, '+', [&] {
    if (std::exchange(isDone, true)) return;
    subject.detach(&a);  // `a` was called before; attached again, it waits as well
    subject.attach(&a);
    subject.attach(&b);
  });
  subject.attach(&a);
  subject.attach(&adder);
  EXPECT_EQ(told(), "a+");
  EXPECT_EQ(told(), "+ab");
}

TEST_F(Subjects, LetAnObserverDetachItself) {
  Named once(log, '1', [&] { subject.detach(&once); });
  subject.attach(&once);
  subject.attach(&a);
  EXPECT_EQ(told(), "1a");
  EXPECT_EQ(told(), "a");
}

TEST_F(Subjects, MayBeNotifiedFromAnObserver) {
  int rounds = 0;
  Named again(log, '!', [&] {
    if (++rounds == 1) subject.notify();
  });
  subject.attach(&again);
  subject.attach(&a);
  EXPECT_EQ(told(), "!!aa");
}

TEST_F(Subjects, PropagateExceptionsOfObserversAndStayUsable) {
  Named thrower(log, '#', [] { throw std::domain_error("no"); });
  subject.attach(&a);
  subject.attach(&thrower);
  subject.attach(&b);
  EXPECT_THROW(told(), std::domain_error);
  EXPECT_EQ(log, "a#");
  subject.detach(&thrower);
  EXPECT_EQ(told(), "ab");
}

TEST_F(Subjects, SendOneNotificationPerBatch) {
  subject.attach(&a);
  subject.attachWithoutNotifyDelay(&b);
  {
    const auto outer = subject.disableNotifies();
    {
      auto inner = subject.disableNotifies();
      EXPECT_EQ(told(), "b");  // b is attached without delay
      EXPECT_EQ(told(), "b");
      inner.release();
      EXPECT_EQ(log, "b");  // the outer guard still holds
    }
    log.clear();
  }
  EXPECT_EQ(log, "a");
  EXPECT_EQ(told(), "ab");
}

TEST_F(Subjects, SendNothingForABatchWithoutChanges) {
  subject.attach(&a);
  { const auto guard = subject.disableNotifies(); }
  EXPECT_EQ(log, "");
}

TEST_F(Subjects, PropagateExceptionsFromReleaseButNotFromTheDestructor) {
  Named thrower(log, '#', [] { throw std::domain_error("no"); });
  subject.attach(&thrower);
  auto guard = subject.disableNotifies();
  told();
  EXPECT_THROW(guard.release(), std::domain_error);
  {
    const auto swallowing = subject.disableNotifies();
    told();
  }
  EXPECT_EQ(log, "#");
}

TEST_F(Subjects, CopyTheirOwnerButNoObservers) {
  subject.attach(&a);
  Subject copy(subject);
  copy.notify();
  EXPECT_EQ(log, "");
}

TEST_F(Subjects, AllowAnyThreadToAttachAndDetach) {
  std::atomic<bool> isOver{false};
  std::thread other([&] {
    std::string unused;
    while (!isOver) {
      subject.attach(&b);
      subject.detach(&b);
    }
  });
  std::string own;
  Named mine(own, 'm');
  subject.attach(&mine);
  for (int n = 0; n < 1000; ++n) subject.detach(&a), subject.attach(&a);
  isOver = true;
  other.join();
  EXPECT_EQ(told(), "a");
  EXPECT_EQ(own, "m");
}

// During a notification and during the release of a batch.
TEST_F(Subjects, MayBeDestroyedByAnObserver) {
  for (const bool isBatch : {false, true}) {
    log.clear();
    auto mortal = std::make_unique<Subject>(boost::weak_ptr<const ThreadSafe>());
    Named killer(log, 'k', [&] { mortal.reset(); });
    for (Named* const observer : {&a, &killer, &b}) mortal->attach(observer);
    if (isBatch) {
      auto batch = mortal->disableNotifies();
      mortal->notify();
      batch.release();
    } else {
      mortal->notify();
    }
    EXPECT_EQ(log, "ak");
    EXPECT_EQ(mortal, nullptr);
  }
}

}  // namespace
}  // namespace Kestova
