#include <gtest/gtest.h>

#include <boost/uuid/string_generator.hpp>

#include "names/StreamFileName.h"

namespace names {
namespace {

const char kText[] = "2b7b6af0-7a1f-11e2-83d0-0017f200be7f";
const boost::uuids::uuid kId = boost::uuids::string_generator()(kText);

TEST(StreamFileName, IsSplitIntoRecordingAndIdentifier) {
  struct Row {
    std::string name;
    std::string recordingPath;
    bool hasIdentifier;
  };
  const std::string text = kText;
  for (const Row& row : {
           Row{"C:/captures/take1.voxa/" + text, "C:/captures/take1.voxa", true},
           Row{"C:\\rec\\a.voxa\\" + text, "C:\\rec\\a.voxa", true},
           Row{"C:\\rec/a.voxa/" + text, "C:\\rec/a.voxa", true},
           Row{text, "", true},
           Row{"a.voxa/2B7B6AF0-7A1F-11E2-83D0-0017F200BE7F", "a.voxa", true},
           Row{"a.voxa/ 2b 7b6af0 -7a1f-11e2-83d0-0017f200be7f", "a.voxa", true},
           Row{"a.voxa/" + text + "and more", "a.voxa", true},
           Row{"a.voxa/{" + text + "}", "a.voxa", false},
           Row{"a.voxa/" + text + "/", "a.voxa/" + text, false},  // the last component is "."
           Row{"a.voxa/2b7b6af0-7a1f-11e2-83d0-0017f200be7", "a.voxa", false},
           Row{"a.voxa/2b7b6af07a1f-11e2-83d0-0017f200be7f0", "a.voxa", false},
           Row{"a.voxa", "", false},
           Row{"", "", false},
       }) {
    const StreamPath path = splitStreamPath(row.name);
    EXPECT_EQ(path.recordingPath, row.recordingPath) << row.name;
    const auto id = row.hasIdentifier ? std::optional<boost::uuids::uuid>(kId) : std::nullopt;
    EXPECT_TRUE(path.streamId == id) << row.name;
  }
}

TEST(StreamFileName, IsJoinedWithAForwardSlash) {
  EXPECT_EQ(streamFileName("C:\\rec\\demo.voxa", kId), std::string("C:\\rec\\demo.voxa/") + kText);
}

}  // namespace
}  // namespace names
