#include <gtest/gtest.h>

#include <boost/system/system_error.hpp>
#include <memory>
#include <stdexcept>

#include "loader/VOXAScreenMetaDataFilenameSetter.h"
#include "tests/support/Slots.h"

namespace {

class ThrowingSlots final : public testing_support::Slots {
 public:
  void setF2Filename(const std::string&) override { throw std::domain_error("F2"); }
};

class Filing : public testing::Test {
 protected:
  using Names = std::map<std::string, std::string>;

  Names filed(const std::string& name) {
    slots.clear();
    setter->setScreenMetaData(&slots, name);
    return slots.names;
  }

  testing_support::Slots slots;
  const std::unique_ptr<Kestova::ScreenMetaDataFilenameSetter> setter{
      VOXAScreenMetaDataFilenameSetter::create()};
};

TEST_F(Filing, StoresTheWholeNameInTheSlotOfTheStream) {
  for (const std::string key :
       {"f0", "f1", "f2", "f3", "f5", "f6", "f7", "f8", "f9", "fa", "fb", "01"}) {
    const std::string leaf = "2b7b6a" + key + "-7a1f-11e2-83d0-0017f200be7f";
    std::string slot = key;
    for (char& digit : slot) digit = static_cast<char>(std::toupper(digit));
    for (const std::string& name :
         {"C:\\rec\\a.voxa/" + leaf, "C:\\rec\\a.voxa\\" + leaf, leaf, "C:" + leaf}) {
      EXPECT_EQ(filed(name), (Names{{slot, name}}));
    }
  }
}

TEST_F(Filing, IgnoresOtherNames) {
  const std::string f0 = "2b7b6af0-7a1f-11e2-83d0-0017f200be7f";
  for (const std::string key : {"ef", "fc", "00", "02", "03", "04", "f4"}) {
    EXPECT_TRUE(filed("a.voxa/2b7b6a" + key + "-7a1f-11e2-83d0-0017f200be7f").empty()) << key;
  }
  for (const std::string& name :
       {std::string("a.voxa/2B7B6AF0-7A1F-11E2-83D0-0017F200BE7F"), "a.voxa/{" + f0 + "}",
        "a.voxa/" + f0 + "/", "a.voxa/ " + f0, "a.voxa/" + f0 + " ", f0 + "/a.voxa",
        std::string("a.voxa"), std::string(),
        std::string("a.voxa/2b7b6af0-7a1f-11e2-83ac-0017f200be7f")}) {
    EXPECT_TRUE(filed(name).empty()) << name;
  }
  setter->setScreenMetaData(nullptr, "a.voxa");  // not dereferenced, because no slot matches
  setter->initScreenMetaData(nullptr);
}

TEST_F(Filing, PropagatesExceptions) {
  for (const std::string bad :
       {"\xFF", "\xED\xA0\x80", "\xED\xBF\xBF", "\xE0\x80\xAF", "\xF4\x90\x80\x80"}) {
    EXPECT_THROW(filed(bad + "/2b7b6af0-7a1f-11e2-83d0-0017f200be7f"), boost::system::system_error);
  }
  EXPECT_TRUE(slots.isEmpty());
  ThrowingSlots throwing;
  EXPECT_THROW(setter->setScreenMetaData(&throwing, "x/2b7b6af2-7a1f-11e2-83d0-0017f200be7f"),
               std::domain_error);
}

}  // namespace
