#include <memory>
#include <string>
#include <typeinfo>

#include "params/Attribute.h"
#include "tests/params/Values.h"

namespace Kestova {
namespace {

using Text = Attribute<std::string>;

class Attributes : public testing::Test {
 protected:
  boost::shared_ptr<ThreadSafe> project = boost::make_shared<ThreadSafe>();
  Text attribute{"text", project};
};

TEST_F(Attributes, NotifyWheneverTheyAreSet) {
  Counter changes;
  attribute.attach(&changes);
  EXPECT_EQ(attribute.setValue("new"), "text");
  EXPECT_EQ(attribute.setValue("new"), "new");
  EXPECT_EQ(changes.take(), 2);
  EXPECT_EQ(attribute.value(), "new");
  EXPECT_EQ(attribute.valueString(), "new");
}

TEST_F(Attributes, AreClonedThroughEitherCloneableBase) {
  const Cloneable& ofSubProject = static_cast<const SubProject&>(attribute);
  const AttributeInterface& interface = attribute;
  const Cloneable& ofInterface = interface;
  EXPECT_NE(&ofSubProject, &ofInterface);

  const std::unique_ptr<Cloneable> first(ofSubProject.clone());
  const std::unique_ptr<Cloneable> second(ofInterface.clone());
  const std::unique_ptr<AttributeInterface> third(interface.clone());
  for (const Cloneable* copy : {first.get(), second.get(), static_cast<Cloneable*>(third.get())}) {
    EXPECT_EQ(typeid(*copy), typeid(Text));
    EXPECT_EQ(dynamic_cast<const Text&>(*copy).value(), "text");
  }
}

TEST_F(Attributes, CopyTheirOwnerAndMetadataButNoObservers) {
  Counter changes;
  attribute.attach(&changes);
  attribute.addMetaData("key", Text("inner", project));
  Text copy(attribute);
  copy.setValue("other");
  EXPECT_EQ(changes.take(), 0);
  EXPECT_EQ(copy.projectMutex().lock(), project);
  EXPECT_NE((*copy.metaDataMap())["key"], (*attribute.metaDataMap())["key"]);
  EXPECT_EQ((*copy.metaDataMap())["key"]->valueString(), "inner");
}

TEST_F(Attributes, AreCopiedIntoMetadataWithTheTargetsProject) {
  const auto other = boost::make_shared<ThreadSafe>();
  LeftParameter<int> target(other, "", nullptr);
  EXPECT_EQ(target.metaDataMap(), nullptr);
  const auto first = attribute.addToMetaData("key", target);
  ASSERT_NE(target.metaDataMap(), nullptr);
  attribute.setValue("later");
  EXPECT_EQ(first->valueString(), "text");
  EXPECT_EQ(dynamic_cast<Text&>(*first).projectMutex().lock(), other);

  const auto second = target.addMetaData("key", attribute);
  EXPECT_EQ((*target.metaDataMap())["key"], second);
  EXPECT_EQ(first->valueString(), "text");  // the replaced attribute is unchanged
  const auto shared = boost::make_shared<Text>("shared", project);
  EXPECT_EQ(target.addMetaData("other", shared), shared);
  EXPECT_EQ(target.removeMetaData("other"), shared);
  EXPECT_EQ(target.removeMetaData("other"), nullptr);
  EXPECT_EQ(target.metaDataMap()->size(), 1U);

  target.createMetaDataMap();
  EXPECT_TRUE(target.metaDataMap()->empty());
}

TEST_F(Attributes, NameTheirParameter) {
  LeftParameter<int> parameter(project, "X", nullptr);
  EXPECT_EQ(parameter.name(), "X");
  parameter.identifier()->setValue("Y");
  EXPECT_EQ(parameter.name(), "Y");
  const LeftParameter<int>& constant = parameter;
  EXPECT_EQ(constant.identifier()->value(), "Y");
  attribute.interfaceHook();
  attribute.attributeHook();
  EXPECT_FALSE(attribute.interfaceQuery());
}

}  // namespace
}  // namespace Kestova
