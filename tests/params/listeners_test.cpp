#include <boost/smart_ptr/bad_weak_ptr.hpp>
#include <functional>
#include <sstream>

#include "host/Kestova/KeyFrameListener.h"
#include "tests/params/Values.h"

namespace Kestova {
namespace {

// Writes "+10" and "-10" into a log, each behind its letter, then does what the test wants.
class Named final : public KeyFrameListener {
 public:
  Named(std::string& log, char letter) : m_log(log), m_letter(letter) {}

  void keyFrameAdded(const boost::shared_ptr<ParameterInterface>& parameter,
                     const RationalTime& time) override {
    note(parameter, '+', time);
  }
  void keyFrameRemoved(const boost::shared_ptr<ParameterInterface>& parameter,
                       const RationalTime& time) override {
    note(parameter, '-', time);
  }

  std::function<void()> then;

 private:
  void note(const boost::shared_ptr<ParameterInterface>& parameter, char what,
            const RationalTime& time) {
    std::ostringstream text;
    text << m_letter << what << time << ' ';
    m_log += text.str();
    EXPECT_EQ(parameter->name(), "name");
    if (then) then();
  }

  std::string& m_log;
  const char m_letter;
};

class Listeners : public Fixture<int> {
 protected:
  std::string taken() { return std::exchange(log, ""); }

  std::string log;
  Named a{log, 'a'};
  Named b{log, 'b'};
};

TEST_F(Listeners, AreToldOfKeyframesThatComeAndGo) {
  shared->addKeyFrameListener(&a);
  add({10, 20});
  EXPECT_EQ(taken(), "a+10 a+20 ");
  shared->moveKeyFrame(T(20), T(21));
  shared->setKeyFrameValue(T(21), 5);
  EXPECT_EQ(taken(), "");
  const auto replacement = boost::make_shared<KeyFrame<int>>(project, T(99), 7, T(0));
  shared->replaceKeyFrame(T(21), replacement);
  EXPECT_EQ(taken(), "a-21 a+21 ");
  shared->removeKeyFrame(T(10));
  EXPECT_EQ(taken(), "a-10 ");
  shared->shiftKeyFrames(T(4), [](const RationalTime&) { return true; });
  EXPECT_EQ(taken(), "a-21 a+25 ");
}

TEST_F(Listeners, AreCalledInOrderOnceForEachTimeTheyWereAdded) {
  shared->addKeyFrameListener(&b);
  shared->addKeyFrameListener(&a);
  shared->addKeyFrameListener(&b);
  add({1});
  EXPECT_EQ(taken(), "b+1 a+1 b+1 ");
  shared->removeKeyFrameListener(&b);
  add({2});
  EXPECT_EQ(taken(), "a+2 ");
}

TEST_F(Listeners, FollowTheObserversAndSeeTheChange) {
  struct Note final : Observer {
    explicit Note(std::string& log) : m_log(log) {}
    void changed() override { m_log += "! "; }
    std::string& m_log;
  } observer(log);
  shared->attach(&observer);
  shared->addKeyFrameListener(&a);
  a.then = [&] { EXPECT_TRUE(shared->keyFrameExists(T(1))); };
  add({1});
  EXPECT_EQ(taken(), "! a+1 ");
}

TEST_F(Listeners, ThatLeaveAreNotCalledAndThatJoinWait) {
  shared->addKeyFrameListener(&a);
  shared->addKeyFrameListener(&b);
  a.then = [&] {
    shared->removeKeyFrameListener(&b);
    a.then = nullptr;
    shared->addKeyFrameListener(&b);
  };
  add({1});
  EXPECT_EQ(taken(), "a+1 ");
  add({2});
  EXPECT_EQ(taken(), "a+2 b+2 ");
}

TEST_F(Listeners, MayChangeTheParameterAgain) {
  shared->addKeyFrameListener(&a);
  shared->addKeyFrameListener(&b);
  a.then = [&] {
    a.then = nullptr;
    shared->removeKeyFrame(T(1));
  };
  add({1});
  EXPECT_EQ(taken(), "a+1 a-1 b-1 b+1 ");
  EXPECT_TRUE(times().empty());
}

TEST_F(Listeners, NeedAParameterThatASharedPointerOwns) {
  LeftParameter<int> onTheStack(project, "name", nullptr);
  onTheStack.addKeyFrame(T(1), 1, T(0));
  onTheStack.addKeyFrameListener(&a);
  EXPECT_THROW(onTheStack.addKeyFrame(T(2), 2, T(0)), boost::bad_weak_ptr);
  EXPECT_TRUE(onTheStack.keyFrameExists(T(2)));  // the change was made before it was told
}

TEST_F(Listeners, AreNotCopied) {
  shared->addKeyFrameListener(&a);
  const boost::shared_ptr<LeftParameter<int>> copy(shared->clone());
  copy->addKeyFrame(T(1), 1, T(0));
  EXPECT_EQ(taken(), "");
}

TEST_F(Listeners, ThatThrowEndTheRoundAfterTheChange) {
  a.then = [] { throw std::domain_error("no"); };
  shared->addKeyFrameListener(&a);
  shared->addKeyFrameListener(&b);
  EXPECT_THROW(add({1}), std::domain_error);
  EXPECT_EQ(taken(), "a+1 ");
  EXPECT_TRUE(shared->keyFrameExists(T(1)));
}

}  // namespace
}  // namespace Kestova
