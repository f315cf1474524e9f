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

// Resets a pointer when it is called for the first time.
class Dropper final : public Observer, public KeyFrameListener {
 public:
  explicit Dropper(boost::shared_ptr<LeftParameter<int>>& dropped) : m_dropped(dropped) {}
  void changed() override { m_dropped.reset(); }
  void keyFrameAdded(const boost::shared_ptr<ParameterInterface>&, const RationalTime&) override {
    changed();
  }
  void keyFrameRemoved(const boost::shared_ptr<ParameterInterface>&, const RationalTime&) override {
    changed();
  }

 private:
  boost::shared_ptr<LeftParameter<int>>& m_dropped;
};

// Every operation that calls somebody, and everybody it calls in turn as the one that drops the
// last reference to the parameter. (The sanitizers see a use of what was freed.)
TEST_F(Listeners, AndObserversMayDropTheLastReferenceToTheParameter) {
  using Target = LeftParameter<int>;
  const auto made = [this](int64 time) {
    return boost::make_shared<KeyFrame<int>>(project, T(time), 7, T(1));
  };
  const auto replacement = made(99);
  struct Row {
    const char* operation;
    std::function<void(Target&)> run;
    const char* callers;  // 'o'bserver, 'l'istener, 'k'eyframe's observer
  };
  for (const Row& row : {
           Row{"add", [&](Target& on) { on.addKeyFrame(T(30), 1, T(0)); }, "ol"},
           Row{"add made", [&](Target& on) { on.addKeyFrame(made(30)); }, "ol"},
           Row{"replace", [&](Target& on) { on.replaceKeyFrame(T(20), replacement); }, "olk"},
           Row{"set value at", [](Target& on) { EXPECT_EQ(on.setKeyFrameValue(T(20), 7), 20); },
               "ok"},
           Row{"set value of",
               [](Target& on) { EXPECT_EQ(on.setKeyFrameValue(on.keyFrameAt(T(20)), 7), 20); },
               "ok"},
           Row{"set value", [](Target& on) { EXPECT_EQ(on.setValue(7, T(25)), 20); }, "ok"},
           Row{"set lead-in",
               [](Target& on) { EXPECT_EQ(on.setKeyFrameLeadInLength(T(20), T(3)), T(0)); }, "ok"},
           Row{"remove", [](Target& on) { EXPECT_EQ(on.removeKeyFrame(T(20))->value(), 20); },
               "ol"},
           Row{"move", [](Target& on) { on.moveKeyFrame(T(20), T(21)); }, "ok"},
           Row{"shift",
               [](Target& on) { on.shiftKeyFrames(T(1), [](const auto&) { return true; }); }, "ol"},
           Row{"notify", [](Target& on) { on.notify(); }, "o"},
       }) {
    for (const char caller : std::string(row.callers)) {
      auto parameter = boost::make_shared<Target>(project, "name", nullptr);
      const boost::weak_ptr<Target> alive = parameter;
      for (const int time : {10, 20}) parameter->addKeyFrame(T(time), time, T(0));
      replacement->setTime(T(99));
      Dropper dropper(parameter);
      Counter behind;
      const auto& keyFrame =
          row.operation == std::string("replace") ? replacement : parameter->keyFrameAt(T(20));
      if (caller == 'o') parameter->attach(&dropper);
      if (caller == 'k') keyFrame->attach(&dropper);
      if (caller == 'l') parameter->addKeyFrameListener(&dropper);
      if (caller != 'k') parameter->attach(&behind);
      row.run(*parameter);
      keyFrame->detach(&dropper);
      EXPECT_TRUE(alive.expired()) << row.operation << " " << caller;
      EXPECT_EQ(behind.count > 0, caller != 'k') << row.operation << " " << caller;
    }
  }
}

}  // namespace
}  // namespace Kestova
