#include <boost/smart_ptr/bad_weak_ptr.hpp>
#include <cmath>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/Kestova/ParameterVisitor.h"
#include "params/ParameterIterator.h"
#include "tests/params/Values.h"

namespace Kestova {
namespace {

template <class Value>
class Parameters : public Fixture<Value> {};
TYPED_TEST_SUITE(Parameters, ValueTypes, TypeNames);

// The table in Parameter.h, row for row.
TYPED_TEST(Parameters, HoldTheirValueUntilTheNextKeyframe) {
  const auto& parameter = *this->shared;
  expectRefusal(time(0), "name", [&] { parameter.valueAt(time(5)); });
  this->add({10});
  for (const int64 frame : {5, 10, 15}) {
    EXPECT_EQ(parameter.valueAt(time(frame)), valueOf<TypeParam>(10)) << frame;
  }
  this->add({20, 30});
  struct Row {
    RationalTime time;
    int value;
  };
  for (const Row& row :
       {Row{kBeforeAll, 10}, Row{time(9), 10}, Row{time(10), 10}, Row{time(21, 2), 10},
        Row{time(199, 10), 10}, Row{time(20), 20}, Row{time(29), 20}, Row{time(30), 30},
        Row{time(31), 30}, Row{kAfterAll, 30}}) {
    EXPECT_EQ(parameter.valueAt(row.time), valueOf<TypeParam>(row.value)) << row.time;
  }
  EXPECT_TRUE(parameter.valueChanges(time(19), time(20)));
  EXPECT_FALSE(parameter.valueChanges(time(20), time(29)));
}

TYPED_TEST(Parameters, FindNeighbouringKeyframes) {
  const auto& parameter = *this->shared;
  EXPECT_EQ(parameter.previousKeyFrameTime(time(0)), kBeforeAll);
  EXPECT_EQ(parameter.nextKeyFrameTime(time(0)), kAfterAll);
  EXPECT_EQ(parameter.firstKeyFrameTime(), kAfterAll);
  EXPECT_EQ(this->shared->firstKeyFrame(), nullptr);
  EXPECT_EQ(parameter.keyFrameRange(), Range<RationalTime>(kAfterAll, time(0)));

  this->add({20, 10, 30});
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{time(10), time(20), time(30)}));
  EXPECT_EQ(parameter.numKeyFrames(), 3U);
  EXPECT_EQ(parameter.previousKeyFrameTime(time(10)), kBeforeAll);
  EXPECT_EQ(parameter.previousKeyFrameTime(time(20)), time(10));
  EXPECT_EQ(parameter.previousKeyFrameTime(time(21)), time(20));
  EXPECT_EQ(parameter.nextKeyFrameTime(time(9)), time(10));
  EXPECT_EQ(parameter.nextKeyFrameTime(time(10)), time(20));
  EXPECT_EQ(parameter.nextKeyFrameTime(time(30)), kAfterAll);
  EXPECT_TRUE(parameter.keyFrameExists(time(20)));
  EXPECT_FALSE(parameter.keyFrameExists(time(41, 2)));
  EXPECT_EQ(parameter.keyFrameAt(time(20))->value(), valueOf<TypeParam>(20));
  EXPECT_EQ(this->shared->firstKeyFrame()->time(), time(10));
  EXPECT_EQ(parameter.keyFrameRange(), Range<RationalTime>(time(10), time(20)));
  expectRefusal(time(15), "name", [&] { parameter.keyFrameAt(time(15)); });
}

TYPED_TEST(Parameters, FindKeyframesInAClosedRange) {
  this->add({10, 20});
  struct Row {
    RationalTime start;
    RationalTime length;
    bool has;
  };
  for (const Row& row : {Row{time(0), time(9), false}, Row{time(0), time(10), true},
                         Row{time(10), time(0), true}, Row{time(11), time(8), false},
                         Row{time(20), time(5), true}, Row{time(41, 2), time(100), false},
                         Row{time(15), time(-10), false}, Row{kBeforeAll, kAfterAll, false},
                         Row{kAfterAll, kAfterAll, false}, Row{time(1), kAfterAll, true}}) {
    EXPECT_EQ(this->shared->hasKeyFrameIn({row.start, row.length}), row.has)
        << row.start << " " << row.length;
  }
}

