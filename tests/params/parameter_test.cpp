#include <boost/smart_ptr/bad_weak_ptr.hpp>
#include <cmath>
#include <type_traits>

#include "host/Kestova/ParameterVisitor.h"
#include "params/ParameterIterator.h"
#include "tests/params/Values.h"

namespace Kestova {
namespace {

template <class Value>
class Parameters : public Fixture<Value> {};
TYPED_TEST_SUITE(Parameters, ValueTypes, );

// The table in Parameter.h, row for row.
TYPED_TEST(Parameters, HoldTheirValueUntilTheNextKeyframe) {
  const auto& parameter = *this->shared;
  expectRefusal(T(0), "name", [&] { parameter.valueAt(T(5)); });
  this->add({10});
  for (const int64 time : {5, 10, 15}) {
    EXPECT_EQ(parameter.valueAt(T(time)), valueOf<TypeParam>(10)) << time;
  }
  this->add({20, 30});
  struct Row {
    RationalTime time;
    int value;
  };
  for (const Row& row :
       {Row{kBeforeAll, 10}, Row{T(9), 10}, Row{T(10), 10}, Row{T(21, 2), 10}, Row{T(199, 10), 10},
        Row{T(20), 20}, Row{T(29), 20}, Row{T(30), 30}, Row{T(31), 30}, Row{kAfterAll, 30}}) {
    EXPECT_EQ(parameter.valueAt(row.time), valueOf<TypeParam>(row.value)) << row.time;
  }
  EXPECT_TRUE(parameter.valueChanges(T(19), T(20)));
  EXPECT_FALSE(parameter.valueChanges(T(20), T(29)));
}

TYPED_TEST(Parameters, KnowTheirNeighbours) {
  const auto& parameter = *this->shared;
  EXPECT_EQ(parameter.previousKeyFrameTime(T(0)), kBeforeAll);
  EXPECT_EQ(parameter.nextKeyFrameTime(T(0)), kAfterAll);
  EXPECT_EQ(parameter.firstKeyFrameTime(), kAfterAll);
  EXPECT_EQ(this->shared->firstKeyFrame(), nullptr);
  EXPECT_EQ(parameter.keyFrameRange(), Range<RationalTime>(kAfterAll, T(0)));

  this->add({20, 10, 30});
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{T(10), T(20), T(30)}));
  EXPECT_EQ(parameter.numKeyFrames(), 3U);
  EXPECT_EQ(parameter.previousKeyFrameTime(T(10)), kBeforeAll);
  EXPECT_EQ(parameter.previousKeyFrameTime(T(20)), T(10));
  EXPECT_EQ(parameter.previousKeyFrameTime(T(21)), T(20));
  EXPECT_EQ(parameter.nextKeyFrameTime(T(9)), T(10));
  EXPECT_EQ(parameter.nextKeyFrameTime(T(10)), T(20));
  EXPECT_EQ(parameter.nextKeyFrameTime(T(30)), kAfterAll);
  EXPECT_TRUE(parameter.keyFrameExists(T(20)));
  EXPECT_FALSE(parameter.keyFrameExists(T(41, 2)));
  EXPECT_EQ(parameter.keyFrameAt(T(20))->value(), valueOf<TypeParam>(20));
  EXPECT_EQ(this->shared->firstKeyFrame()->time(), T(10));
  EXPECT_EQ(parameter.keyFrameRange(), Range<RationalTime>(T(10), T(20)));
  expectRefusal(T(15), "name", [&] { parameter.keyFrameAt(T(15)); });
}

