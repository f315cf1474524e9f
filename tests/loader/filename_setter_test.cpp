#include <gtest/gtest.h>

#include <boost/system/system_error.hpp>
#include <memory>
#include <stdexcept>

#include "host/Kestova/ScreenMetaData.h"
#include "loader/VOXAScreenMetaDataFilenameSetter.h"

namespace {

// Writes which slot was filled with what.
class Slots final : public Kestova::ScreenMetaData {
 public:
  bool isEmpty() const override { return filled.empty(); }
  void clear() override { filled.clear(); }
  bool holds(const std::string&) const override { return false; }
  void setF0Filename(const std::string& name) override { fill("F0", name); }
  void setF1Filename(const std::string& name) override { fill("F1", name); }
  void setF2Filename(const std::string& name) override { fill("F2", name); }
  void setF3Filename(const std::string& name) override { fill("F3", name); }
  void setF4Filename(const std::string& name) override { fill("F4", name); }
  void setF5Filename(const std::string& name) override { fill("F5", name); }
  void setF6Filename(const std::string& name) override { fill("F6", name); }
  void setFBFilename(const std::string& name) override { fill("FB", name); }
  void setF7Filename(const std::string& name) override { fill("F7", name); }
  void setF8Filename(const std::string& name) override { fill("F8", name); }
  void setF9Filename(const std::string& name) override { fill("F9", name); }
  void setFAFilename(const std::string& name) override { fill("FA", name); }
  void set01Filename(const std::string& name) override { fill("01", name); }

  std::string filled;

 private:
  void fill(const std::string& slot, const std::string& name) {
    if (name == "x/2b7b6af2-7a1f-11e2-83d0-0017f200be7f") throw std::domain_error("refused");
    filled += slot + "=" + name;
  }
};

class Filing : public testing::Test {
 protected:
  std::string filed(const std::string& name) {
    slots.clear();
    setter->setScreenMetaData(&slots, name);
    return slots.filled;
  }

  Slots slots;
  const std::unique_ptr<Kestova::ScreenMetaDataFilenameSetter> setter{
      VOXAScreenMetaDataFilenameSetter::create()};
};

TEST_F(Filing, HandsTheWholeNameToTheSlotOfItsStream) {
  for (const std::string key :
       {"f0", "f1", "f2", "f3", "f5", "f6", "f7", "f8", "f9", "fa", "fb", "01"}) {
    const std::string leaf = "2b7b6a" + key + "-7a1f-11e2-83d0-0017f200be7f";
    std::string slot = key;
    for (char& digit : slot) digit = static_cast<char>(std::toupper(digit));
    for (const std::string& name :
         {"C:\\rec\\a.voxa/" + leaf, "C:\\rec\\a.voxa\\" + leaf, leaf, "C:" + leaf}) {
      EXPECT_EQ(filed(name), slot + "=" + name);
    }
  }
}

TEST_F(Filing, LeavesOtherNamesAlone) {
  const std::string f0 = "2b7b6af0-7a1f-11e2-83d0-0017f200be7f";
  for (const std::string key : {"ef", "fc", "00", "02", "03", "04", "f4"}) {
    EXPECT_EQ(filed("a.voxa/2b7b6a" + key + "-7a1f-11e2-83d0-0017f200be7f"), "") << key;
  }
  for (const std::string& name :
       {std::string("a.voxa/2B7B6AF0-7A1F-11E2-83D0-0017F200BE7F"), "a.voxa/{" + f0 + "}",
        "a.voxa/" + f0 + "/", "a.voxa/ " + f0, "a.voxa/" + f0 + " ", f0 + "/a.voxa",
        std::string("a.voxa"), std::string(),
        std::string("a.voxa/2b7b6af0-7a1f-11e2-83ac-0017f200be7f")}) {
    EXPECT_EQ(filed(name), "") << name;
  }
  setter->setScreenMetaData(nullptr, "a.voxa");  // no slot, so nobody is asked
  setter->initScreenMetaData(nullptr);
}

TEST_F(Filing, PassesOnWhatIsThrown) {
  for (const std::string bad : {"\xFF", "\xED\xA0\x80", "\xED\xBF\xBF", "\xE0\x80\xAF"}) {
    EXPECT_THROW(filed(bad + "/2b7b6af0-7a1f-11e2-83d0-0017f200be7f"), boost::system::system_error);
  }
  EXPECT_TRUE(slots.isEmpty());
  EXPECT_THROW(filed("x/2b7b6af2-7a1f-11e2-83d0-0017f200be7f"), std::domain_error);
}

}  // namespace
