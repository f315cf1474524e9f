#include <boost/smart_ptr/bad_weak_ptr.hpp>
#include <functional>
#include <sstream>

#include "host/Kestova/KeyFrameListener.h"
#include "tests/params/Values.h"

namespace Kestova {
namespace {

// Logs its letter with "+10" or "-10" for each call, then calls `then`.
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

TEST_F(Listeners, AreToldOfAddedAndRemovedKeyframes) {
  shared->addKeyFrameListener(&a);
  add({10, 20});
  EXPECT_EQ(taken(), "a+10 a+20 ");
  shared->moveKeyFrame(time(20), time(21));
  shared->setKeyFrameValue(time(21), 5);
  EXPECT_EQ(taken(), "");
  const auto replacement = boost::make_shared<KeyFrame<int>>(project, time(99), 7, time(0));
  shared->replaceKeyFrame(time(21), replacement);
  EXPECT_EQ(taken(), "a-21 a+21 ");
  shared->removeKeyFrame(time(10));
  EXPECT_EQ(taken(), "a-10 ");
  shared->shiftKeyFrames(time(4), [](const RationalTime&) { return true; });
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
  a.then = [&] { EXPECT_TRUE(shared->keyFrameExists(time(1))); };
  add({1});
  EXPECT_EQ(taken(), "! a+1 ");
}

TEST_F(Listeners, RemovedDuringACallAreSkippedAndAddedOnesWait) {
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
    shared->removeKeyFrame(time(1));
  };
  add({1});
  EXPECT_EQ(taken(), "a+1 a-1 b-1 b+1 ");
  EXPECT_TRUE(times().empty());
}

TEST_F(Listeners, RequireAParameterOwnedByASharedPointer) {
  LeftParameter<int> onTheStack(project, "name", nullptr);
  onTheStack.addKeyFrame(time(1), 1, time(0));
  onTheStack.addKeyFrameListener(&a);
  EXPECT_THROW(onTheStack.addKeyFrame(time(2), 2, time(0)), boost::bad_weak_ptr);
  EXPECT_TRUE(onTheStack.keyFrameExists(time(2)));  // the change precedes the call
}

TEST_F(Listeners, AreNotCopied) {
  shared->addKeyFrameListener(&a);
  const boost::shared_ptr<LeftParameter<int>> copy(shared->clone());
  copy->addKeyFrame(time(1), 1, time(0));
  EXPECT_EQ(taken(), "");
}

TEST_F(Listeners, ThatThrowEndTheCallsAfterTheChange) {
  a.then = [] { throw std::domain_error("no"); };
  shared->addKeyFrameListener(&a);
  shared->addKeyFrameListener(&b);
  EXPECT_THROW(add({1}), std::domain_error);
  EXPECT_EQ(taken(), "a+1 ");
  EXPECT_TRUE(shared->keyFrameExists(time(1)));
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

// Combines every operation that calls observers or listeners with every caller that may drop the
// last reference to the parameter. (The sanitizers report a use after free.)
TEST_F(Listeners, AndObserversMayDropTheLastReferenceToTheParameter) {
  using Target = LeftParameter<int>;
  const auto made = [this](int64 frame) {
    return boost::make_shared<KeyFrame<int>>(project, time(frame), 7, time(1));
  };
  const auto replacement = made(99);
  struct Row {
    const char* operation;
    std::function<void(Target&)> run;
    const char* callers;  // o: observer, l: listener, k: observer of the keyframe
  };
  for (const Row& row : {
           Row{"add", [&](Target& on) { on.addKeyFrame(time(30), 1, time(0)); }, "ol"},
           Row{"add made", [&](Target& on) { on.addKeyFrame(made(30)); }, "ol"},
           Row{"replace", [&](Target& on) { on.replaceKeyFrame(time(20), replacement); }, "olk"},
           Row{"set value at", [](Target& on) { EXPECT_EQ(on.setKeyFrameValue(time(20), 7), 20); },
               "ok"},
           Row{"set value of",
               [](Target& on) { EXPECT_EQ(on.setKeyFrameValue(on.keyFrameAt(time(20)), 7), 20); },
               "ok"},
           Row{"set value", [](Target& on) { EXPECT_EQ(on.setValue(7, time(25)), 20); }, "ok"},
           Row{"set lead-in",
               [](Target& on) {
                 EXPECT_EQ(on.setKeyFrameLeadInLength(time(20), time(3)), time(0));
               },
               "ok"},
           Row{"remove", [](Target& on) { EXPECT_EQ(on.removeKeyFrame(time(20))->value(), 20); },
               "ol"},
           Row{"move", [](Target& on) { on.moveKeyFrame(time(20), time(21)); }, "ok"},
           Row{"shift",
               [](Target& on) { on.shiftKeyFrames(time(1), [](const auto&) { return true; }); },
               "ol"},
           Row{"notify", [](Target& on) { on.notify(); }, "o"},
       }) {
    for (const char caller : std::string(row.callers)) {
      auto parameter = boost::make_shared<Target>(project, "name", nullptr);
      const boost::weak_ptr<Target> alive = parameter;
      for (const int frame : {10, 20}) parameter->addKeyFrame(time(frame), frame, time(0));
      replacement->setTime(time(99));
      Dropper dropper(parameter);
      Counter later;
      const auto& keyFrame =
          row.operation == std::string("replace") ? replacement : parameter->keyFrameAt(time(20));
      if (caller == 'o') parameter->attach(&dropper);
      if (caller == 'k') keyFrame->attach(&dropper);
      if (caller == 'l') parameter->addKeyFrameListener(&dropper);
      if (caller != 'k') parameter->attach(&later);
      row.run(*parameter);
      keyFrame->detach(&dropper);
      EXPECT_TRUE(alive.expired()) << row.operation << " " << caller;
      EXPECT_EQ(later.count > 0, caller != 'k') << row.operation << " " << caller;
    }
  }
}

}  // namespace
}  // namespace Kestova