TYPED_TEST(Parameters, FindKeyframesInARangeWithBothEnds) {
  this->add({10, 20});
  struct Row {
    RationalTime start;
    RationalTime length;
    bool has;
  };
  for (const Row& row :
       {Row{T(0), T(9), false}, Row{T(0), T(10), true}, Row{T(10), T(0), true},
        Row{T(11), T(8), false}, Row{T(20), T(5), true}, Row{T(41, 2), T(100), false},
        Row{T(15), T(-10), false}, Row{kBeforeAll, kAfterAll, false},
        Row{kAfterAll, kAfterAll, false}, Row{T(1), kAfterAll, true}}) {
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
  parameter.keyFrameAt(T(10))->attach(&keyFrame);
  EXPECT_EQ(parameter.setKeyFrameValue(T(10), valueOf<TypeParam>(5)), valueOf<TypeParam>(10));
  EXPECT_EQ(changes.take() * 10 + keyFrame.take(), 11);
  EXPECT_EQ(parameter.setKeyFrameValue(parameter.keyFrameAt(T(10)), valueOf<TypeParam>(5)),
            valueOf<TypeParam>(5));
  EXPECT_EQ(changes.take() * 10 + keyFrame.take(), 10);  // the same value: the parameter alone
  parameter.moveKeyFrame(T(10), T(11));
  EXPECT_EQ(changes.take() * 10 + keyFrame.take(), 11);

  const auto removed = parameter.removeKeyFrame(T(11));
  EXPECT_EQ(changes.take() * 10 + keyFrame.take(), 10);
  EXPECT_EQ(removed->value(), valueOf<TypeParam>(5));
  parameter.addKeyFrame(removed);
  EXPECT_EQ(changes.take() * 10 + keyFrame.take(), 10);
  EXPECT_EQ(parameter.keyFrameAt(T(11)), removed);

  const auto replacement =
      boost::make_shared<KeyFrame<TypeParam>>(this->project, T(99), valueOf<TypeParam>(7), T(0));
  replacement->attach(&keyFrame);
  EXPECT_EQ(parameter.replaceKeyFrame(T(11), replacement), removed);
  EXPECT_EQ(changes.take() * 10 + keyFrame.take(), 11);
  EXPECT_EQ(replacement->time(), T(11));
  EXPECT_EQ(parameter.replaceKeyFrame(T(11), replacement), replacement);
  EXPECT_EQ(changes.take() * 10 + keyFrame.take(), 10);

  parameter.detach(&changes);
  parameter.removeKeyFrame(T(11));
  EXPECT_EQ(changes.take(), 0);
}

TYPED_TEST(Parameters, RefuseWhatIsNotThereAndChangeNothing) {
  auto& parameter = *this->shared;
  this->add({10, 20});
  Counter changes;
  parameter.attach(&changes);
  const auto value = valueOf<TypeParam>(1);
  const auto keyFrame = [&](const RationalTime& leadIn) {
    return boost::make_shared<KeyFrame<TypeParam>>(this->project, T(15), value, leadIn);
  };
  const auto stray = keyFrame(T(0));
  expectRefusal(T(15), "name", [&] { parameter.removeKeyFrame(T(15)); });
  expectRefusal(T(15), "name", [&] { parameter.setKeyFrameValue(T(15), value); });
  expectRefusal(T(15), "name", [&] { parameter.setKeyFrameValue(stray, value); });
  expectRefusal(T(15), "name", [&] { parameter.replaceKeyFrame(T(15), stray); });
  expectRefusal(T(20), "name", [&] { parameter.replaceKeyFrame(T(20), keyFrame(T(11))); });
  EXPECT_EQ(changes.take(), 0);
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{T(10), T(20)}));
}

