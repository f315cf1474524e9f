#include <memory>
#include <string>

#include "params/Attribute.h"
#include "tests/params/Values.h"

namespace Kestova {
namespace {

template <class Value>
class KeyFrames : public Fixture<Value> {};
TYPED_TEST_SUITE(KeyFrames, ValueTypes, TypeNames);

TYPED_TEST(KeyFrames, NotifyOnlyWhenSomethingChanges) {
  KeyFrame<TypeParam> keyFrame(this->project, time(1), valueOf<TypeParam>(1), time(0));
  Counter changes;
  keyFrame.attach(&changes);
  keyFrame.setTime(time(2, 2));
  keyFrame.setValue(valueOf<TypeParam>(1));
  keyFrame.setLeadInLength(time(0));
  keyFrame.setInterpolater(nullptr);
  EXPECT_EQ(changes.take(), 0);
  keyFrame.setTime(time(2));
  keyFrame.setValue(valueOf<TypeParam>(2));
  keyFrame.setLeadInLength(time(1));
  keyFrame.setInterpolater(LeftInterpolater<TypeParam>::getInstance());
  EXPECT_EQ(changes.take(), 4);
  EXPECT_EQ(keyFrame.time(), time(2));
  EXPECT_EQ(keyFrame.value(), valueOf<TypeParam>(2));
  EXPECT_EQ(keyFrame.leadInLength(), time(1));
}

TYPED_TEST(KeyFrames, AreClonedWithTheirMetadataAndWithoutObservers) {
  KeyFrame<TypeParam> keyFrame(this->project, time(1), valueOf<TypeParam>(1), time(2));
  const auto own = LeftInterpolater<TypeParam>::getInstance();
  keyFrame.setInterpolater(own);
  keyFrame.addMetaData("key", Attribute<std::string>("text", this->project));
  Counter changes;
  keyFrame.attach(&changes);

  const Cloneable& cloneable = keyFrame;
  const std::unique_ptr<Cloneable> asCloneable(cloneable.clone());
  const std::unique_ptr<KeyFrame<TypeParam>> copy(keyFrame.clone());
  EXPECT_NE(dynamic_cast<KeyFrame<TypeParam>*>(asCloneable.get()), nullptr);
  EXPECT_EQ(copy->time(), time(1));
  EXPECT_EQ(copy->value(), valueOf<TypeParam>(1));
  EXPECT_EQ(copy->leadInLength(), time(2));
  EXPECT_EQ(copy->interpolater(), own);
  EXPECT_EQ(copy->projectMutex().lock(), this->project);
  copy->setTime(time(5));
  EXPECT_EQ(changes.take(), 0);
  (*copy->metaDataMap())["key"].reset();
  EXPECT_EQ((*keyFrame.metaDataMap())["key"]->valueString(), "text");
}

}  // namespace
}  // namespace Kestova
