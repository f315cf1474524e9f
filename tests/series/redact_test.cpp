// Masking of typed text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/series/RecordTypes.h"
#include "tools/series/Redact.h"

namespace {

using series::Redaction;

struct MaskCase {
  const char* text;
  const char* letters;
  const char* digits;
  const char* all;
};

TEST(Redaction, MasksEachCharacterByItsKind) {
  const MaskCase cases[] = {
      {"", "", "", ""},
      {"Ab9 z-", "xx9 x-", "Ab0 z-", "xx0*x*"},
      {"\t\n\b", "\t\n\b", "\t\n\b", "***"},
      {"\u00FC\u65E5\U0001F600", "xxx", "\u00FC\u65E5\U0001F600", "xxx"},
      {"\u0664\u0967\uFF15\U0001D7D9", "\u0664\u0967\uFF15\U0001D7D9", "0000", "0000"},
      {"\uF700\u0085", "\uF700\u0085", "\uF700\u0085", "**"},  // a function key, a control
      {"a\xE9\xF0\x9F", "xxx", "a\xE9\xF0\x9F", "xxx"},  // malformed: Latin-1, a cut character
  };
  for (const MaskCase& row : cases) {
    EXPECT_EQ(series::redactedText(row.text, Redaction::None), row.text);
    EXPECT_EQ(series::redactedText(row.text, Redaction::Letters), row.letters) << row.text;
    EXPECT_EQ(series::redactedText(row.text, Redaction::Digits), row.digits) << row.text;
    EXPECT_EQ(series::redactedText(row.text, Redaction::All), row.all) << row.text;
  }
  for (const int outside : {-1, 0x110000, 0xD800, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(series::redactedCharacter(outside, Redaction::Letters), 'x') << outside;
  }
}

TEST(Redaction, OfAVisitorReachesTextRecordsAlone) {
  std::vector<std::string> seen;
  const auto visit = series::redacting(Redaction::All, [&seen](double, const auto& record) {
    using Record = std::decay_t<decltype(record)>;
    if constexpr (std::is_same_v<Record, std::string>) {
      seen.push_back(record);
    } else if constexpr (std::is_same_v<Record, ZRKMetaData::KeyStroke>) {
      seen.push_back(std::to_string(record.character) + "/" + std::to_string(record.eventFlags));
    } else {
      seen.push_back(std::to_string(record));
    }
    return seen.size() < 3;
  });
  auto visitor = visit;
  EXPECT_TRUE(visitor(1, std::string("Id 7")));
  EXPECT_TRUE(visitor(1, ZRKMetaData::KeyStroke('q', 5)));
  EXPECT_FALSE(visitor(1, 1234));
  EXPECT_EQ(seen, (std::vector<std::string>{"xx*0", "120/5", "1234"}));
}

}  // namespace
