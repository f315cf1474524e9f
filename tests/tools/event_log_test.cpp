// The log of a desktop that scripts/record-desktop writes, as streams.
#include "tools/recording/EventLog.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "tools/recording/Records.h"

namespace {

using recording::Bytes;
using recording::Entry;
using recording::streamId;

std::vector<Entry> entriesOf(const std::string& log) {
  std::istringstream lines(log);
  return recording::eventEntries(lines, [](const std::string& name) {
    return name == "empty.png" ? Bytes() : "bytes of " + name;
  });
}

TEST(EventLog, BecomesAStreamPerKindOfEvent) {
  const auto entries = entriesOf(
      "point 0 640 -1\n"
      "image 0 1 3 2 an arrow.png\n"
      "window 0.5 -4 50 640 480 A title, of  three parts \n"
      "key 1.5 72 4\n"
      "image 1.75 1\n"
      "buttons 2 5\n"
      "window 2.5 0 0 1 1 \n"
      "point 1e1 641 0\n");
  const std::pair<unsigned char, Bytes> expected[] = {
      {0xF0, recording::pointRecord(0, 640, -1) + recording::pointRecord(10, 641, 0)},
      {0xF1, recording::cursorImageRecord(0, 1, 3, 2, "bytes of an arrow.png") +
                 recording::cursorReferenceRecord(1.75, 1)},
      {0xF5, recording::rectRecord(0.5, -4, 50, 640, 480) + recording::rectRecord(2.5, 0, 0, 1, 1)},
      {0xF9, recording::stringRecord(0.5, "A title, of  three parts ") +
                 recording::stringRecord(2.5, "")},
      {0xF3, recording::keystrokeRecord(1.5, 72, 4)},
      {0xF6, recording::intRecord(2, 5)},
  };
  ASSERT_EQ(entries.size(), std::size(expected));
  for (std::size_t index = 0; index < entries.size(); ++index) {
    EXPECT_EQ(entries[index].id, streamId(expected[index].first));
    EXPECT_EQ(entries[index].records, expected[index].second) << index;
    EXPECT_EQ(entries[index].version, 1);
  }
  EXPECT_TRUE(entriesOf("").empty());
}

TEST(EventLog, NamesTheLineThatIsNoEvent) {
  const std::pair<const char*, const char*> cases[] = {
      {"point 0 1", "line 1: '' is not a number of this field"},
      {"point 0 1 2\npoint x 1 2", "line 2: 'x' is not a number of this field"},
      {"point nan 1 2", "line 1: the time is not finite"},
      {"key 0 72 2147483648", "line 1: '2147483648' is not a number of this field"},
      {"buttons 0 1 2", "line 1: '2' is one field too many"},
      {"image 0 1 2 3 empty.png", "line 1: the image is empty"},
      {"scroll 0 1", "line 1: 'scroll' is no kind of event"},
      {"\n", "line 1: '' is not a number of this field"},
  };
  for (const auto& [log, message] : cases) {
    try {
      entriesOf(log);
      ADD_FAILURE() << log << " is taken for events";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), message) << log;
    }
  }
}

}  // namespace
