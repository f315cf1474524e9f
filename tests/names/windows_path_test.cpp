#include <gtest/gtest.h>

#include <boost/system/system_error.hpp>
#include <nlohmann/json.hpp>

#include "names/Utf16.h"
#include "names/WindowsPath.h"
#include "tests/support/Hex.h"

namespace names {
namespace {

// The table holds the results of Boost.Filesystem on Windows for 175 names.
TEST(WindowsPath, IsDecomposedAsOnWindows) {
  const auto table = nlohmann::json::parse(testing_support::dataFile("windows-paths.json"));
  ASSERT_EQ(table.size(), 175U);
  for (const auto& row : table) {
    const auto name = row["name"].get<std::string>();
    const WindowsPath path(name);
    EXPECT_EQ(path.filename(), row["filename"]) << name;
    EXPECT_EQ(path.parentPath(), row["parent"]) << name;
    EXPECT_EQ(path.extension(), row["extension"]) << name;
  }
}

TEST(WindowsPath, RejectsNamesThatAreNotUtf8) {
  const std::string error = "boost::filesystem::path codecvt to wstring: error";
  const std::string partial = "boost::filesystem::path codecvt to wstring: partial";
  struct Row {
    const char* name;
    std::string message;
  };
  for (const Row& row : {Row{"a\xFF", error}, Row{"\xC0\xAF", error}, Row{"\xE0\x80\xAF", error},
                         Row{"\xF0\x80\x80\xAF", error}, Row{"\xF4\x90\x80\x80", error},
                         Row{"a/\xED\xA0\x80", error}, Row{"\xED\xBF\xBF/a", error},
                         Row{"\xED\xA0\xBD\xED\xB8\x80", error}, Row{"a/\xE2\x82", partial}}) {
    try {
      const WindowsPath path(row.name);
      ADD_FAILURE() << row.name << " was accepted";
    } catch (const boost::system::system_error& thrown) {
      EXPECT_EQ(thrown.what(), row.message);
      EXPECT_STREQ(thrown.code().category().name(), "codecvt");
    }
  }
}

TEST(Utf16, ConvertsCharactersOutsideTheBasicPlane) {
  const std::string name = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  const std::wstring wide = toUtf16(name);
  EXPECT_EQ(wide, (std::wstring{L'a', 0xE9, 0x20AC, wchar_t{0xD83D}, wchar_t{0xDE00}}));
  EXPECT_EQ(toUtf8(wide), name);
  EXPECT_EQ(toUtf8(toUtf16("")), "");
  EXPECT_THROW(toUtf8({wchar_t{0xDE00}}), boost::system::system_error);
}

}  // namespace
}  // namespace names
