// File names in the forms that Windows hosts use.
#include <gtest/gtest.h>

#include <algorithm>
#include <boost/filesystem/exception.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/Parameter.h"
#include "tests/support/TempFolder.h"
#include "tools/host/FixedEditRate.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace {

TEST(WindowsNames, OpenTheirRecordings) {
  const testing_support::TempFolder folder;
  const recording::Entry entry{recording::streamId(0xF7), recording::intRecord(0, 1)};
  const std::string slashes = folder.file("Aufnahme \xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80.voxa",
                                          recording::atomBlock({entry}));
  std::string backSlashes = slashes;
  std::replace(backSlashes.begin(), backSlashes.end(), '/', '\\');
  ASSERT_EQ(backSlashes.substr(1, 2), ":\\");
  const VOXAScreenMetaDataLoader loader;
  const auto rate = boost::make_shared<hosting::FixedEditRate>(30U);
  for (const std::string& recording :
       {slashes, backSlashes, "\\\\?\\" + backSlashes, "\\\\.\\" + backSlashes}) {
    for (const char* const separator : {"/", "\\"}) {
      const std::string name = recording + separator + "2b7b6af7-7a1f-11e2-83d0-0017f200be7f";
      EXPECT_TRUE(loader.fileExists(name)) << name;
      EXPECT_EQ(loader.loadInts(name, "", {}, rate)->numKeyFrames(), 1U) << name;
    }
  }
}

TEST(WindowsNames, ThatCannotBeLookedUpThrow) {
  const VOXAScreenMetaDataLoader loader;
  try {
    loader.fileExists("//nosuch/share/x/2b7b6af7-7a1f-11e2-83d0-0017f200be7f");
    ADD_FAILURE() << "was looked up";
  } catch (const boost::filesystem::filesystem_error& error) {
    EXPECT_EQ(std::string(error.what()).find("boost::filesystem::status"), 0U) << error.what();
  }
}

}  // namespace