TYPED_TEST(Parameters, NotifyOnEachChange) {
  auto& parameter = *this->shared;
  Counter changes;
  parameter.attach(&changes);
  this->add({10, 20});
  EXPECT_EQ(changes.take(), 2);

  Counter keyFrame;
  using Calls = std::pair<int, int>;  // of the parameter's observer and of the keyframe's
  const auto taken = [&] { return Calls(changes.take(), keyFrame.take()); };
  parameter.keyFrameAt(time(10))->attach(&keyFrame);
  EXPECT_EQ(parameter.setKeyFrameValue(time(10), valueOf<TypeParam>(5)), valueOf<TypeParam>(10));
  EXPECT_EQ(taken(), Calls(1, 1));
  EXPECT_EQ(parameter.setKeyFrameValue(parameter.keyFrameAt(time(10)), valueOf<TypeParam>(5)),
            valueOf<TypeParam>(5));
  EXPECT_EQ(taken(), Calls(1, 0));  // the same value notifies the parameter alone
  parameter.moveKeyFrame(time(10), time(11));
  EXPECT_EQ(taken(), Calls(1, 1));

  const auto removed = parameter.removeKeyFrame(time(11));
  EXPECT_EQ(taken(), Calls(1, 0));
  EXPECT_EQ(removed->value(), valueOf<TypeParam>(5));
  parameter.addKeyFrame(removed);
  EXPECT_EQ(taken(), Calls(1, 0));
  EXPECT_EQ(parameter.keyFrameAt(time(11)), removed);

  const auto replacement = boost::make_shared<KeyFrame<TypeParam>>(this->project, time(99),
                                                                   valueOf<TypeParam>(7), time(0));
  replacement->attach(&keyFrame);
  EXPECT_EQ(parameter.replaceKeyFrame(time(11), replacement), removed);
  EXPECT_EQ(taken(), Calls(1, 1));
  EXPECT_EQ(replacement->time(), time(11));
  EXPECT_EQ(parameter.replaceKeyFrame(time(11), replacement), replacement);
  EXPECT_EQ(taken(), Calls(1, 0));

  parameter.detach(&changes);
  parameter.removeKeyFrame(time(11));
  EXPECT_EQ(changes.take(), 0);
}

TYPED_TEST(Parameters, RefuseMissingKeyframesAndChangeNothing) {
  auto& parameter = *this->shared;
  this->add({10, 20});
  Counter changes;
  parameter.attach(&changes);
  const auto value = valueOf<TypeParam>(1);
  const auto keyFrame = [&](const RationalTime& leadIn) {
    return boost::make_shared<KeyFrame<TypeParam>>(this->project, time(15), value, leadIn);
  };
  const auto stray = keyFrame(time(0));
  expectRefusal(time(15), "name", [&] { parameter.removeKeyFrame(time(15)); });
  expectRefusal(time(15), "name", [&] { parameter.setKeyFrameValue(time(15), value); });
  expectRefusal(time(15), "name", [&] { parameter.setKeyFrameValue(stray, value); });
  expectRefusal(time(15), "name", [&] { parameter.replaceKeyFrame(time(15), stray); });
  expectRefusal(time(20), "name", [&] { parameter.replaceKeyFrame(time(20), keyFrame(time(11))); });
  EXPECT_EQ(changes.take(), 0);
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{time(10), time(20)}));
}

// The table in LeftParameter.h.
TYPED_TEST(Parameters, SetTheValueInForceJustBeforeATime) {
  auto& parameter = *this->shared;
  EXPECT_EQ(parameter.setValue(valueOf<TypeParam>(1), time(10)), TypeParam());
  EXPECT_EQ(parameter.keyFrameAt(time(10))->leadInLength(), time(0));
  this->add({20});
  struct Row {
    RationalTime time;
    RationalTime written;
  };
  int n = 100;
  for (const Row& row : {Row{time(5), time(10)}, Row{time(10), time(10)}, Row{time(20), time(10)},
                         Row{time(21), time(20)}, Row{time(25), time(20)}}) {
    const TypeParam before = parameter.keyFrameAt(row.written)->value();
    EXPECT_EQ(parameter.setValue(valueOf<TypeParam>(++n), row.time), before) << row.time;
    EXPECT_EQ(parameter.keyFrameAt(row.written)->value(), valueOf<TypeParam>(n)) << row.time;
  }
  parameter.setValue(valueOf<TypeParam>(++n));  // at 0
  EXPECT_EQ(parameter.keyFrameAt(time(10))->value(), valueOf<TypeParam>(n));
  EXPECT_EQ(parameter.numKeyFrames(), 2U);
}

TYPED_TEST(Parameters, KeepTheStepInterpolater) {
  auto& parameter = *this->shared;
  const auto step = LeftInterpolater<TypeParam>::getInstance();
  EXPECT_EQ(parameter.setInterpolater(nullptr), nullptr);
  EXPECT_EQ(parameter.interpolater(), step);
  EXPECT_EQ(parameter.defaultInterpolater(), step);
  EXPECT_EQ(parameter.description(), "");

  this->add({10});
  const auto own =
      boost::make_shared<KeyFrame<TypeParam>>(this->project, time(20), TypeParam(), time(0));
  own->setInterpolater(step);
  expectRefusal(time(20), "", [&] { parameter.addKeyFrame(own); });
  expectRefusal(time(20), "", [&] { parameter.replaceKeyFrame(time(10), own); });
  EXPECT_EQ(this->times(), std::vector<RationalTime>{time(10)});
}