// The table in LeftParameter.h.
TYPED_TEST(Parameters, SetTheValueInForceJustBeforeATime) {
  auto& parameter = *this->shared;
  EXPECT_EQ(parameter.setValue(valueOf<TypeParam>(1), T(10)), TypeParam());
  EXPECT_EQ(parameter.keyFrameAt(T(10))->leadInLength(), T(0));
  this->add({20});
  struct Row {
    RationalTime time;
    RationalTime written;
  };
  int n = 100;
  for (const Row& row : {Row{T(5), T(10)}, Row{T(10), T(10)}, Row{T(20), T(10)}, Row{T(21), T(20)},
                         Row{T(25), T(20)}}) {
    const TypeParam before = parameter.keyFrameAt(row.written)->value();
    EXPECT_EQ(parameter.setValue(valueOf<TypeParam>(++n), row.time), before) << row.time;
    EXPECT_EQ(parameter.keyFrameAt(row.written)->value(), valueOf<TypeParam>(n)) << row.time;
  }
  parameter.setValue(valueOf<TypeParam>(++n));  // at 0
  EXPECT_EQ(parameter.keyFrameAt(T(10))->value(), valueOf<TypeParam>(n));
  EXPECT_EQ(parameter.numKeyFrames(), 2U);
}

TYPED_TEST(Parameters, KeepTheStepAsTheirInterpolater) {
  auto& parameter = *this->shared;
  const auto step = LeftInterpolater<TypeParam>::getInstance();
  EXPECT_EQ(parameter.setInterpolater(nullptr), nullptr);
  EXPECT_EQ(parameter.interpolater(), step);
  EXPECT_EQ(parameter.defaultInterpolater(), step);
  EXPECT_EQ(parameter.description(), "");

  this->add({10});
  const auto own = boost::make_shared<KeyFrame<TypeParam>>(this->project, T(20), TypeParam(), T(0));
  own->setInterpolater(step);
  expectRefusal(T(20), "", [&] { parameter.addKeyFrame(own); });
  expectRefusal(T(20), "", [&] { parameter.replaceKeyFrame(T(10), own); });
  EXPECT_EQ(this->times(), std::vector<RationalTime>{T(10)});
}

TYPED_TEST(Parameters, ShiftInOneBatch) {
  auto& parameter = *this->shared;
  this->add({10, 20, 30});
  parameter.setKeyFrameLeadInLength(T(20), T(2));
  Counter batched;
  Counter immediate;
  parameter.attach(&batched);
  parameter.attachWithoutNotifyDelay(&immediate);
  parameter.shiftKeyFrames(T(5), [](const RationalTime& time) { return time >= T(20); });
  EXPECT_EQ(batched.take(), 2);    // the batch, and the operation itself
  EXPECT_EQ(immediate.take(), 5);  // two removals, two additions, the operation
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{T(10), T(25), T(35)}));
  EXPECT_EQ(parameter.keyFrameAt(T(25))->value(), valueOf<TypeParam>(20));
  EXPECT_EQ(parameter.keyFrameAt(T(25))->leadInLength(), T(2));

  parameter.shiftKeyFrames(T(5), [](const RationalTime&) { return false; });
  EXPECT_EQ(batched.take(), 1);

  // 25 would land on 35, which does not move: it and those before it are gone or moved for good.
  EXPECT_THROW(
      parameter.shiftKeyFrames(T(10), [](const RationalTime& time) { return time <= T(25); }),
      KeyFrameException);
  EXPECT_EQ(batched.take(), 1);  // the batch alone
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{T(20), T(35)}));

  EXPECT_THROW(parameter.shiftKeyFrames(T(1), nullptr), std::bad_function_call);
  parameter.shiftKeyFrames(T(-15), [](const RationalTime&) { return true; });
  EXPECT_EQ(this->times(), (std::vector<RationalTime>{T(5), T(20)}));
}

