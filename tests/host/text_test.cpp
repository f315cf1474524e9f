#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "host/Kestova/Json.h"
#include "host/Kestova/XMLable.h"
#include "text/Printable.h"
#include "text/TextBlock.h"
#include "text/Utf8.h"

namespace Kestova {
namespace {

#define FFFD "\xEF\xBF\xBD"

TEST(Utf8, EveryCharacterReadsAsItWasEncoded) {
  for (char32_t character = 0; character < 0x110000; ++character) {
    if (character == 0xD800) character = 0xE000;
    const std::string bytes = text::encodedUtf8(character);
    const text::Utf8Character read = text::firstCharacter(bytes);
    ASSERT_TRUE(read.isWellFormed && read.codePoint == character && read.length == bytes.size())
        << character;
  }
}

TEST(Utf8, MalformedCharactersBecomeUFFFD) {
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

// Each end of an escaped range is next to a character that is not escaped.
TEST(Printable, EscapesWhatCouldControlATerminal) {
  for (const auto& [bytes, shown] : std::vector<std::pair<std::string, std::string>>{
           {std::string("\0\x1F \t\n~\x7F\\", 8), R"(\x00\x1f \x09\x0a~\x7f\)"},
           {"\xC2\x80\xC2\x9F\u00A0", "\\u0080\\u009f\u00A0"},
           {"\u061B\u061C\u061D", "\u061B\\u061c\u061D"},
           {"\u200D\u200E\u200F\u2010", "\u200D\\u200e\\u200f\u2010"},
           {"\u2027\u2028\u202E\u202F", "\u2027\\u2028\\u202e\u202F"},
           {"\u2065\u2066\u2069\u206A", "\u2065\\u2066\\u2069\u206A"},
           {"\xC3\xA9\xE2\x82z\xED\xA0\x80\xFF",
            "\xC3\xA9"
            R"(\xe2\x82z\xed\xa0\x80\xff)"},
       }) {
    EXPECT_EQ(text::printable(bytes), shown);
    EXPECT_EQ(text::printable(shown), shown) << "escaped twice";
  }
}

TEST(Json, QuotesAnyBytesAsAValidString) {
  EXPECT_EQ(json_representation(std::string("a\"b\\c/\b\f\n\r\t\x01\x1F\x7F\0z\xC3\xA9\xFF", 19)),
            "\"a\\\"b\\\\c/\\b\\f\\n\\r\\t\\u0001\\u001f\x7F\\u0000z\xC3\xA9" FFFD "\"");
}

TEST(Xml, EscapesMarkupAndDropsForbiddenCharacters) {
  EXPECT_EQ(xml_representation("<a b=\"c\">'&'</a>"),
            "&lt;a b=&quot;c&quot;&gt;&apos;&amp;&apos;&lt;/a&gt;");
  EXPECT_EQ(xml_representation(std::string("a\0\x01\x1F\t\n\r\x7F\xEF\xBF\xBE\xC3\xA9\xFFz", 15)),
            "a&#9;&#10;&#13;\x7F\xC3\xA9" FFFD "z");
}

// At every distance from the end of the buffer, with parts that fit, that do not, and that exceed
// it.
TEST(TextBlock, LosesNothingAtTheEndOfItsBuffer) {
  constexpr std::size_t kSize = 256;
  for (std::size_t before = kSize - 100; before <= kSize + 1; ++before) {
    for (const std::size_t large : {std::size_t{0}, std::size_t{7}, 2 * kSize}) {
      const std::string body(large, 'b');
      std::ostringstream out;
      {
        text::TextBlock<kSize> block(out);
        block.write(std::string(before, 'a'));
        block.write(-21, 0.1, 'x', body, body);
      }
      ASSERT_EQ(out.str(), std::string(before, 'a') + "-210.1x" + body + body)
          << before << " bytes and " << large;
    }
  }
}

// An element whose start tag ends at every distance from the end of the buffer.
struct Element final : XMLable {
  Element(std::size_t attributeSize_, std::size_t bodySize_)
      : attributeSize(attributeSize_), bodySize(bodySize_) {}
  void xmlElementName(XMLOptions& options) const override { options.outStream() << 'E'; }
  void xmlAttributes(XMLOptions& options) const override {
    options.outStream() << std::string(attributeSize, 'a');
  }
  void xmlBody(XMLOptions& options, int /*indent*/) const override {
    options.outStream() << std::string(bodySize, 'b');
  }
  std::size_t attributeSize;
  std::size_t bodySize;
};

TEST(Xml, ClosesTheStartTagAtTheEndOfTheBuffer) {
  constexpr std::size_t kBuffer = std::size_t{32} << 10U;
  for (std::size_t size = kBuffer - 8; size <= kBuffer + 2; ++size) {
    for (const std::size_t body : {std::size_t{0}, std::size_t{1}, 2 * kBuffer}) {
      std::ostringstream out;
      XMLOptions options(out);
      Element(size, body).toXML(options, 1, "p:");
      const std::string start = "  <p:E " + std::string(size, 'a');
      ASSERT_TRUE(out.str() == (body == 0 ? start + "/>\n"
                                          : start + ">\n" + std::string(body, 'b') + "  </p:E>\n"))
          << size << " bytes and " << body;
    }
  }
  std::ostringstream out;
  XMLOptions options(out);
  Element(0, 0).toXML(options, 0, "");
  EXPECT_EQ(out.str(), "<E/>\n");
}

}  // namespace
}  // namespace Kestova