TYPED_TEST(Parameters, ShiftInOneBatch) {
  auto& parameter = *this->shared;
  this->add({10, 20, 30});
  parameter.setKeyFrameLeadInLength(time(20), time(2));
  Counter batched;
  Counter immediate;
  parameter.attach(&batched);
  parameter.attachWithoutNotifyDelay(&immediate);
  parameter.shiftKeyFrames(time(5), [](const RationalTime& at) { return at >= time(20); });
  EXPECT_EQ(batched.take(), 2);    // the batch, and the operation itself
  EXPECT_EQ(immediate.take(), 5);  // two removals, two additions, the operation
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{time(10), time(25), time(35)}));
  EXPECT_EQ(parameter.keyFrameAt(time(25))->value(), valueOf<TypeParam>(20));
  EXPECT_EQ(parameter.keyFrameAt(time(25))->leadInLength(), time(2));

  parameter.shiftKeyFrames(time(5), [](const RationalTime&) { return false; });
  EXPECT_EQ(batched.take(), 1);

  // 25 would move to 35, which is occupied. Nothing is rolled back: 10 has moved, 25 is removed.
  EXPECT_THROW(
      parameter.shiftKeyFrames(time(10), [](const RationalTime& at) { return at <= time(25); }),
      KeyFrameException);
  EXPECT_EQ(batched.take(), 1);  // the batch alone
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{time(20), time(35)}));

  EXPECT_THROW(parameter.shiftKeyFrames(time(1), nullptr), std::bad_function_call);
  parameter.shiftKeyFrames(time(-15), [](const RationalTime&) { return true; });
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{time(5), time(20)}));
}

TYPED_TEST(Parameters, AreClonedDeeply) {
  auto& parameter = *this->shared;
  this->add({10, 20});
  parameter.addMetaData("key", Attribute<std::string>("text", this->project));
  parameter.keyFrameAt(time(10))->addMetaData("key",
                                              Attribute<std::string>("of 10", this->project));
  const auto bounds = boost::make_shared<ValueBounds<TypeParam>>();
  parameter.setValueBounds(bounds);
  Counter changes;
  parameter.attach(&changes);

  const Cloneable& cloneable = parameter;
  const boost::shared_ptr<Cloneable> asCloneable(cloneable.clone());
  const auto copy = boost::dynamic_pointer_cast<LeftParameter<TypeParam>>(asCloneable);
  ASSERT_TRUE(copy);
  EXPECT_TRUE(copy->isEquivalentTo(parameter));
  EXPECT_EQ(copy->name(), "name");
  EXPECT_EQ(copy->valueBounds(), bounds);
  EXPECT_EQ(copy->projectMutex().lock(), this->project);
  EXPECT_EQ((*copy->metaDataMap())["key"]->valueString(), "text");
  EXPECT_EQ((*copy->keyFrameAt(time(10))->metaDataMap())["key"]->valueString(), "of 10");

  copy->setKeyFrameValue(time(10), valueOf<TypeParam>(99));
  copy->identifier()->setValue("other");
  copy->removeMetaData("key");
  EXPECT_EQ(changes.take(), 0);
  EXPECT_EQ(parameter.keyFrameAt(time(10))->value(), valueOf<TypeParam>(10));
  EXPECT_EQ(parameter.name(), "name");
  EXPECT_EQ(parameter.metaDataMap()->size(), 1U);
  EXPECT_TRUE(copy->differsFrom(parameter));
}

TYPED_TEST(Parameters, AreEquivalentByTimesValuesAndLeadIns) {
  auto& parameter = *this->shared;
  const auto other = boost::make_shared<LeftParameter<TypeParam>>(this->project, "o", nullptr);
  EXPECT_THROW(parameter.isEquivalentTo(*other), KeyFrameException);  // valueAt of an empty one
  this->add({10, 20});
  EXPECT_FALSE(parameter.isEquivalentTo(*other));
  other->addKeyFrame(time(10), valueOf<TypeParam>(10), time(0));
  other->addKeyFrame(time(21), valueOf<TypeParam>(20), time(0));
  EXPECT_FALSE(parameter.isEquivalentTo(*other));
  other->moveKeyFrame(time(21), time(20));
  EXPECT_TRUE(parameter.isEquivalentTo(*other));
  other->setKeyFrameLeadInLength(time(20), time(1));
  EXPECT_FALSE(parameter.isEquivalentTo(*other));
  other->setKeyFrameLeadInLength(time(20), time(0));
  other->setKeyFrameValue(time(20), valueOf<TypeParam>(1));
  EXPECT_FALSE(parameter.isEquivalentTo(*other));
}

