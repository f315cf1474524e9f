// The streams that voxa chooses, and its treatment of those of no certain type.
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

TEST_F(Choice, OfPrivacyIsNeverSilentOfATextThatIsCut) {
  for (const std::string& title : {std::string(300, 'a'), std::string("Sign in - bob@acme.org")}) {
    const std::string whole =
        recording::atomBlock({{streamId(0xF9), recording::stringRecord(1.25, title)}});
    constexpr std::size_t kFrameBytes = 8 + 8 + 24;  // of the block, the entry and its header
    for (std::size_t size = kFrameBytes; size < whole.size(); size += 37) {
      const Result result = voxa({"privacy", m_folder.file("a.voxa", whole.substr(0, size))});
      EXPECT_TRUE(result.status == 1 || result.status == 3) << size << ": " << result.out;
      EXPECT_NE(result.error.find("the file ends "), std::string::npos) << result.error;
    }
  }
}

TEST_F(Choice, OfDiffGoesOnAfterEveryStream) {
  const std::vector<recording::Entry> entries = {
      {streamId(0xF0), Bytes(33, 'a')},        // no type fits
      {streamId(0xF1), ""},                    // no records
      {streamId(0xF2), typed("typed"), 9},     // refused
      {streamId(0xF3), typed("a few words")},  // named
      {streamId(0xF8), Bytes(33, 'c')}};       // only in the first file
  std::vector<recording::Entry> changed(entries.begin(), entries.end() - 1);
  changed[0].records.back() = 'b';
  changed[2].version = 1;
  changed[3].records = typed("a few word");
  const std::string before = write("a.voxa", entries);
  const std::string after = write("b.voxa", changed);
  const auto streamsOf = [](const Result& result) {
    std::string text;
    const json document = json::parse(result.out);
    for (const json& stream : document["streams"]) {
      text += stream["key"].get<std::string>() + " " + stream["in"].get<std::string>() + " " +
              (stream["type"] == "unknown" ? stream["differs"].dump() : stream["removed"].dump()) +
              "\n";
    }
    return text + document["equal"].dump();
  };
  const Result result = voxa({"diff", before, after, "--as=F3=keystrokes", "--format=json"});
  EXPECT_EQ(result.status, 7) << result.error;
  EXPECT_EQ(streamsOf(result),
            "F0 both true\nF1 both false\nF2 both true\nF3 both 1\nF8 before true\nfalse");
  const Result same = voxa({"diff", before, before, "--as=F3=keystrokes", "--format=json"});
  EXPECT_EQ(same.status, 0) << same.error;
  EXPECT_EQ(streamsOf(same),
            "F0 both false\nF1 both false\nF2 both false\nF3 both 0\n"
            "F8 both false\ntrue");
  // What must not be printed is compared by its bytes.
  const Result masked =
      voxa({"diff", before, after, "--as=F3=points", "--redact", "--format=json"});
  EXPECT_EQ(masked.status, 2);
  EXPECT_NE(streamsOf(masked).find("F3 both true"), std::string::npos) << masked.out;
}

}  // namespace