TYPED_TEST(Parameters, AreClonedDeeply) {
  auto& parameter = *this->shared;
  this->add({10, 20});
  parameter.addMetaData("key", Attribute<std::string>("text", this->project));
  parameter.keyFrameAt(T(10))->addMetaData("key", Attribute<std::string>("of 10", this->project));
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
  EXPECT_EQ((*copy->keyFrameAt(T(10))->metaDataMap())["key"]->valueString(), "of 10");

  copy->setKeyFrameValue(T(10), valueOf<TypeParam>(99));
  copy->identifier()->setValue("other");
  copy->removeMetaData("key");
  EXPECT_EQ(changes.take(), 0);
  EXPECT_EQ(parameter.keyFrameAt(T(10))->value(), valueOf<TypeParam>(10));
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
  other->addKeyFrame(T(10), valueOf<TypeParam>(10), T(0));
  other->addKeyFrame(T(21), valueOf<TypeParam>(20), T(0));
  EXPECT_FALSE(parameter.isEquivalentTo(*other));
  other->moveKeyFrame(T(21), T(20));
  EXPECT_TRUE(parameter.isEquivalentTo(*other));
  other->setKeyFrameLeadInLength(T(20), T(1));
  EXPECT_FALSE(parameter.isEquivalentTo(*other));
  other->setKeyFrameLeadInLength(T(20), T(0));
  other->setKeyFrameValue(T(20), valueOf<TypeParam>(1));
  EXPECT_FALSE(parameter.isEquivalentTo(*other));
}

// Remembers which operation it was called with.
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

TYPED_TEST(Parameters, ShowThemselvesToVisitors) {
  Visitor visitor;
  this->shared->accept(visitor);
  EXPECT_EQ(visitor.seen, this->shared);
  ConstVisitor constVisitor;
  static_cast<const ParameterInterface&>(*this->shared).accept(constVisitor);
  EXPECT_EQ(constVisitor.seen, this->shared);
  LeftParameter<TypeParam> onTheStack({}, "", nullptr);
  EXPECT_THROW(onTheStack.accept(visitor), boost::bad_weak_ptr);
}

TEST(Iterators, SeeKeyframesThatComeAndGoAheadOfThem) {
  LeftParameter<int> parameter({}, "", nullptr);
  for (int n = 1; n <= 5; ++n) parameter.addKeyFrame(T(n), n, T(0));
  std::string seen;
  for (ParameterIterator<int> at(parameter); !at.atEnd(); at.next()) {
    seen += std::to_string(at.keyFrame()->value());
    if (at.time() == T(2)) {
      parameter.removeKeyFrame(T(2));
      parameter.removeKeyFrame(T(3));
      parameter.addKeyFrame(T(9, 2), 7, T(0));
    }
  }
  EXPECT_EQ(seen, "12475");
}

TEST(Iterators, TakeTheLastTimeOfAllForTheEnd) {
  LeftParameter<int> parameter({}, "", nullptr);
  parameter.addKeyFrame(kAfterAll, 1, T(0));
  EXPECT_TRUE(ParameterIterator<int>(parameter).atEnd());
  EXPECT_EQ(parameter.keyFrameRange(), Range<RationalTime>(kAfterAll, T(0)));
  parameter.addKeyFrame(T(3), 2, T(0));
  parameter.addKeyFrame(T(5), 2, T(0));
  EXPECT_EQ(parameter.keyFrameRange(), Range<RationalTime>(T(3), T(2)));
  EXPECT_EQ(parameter.valueAt(kAfterAll), 1);
}

TEST(NotANumber, IsEqualToItselfInCopiesAndAnotherValueWhenSet) {
  const double nan = std::nan("");
  const auto check = [](const auto& value) {
    using Value = std::decay_t<decltype(value)>;
    const auto parameter =
        boost::make_shared<LeftParameter<Value>>(boost::weak_ptr<const ThreadSafe>(), "", nullptr);
    parameter->addKeyFrame(T(1), value, T(0));
    const boost::shared_ptr<LeftParameter<Value>> copy(parameter->clone());
    EXPECT_TRUE(parameter->isEquivalentTo(*copy));
    Counter keyFrame;
    parameter->keyFrameAt(T(1))->attach(&keyFrame);
    parameter->setKeyFrameValue(T(1), value);
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
  a.addKeyFrame(T(1), 1.0, T(0));
  b.addKeyFrame(T(1), std::nextafter(1.0, 2.0), T(0));
  EXPECT_TRUE(a.differsFrom(b));
}

}  // namespace
}  // namespace Kestova