// Stores the parameter that it is called with.
#define KESTOVA_SEES(T)                                                       \
  void visit(const boost::shared_ptr<LeftParameter<T>>& parameter) override { \
    seen = parameter;                                                         \
  }
#define KESTOVA_SEES_CONST(T)                                                       \
  void visit(const boost::shared_ptr<const LeftParameter<T>>& parameter) override { \
    seen = parameter;                                                               \
  }
struct Visitor final : ParameterVisitor {
  KESTOVA_FOR_EACH_VALUE_TYPE(KESTOVA_SEES)
  boost::shared_ptr<ParameterInterface> seen;
};
struct ConstVisitor final : ConstParameterVisitor {
  KESTOVA_FOR_EACH_VALUE_TYPE(KESTOVA_SEES_CONST)
  boost::shared_ptr<const ParameterInterface> seen;
};

TYPED_TEST(Parameters, AcceptVisitors) {
  Visitor visitor;
  this->shared->accept(visitor);
  EXPECT_EQ(visitor.seen, this->shared);
  ConstVisitor constVisitor;
  static_cast<const ParameterInterface&>(*this->shared).accept(constVisitor);
  EXPECT_EQ(constVisitor.seen, this->shared);
  LeftParameter<TypeParam> onTheStack({}, "", nullptr);
  EXPECT_THROW(onTheStack.accept(visitor), boost::bad_weak_ptr);
}

TEST(Iterators, SeeKeyframesAddedAndRemovedAheadOfThem) {
  LeftParameter<int> parameter({}, "", nullptr);
  for (int n = 1; n <= 5; ++n) parameter.addKeyFrame(time(n), n, time(0));
  std::string seen;
  for (ParameterIterator<int> at(parameter); !at.atEnd(); at.next()) {
    seen += std::to_string(at.keyFrame()->value());
    if (at.time() == time(2)) {
      parameter.removeKeyFrame(time(2));
      parameter.removeKeyFrame(time(3));
      parameter.addKeyFrame(time(9, 2), 7, time(0));
    }
  }
  EXPECT_EQ(seen, "12475");
}

TEST(Iterators, EndAtTheLastTimeEvenWithAKeyframeThere) {
  LeftParameter<int> parameter({}, "", nullptr);
  parameter.addKeyFrame(kAfterAll, 1, time(0));
  EXPECT_TRUE(ParameterIterator<int>(parameter).atEnd());
  EXPECT_EQ(parameter.keyFrameRange(), Range<RationalTime>(kAfterAll, time(0)));
  parameter.addKeyFrame(time(3), 2, time(0));
  parameter.addKeyFrame(time(5), 2, time(0));
  EXPECT_EQ(parameter.keyFrameRange(), Range<RationalTime>(time(3), time(2)));
  EXPECT_EQ(parameter.valueAt(kAfterAll), 1);
}

TEST(NotANumber, EqualsItselfInCopiesAndDiffersWhenSet) {
  const double nan = std::nan("");
  const auto check = [](const auto& value) {
    using Value = std::decay_t<decltype(value)>;
    const auto parameter =
        boost::make_shared<LeftParameter<Value>>(boost::weak_ptr<const ThreadSafe>(), "", nullptr);
    parameter->addKeyFrame(time(1), value, time(0));
    const boost::shared_ptr<LeftParameter<Value>> copy(parameter->clone());
    EXPECT_TRUE(parameter->isEquivalentTo(*copy));
    Counter keyFrame;
    parameter->keyFrameAt(time(1))->attach(&keyFrame);
    parameter->setKeyFrameValue(time(1), value);
    EXPECT_EQ(keyFrame.take(), 1);
  };
  check(nan);
  check(Point(nan, 1, nan));
  check(Rect<float>(1, static_cast<float>(nan), 3, 4));
  check(std::list<Rect<float>>{Rect<float>(static_cast<float>(nan), 2, 3, 4)});
}

TEST(Values, ThatAreAlmostEqualAreDifferent) {
  LeftParameter<double> a({}, "", nullptr);
  LeftParameter<double> b({}, "", nullptr);
  a.addKeyFrame(time(1), 1.0, time(0));
  b.addKeyFrame(time(1), std::nextafter(1.0, 2.0), time(0));
  EXPECT_TRUE(a.differsFrom(b));
}

}  // namespace
}  // namespace Kestova
