#include <gtest/gtest.h>

#include <sstream>

#include "host/Kestova/Json.h"
#include "host/Kestova/KvObject.h"
#include "host/Kestova/Range.h"
#include "host/Kestova/TextBlock.h"
#include "host/Kestova/XMLable.h"
#include "text/Utf8.h"

namespace Kestova {
namespace {

#define FFFD "\xEF\xBF\xBD"

TEST(Utf8, ReplacesWhatIsNotWellFormed) {
  struct Row {
    const char* why;
    std::string text;
    std::string result;
  };
  for (const Row& row : {
           Row{"all lengths", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80",
               "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
           Row{"the ends of each length",
               "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
               "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
           Row{"a stray continuation", "a\x80z", "a" FFFD "z"},
           Row{"an impossible byte", "\xFF", FFFD},
           Row{"an overlong slash", "\xC0\xAF", FFFD FFFD},
           Row{"an overlong three", "\xE0\x80\x80", FFFD FFFD FFFD},
           Row{"a surrogate", "\xED\xA0\x80", FFFD FFFD FFFD},
           Row{"above U+10FFFF", "\xF4\x90\x80\x80", FFFD FFFD FFFD FFFD},
           Row{"cut inside a character", "\xF0\x9F\x98", FFFD},
           Row{"a lead where a continuation should be", "\xE2\x82\xC3\xA9", FFFD "\xC3\xA9"},
       }) {
    EXPECT_EQ(text::wellFormedUtf8(row.text), row.result) << row.why;
  }
}

TEST(Json, QuotesAnyBytes) {
  EXPECT_EQ(json_representation(std::string("a\"b\\c/\b\f\n\r\t\x01\x1F\x7F\0z\xC3\xA9\xFF", 19)),
            "\"a\\\"b\\\\c/\\b\\f\\n\\r\\t\\u0001\\u001f\x7F\\u0000z\xC3\xA9" FFFD "\"");
}

TEST(Xml, EscapesMarkupAndDropsWhatItForbids) {
  EXPECT_EQ(xml_representation("<a b=\"c\">'&'</a>"),
            "&lt;a b=&quot;c&quot;&gt;&apos;&amp;&apos;&lt;/a&gt;");
  EXPECT_EQ(xml_representation(std::string("a\0\x01\x1F\t\n\r\x7F\xEF\xBF\xBE\xC3\xA9\xFFz", 15)),
            "a&#9;&#10;&#13;\x7F\xC3\xA9" FFFD "z");
}

// At every distance from the end of the block, with parts that fit, that do not, and that never do.
TEST(TextBlock, LosesNothingAtItsEnd) {
  constexpr std::size_t kBlock = sizeof(TextBlock) & ~std::size_t{1023};
  for (std::size_t before = kBlock - 2 * kNumberRoom; before <= kBlock + 1; ++before) {
    for (const std::size_t large : {std::size_t{0}, std::size_t{7}, 2 * kBlock}) {
      const std::string body(large, 'b');
      std::ostringstream out;
      {
        XMLSink sink(out);
        sink.text().write(std::string(before, 'a'));
        sink.text().write(-21, RationalTime(-9223372036854775807, 9223372036854775806), 'x');
        sink.hold(">");
        sink.text().write(body);
        EXPECT_EQ(sink.takeBack(), large == 0);
        sink.text().write(Indent{static_cast<int>(large)}, body);
      }
      ASSERT_TRUE(out.str() ==
                  std::string(before, 'a') + "-21-9223372036854775807/9223372036854775806x" +
                      (large == 0 ? "" : ">") + body + std::string(2 * large, ' ') + body)
          << before << " bytes and " << large;
    }
  }
}

}  // namespace
}  // namespace Kestova
