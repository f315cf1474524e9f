// Which streams voxa chooses, and what it does with those of no certain type.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace {

using nlohmann::json;
using recording::Bytes;
using recording::streamId;
using testing_support::Result;
using testing_support::TempFolder;
using testing_support::voxa;

// Typed in times that rise, or fall once.
Bytes typed(const std::string& line, bool falls = false) {
  Bytes bytes = falls ? recording::keystrokeRecord(99, line.front(), 0) : Bytes();
  double seconds = 0;
  for (const char key : line) bytes += recording::keystrokeRecord(seconds += 0.25, key, 0);
  return bytes;
}

Bytes titles() {
  return recording::stringRecord(9, "Sign in") + recording::stringRecord(5, "The editor");
}

class Choice : public testing::Test {
 protected:
  std::string write(const char* leaf, const std::vector<recording::Entry>& entries) const {
    return m_folder.file(leaf, recording::atomBlock(entries));
  }

  const TempFolder m_folder;
};

TEST_F(Choice, OfPrivacyHasEveryStreamThatMayBeText) {
  const struct {
    Bytes records;
    std::vector<std::string> types;  // as which it is searched
    int status;
  } cases[] = {
      {typed("bob@acme.org\r"), {"keystrokes"}, 6},
      {typed("bob@acme.org\r", true), {"keystrokes"}, 6},
      {titles(), {"strings"}, 0},
      {Bytes(4 * 16, '\0'), {"keystrokes"}, 0},
      {Bytes(33, '\x7F'), {}, 1},
      {"", {}, 0},
  };
  for (const auto& row : cases) {
    const std::string file = write("a.voxa", {{streamId(0xF3), row.records}});
    const Result result = voxa({"privacy", file, "--format=json"});
    EXPECT_EQ(result.status, row.status) << result.error;
    std::vector<std::string> types;
    const json document = json::parse(result.out);
    for (const json& stream : document["files"][0]["streams"]) {
      types.push_back(stream["type"]);
      EXPECT_FALSE(stream["certain"]) << row.records.size();
    }
    EXPECT_EQ(types, row.types) << row.records.size();
    const bool isText = !row.types.empty();
    const Result redacted = voxa({"records", file, "F3", "--as=int64s", "--redact"});
    EXPECT_EQ(redacted.status == 2, isText) << redacted.error;
  }
}

}  // namespace
