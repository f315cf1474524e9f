// The names of containers.
#include <gtest/gtest.h>

#include <utility>

#include "tools/series/Containers.h"

namespace {

using series::containerKindNamed;
using series::containerName;

TEST(Containers, HaveNamesThatLeadBackToThem) {
  for (const auto kind : series::kContainerKinds) {
    EXPECT_EQ(containerKindNamed(containerName(kind)), kind);
    EXPECT_NE(kind, ZRKMetaData::None);
  }
}

TEST(Containers, OfOtherNamesAndNumbersAreNone) {
  for (const char* name : {"", "None", "riff", "Raw ", "Atom"}) {
    EXPECT_FALSE(containerKindNamed(name)) << name;
  }
  EXPECT_STREQ(containerName(ZRKMetaData::None), "None");
}

TEST(Containers, OfEveryExtensionCanBeRead) {
  using Row = std::pair<const char*, const char*>;
  for (const auto& [file, name] :
       {Row{"a.voxa", "Atoms"}, Row{"a.MP4", "Atoms"}, Row{"a.mov", "Atoms"}, Row{"a.avi", "Riff"},
        Row{"a.wav", "Riff"}, Row{"a.dat", "Raw"}}) {
    EXPECT_EQ(containerKindNamed(name), ZRKMetaData::containerKindOfFileName(file)) << file;
  }
}

}  // namespace
