#include <gtest/gtest.h>

#include <boost/system/system_error.hpp>
#include <nlohmann/json.hpp>

#include "names/Utf16.h"
#include "names/WindowsPath.h"
#include "tests/support/Hex.h"

namespace names {
namespace {

// What Boost.Filesystem answers on Windows for 175 names.
TEST(WindowsPath, IsTakenApartAsOnWindows) {
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

TEST(WindowsPath, RefusesNamesThatAreNotUtf8) {
  struct Row {
    const char* name;
    const char* message;
  };
  for (const Row& row :
       {Row{"a\xFF", "boost::filesystem::path codecvt to wstring: error"},
        Row{"\xC0\xAF", "boost::filesystem::path codecvt to wstring: error"},
        Row{"\xE0\x80\xAF", "boost::filesystem::path codecvt to wstring: error"},
        Row{"\xF0\x80\x80\xAF", "boost::filesystem::path codecvt to wstring: error"},
        Row{"\xF4\x90\x80\x80", "boost::filesystem::path codecvt to wstring: error"},
        Row{"a/\xED\xA0\x80", "boost::filesystem::path codecvt to wstring: error"},
        Row{"\xED\xBF\xBF/a", "boost::filesystem::path codecvt to wstring: error"},
        Row{"\xED\xA0\xBD\xED\xB8\x80", "boost::filesystem::path codecvt to wstring: error"},
        Row{"a/\xE2\x82", "boost::filesystem::path codecvt to wstring: partial"}}) {
    try {
      const WindowsPath path(row.name);
      ADD_FAILURE() << row.message;
    } catch (const boost::system::system_error& error) {
      EXPECT_STREQ(error.what(), row.message);
      EXPECT_STREQ(error.code().category().name(), "codecvt");
    }
  }
}

TEST(Utf16, ConvertsCharactersAboveTheBasicPlane) {
  const std::string name = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  const std::wstring wide = toUtf16(name);
  EXPECT_EQ(wide, (std::wstring{L'a', 0xE9, 0x20AC, wchar_t{0xD83D}, wchar_t{0xDE00}}));
  EXPECT_EQ(toUtf8(wide), name);
  EXPECT_EQ(toUtf8(toUtf16("")), "");
  EXPECT_THROW(toUtf8({wchar_t{0xDE00}}), boost::system::system_error);
}

}  // namespace
}  // namespace names
