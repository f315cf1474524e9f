#include "tools/formats/Captions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "text/Utf8.h"
#include "tools/formats/CaptionText.h"
#include "tools/formats/KeyCues.h"
#include "tools/recording/Dice.h"

namespace formats {

namespace {

using ZRKMetaData::KeyStroke;

struct Key {
  double seconds;
  int character;
  int flags = 0;
};

std::vector<Key> typed(const std::string& text, double start, double step) {
  std::vector<Key> keys;
  for (const char character : text) {
    keys.push_back({start + step * static_cast<double>(keys.size()), character});
  }
  return keys;
}

std::vector<Cue> cuesOf(const std::vector<Key>& keys, const KeyCueOptions& options,
                        const CueClock& clock = CueClock(1000)) {
  std::vector<Cue> cues;
  KeyCues grouping(options, clock, [&cues](const Cue& cue) { cues.push_back(cue); });
  for (const Key& key : keys) grouping.add(key.seconds, KeyStroke(key.character, key.flags));
  grouping.finish();
  return cues;
}

std::vector<std::string> shown(const std::vector<Cue>& cues) {
  std::vector<std::string> texts;
  for (const Cue& cue : cues) {
    texts.push_back(std::to_string(cue.start) + "-" + std::to_string(cue.end) + " " + cue.text);
  }
  return texts;
}

struct CueCase {
  const char* name;
  std::vector<Key> keys;
  std::vector<std::string> cues;
  bool onlyShortcuts = false;
  bool appliesBackspace = false;
};

void PrintTo(const CueCase& c, std::ostream* out) {
  *out << c.name;
}

class Cues : public testing::TestWithParam<CueCase> {};

TEST_P(Cues, Are) {
  const CueCase& c = GetParam();
  KeyCueOptions options;
  options.onlyShortcuts = c.onlyShortcuts;
  options.appliesBackspace = c.appliesBackspace;
  options.labels = KeyLabels::fromJson(
      R"({"keys": {"27": "Esc", "1": ""}, "flags": {"2": "", "4": "Ctrl", "8": "Alt"}})");
  EXPECT_EQ(shown(cuesOf(c.keys, options)), c.cues);
}

// Gap 0.7 s, hold 1.5 s.
INSTANTIATE_TEST_SUITE_P(
    Grouping, Cues,
    testing::Values(
        CueCase{"NoneWithoutKeys", {}, {}},
        CueCase{"ShareTheGap", {{1, 'a'}, {1.7, 'b'}, {2.3, 'c'}}, {"1000-3800 abc"}},
        CueCase{"EndAfterTheHold", {{1, 'a'}, {4, 'b'}}, {"1000-2500 a", "4000-5500 b"}},
        CueCase{"EndWhenTheNextBegins", {{1, 'a'}, {2, 'b'}}, {"1000-2000 a", "2000-3500 b"}},
        CueCase{"LastOneTickAtLeast",
                typed(std::string(50, 'a'), 0, 0),
                {"0-1 " + std::string(42, 'a'), "1-1500 aaaaaaaa"}},
        CueCase{
            "LeaveOutFallingAndImpossibleTimes",
            {{2, 'a'}, {1, 'b'}, {2.5, 'c'}, {-1, 'd'}, {NAN, 'e'}, {INFINITY, 'f'}, {4e5, 'g'}},
            {"2000-4000 ac"}},
        CueCase{"StayBelowTwoDigitHours", {{359999.5, 'a'}}, {"359999500-359999999 a"}},
        CueCase{"EndBetweenWords",
                typed("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa bb", 0, 0.5),
                {"0-18000 aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\u2423", "18000-20000 bb"}},
        CueCase{"EndAtTheirLength",
                typed(std::string(50, 'a'), 0, 0.5),
                {"0-21000 " + std::string(42, 'a'), "21000-26000 aaaaaaaa"}}),
    [](const auto& tested) { return tested.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Text, Cues,
    testing::Values(
        CueCase{"ShowSpacesAtTheEdgesAndInRuns",
                typed(" a b  c ", 0, 0),
                {"0-1500 \u2423a b\u2423\u2423c\u2423"}},
        CueCase{"SetShortcutsApart",
                {{0, 'a'}, {0, 'c', 4}, {0, 'v', 12}, {0, 'b'}, {0, ' ', 4}, {0, 27}},
                {"0-1500 a Ctrl+c Ctrl+Alt+v b Ctrl+\u2423 Esc"}},
        CueCase{"ShowRawFlagsUnlessTheyAreZeroOrHidden",
                {{0, 'T', 2}, {0, 'T', 3}, {0, 'T', INT32_MIN}},
                {"0-1500 T 0x1+T 0x80000000+T"}},
        CueCase{"ShowSymbolsAndNumbers",
                {{0, '\b'},
                 {0, '\t'},
                 {0, '\r'},
                 {0, 0x1F600},
                 {0, 0xF700},
                 {0, -1},
                 {0, 1},
                 {0, 0x202E}},
                {"0-1500 \u232B\u21E5\u21B5\U0001F600 [0xf700] [0xffffffff] [0x202e]"}},
        CueCase{"HoldOnlyShortcuts",
                {{0, 'a'}, {0.1, 'c', 4}, {0.2, 'b', 2}},
                {"100-1600 Ctrl+c"},
                true},
        CueCase{"ApplyBackspace",
                {{0, 'a'}, {0, 'b'}, {0, '\b'}, {0, 0x7F}, {0.1, 'c'}, {0.2, '\b', 4}, {0.3, '\b'}},
                {"100-1800 c Ctrl+\u232B \u232B"},
                false,
                true},
        CueCase{"ApplyBackspaceInTheirCueOnly",
                {{0, 'a'}, {2, '\b'}, {2, '\b'}},
                {"0-1500 a", "2000-3500 \u232B\u232B"},
                false,
                true},
        CueCase{"VanishWhenAllIsRemoved",
                {{0, 'a'}, {0, '\b'}, {3, 'b'}},
                {"3000-4500 b"},
                false,
                true}),
    [](const auto& tested) { return tested.param.name; });

TEST(Cues, NeverOverlapOrRunBackward) {
  recording::Dice dice(3);
  const CueClock clocks[] = {CueClock(1000), CueClock(100), CueClock(100, {30000, 1001})};
  for (int round = 0; round < 300; ++round) {
    const double steps[] = {0, 1e-4, 0.02, 0.7, 0.71, 3, round % 7 == 0 ? -0.5 : 0.1};
    std::vector<Key> keys;
    double time = 0;
    for (int key = 0; key < 200; ++key) {
      time += steps[dice.below(7)];
      keys.push_back({time, dice.below(128), dice.below(5) == 0 ? 4 : 0});
    }
    KeyCueOptions options;
    options.hold = round % 3;
    options.appliesBackspace = round % 2 == 0;
    std::int64_t end = 0;
    for (const Cue& cue : cuesOf(keys, options, clocks[round % 3])) {
      ASSERT_GE(cue.start, end);
      ASSERT_GT(cue.end, cue.start);
      ASSERT_FALSE(cue.text.empty());
      end = cue.end;
    }
  }
}

TEST(CueClock, ShowsEachFrameOnItsOwnTicks) {
  for (const series::FrameRate rate : {series::FrameRate(24000, 1001), series::FrameRate(25),
                                       series::FrameRate(30000, 1001), series::FrameRate(60)}) {
    const CueClock clock(100, rate);
    const auto milliseconds = [&rate](std::int64_t frame) {  // as players count them
      return frame * rate.denominator() * 1000 / rate.numerator();
    };
    for (std::int64_t frame = 1; frame < 400'000; frame += 1 + frame / 50) {
      const double seconds =
          static_cast<double>(frame) * rate.denominator() / static_cast<double>(rate.numerator());
      const std::int64_t start = clock.tickAt(seconds) * 10;
      ASSERT_LE(start, milliseconds(frame));
      ASSERT_GT(start, milliseconds(frame - 1));
      ASSERT_EQ(CueClock(100).tickAt(seconds), clock.tickAt(seconds)) << frame;
    }
  }
}

TEST(CueClock, KeepsDecimalsThatDoublesCannotHold) {
  for (int tick = 0; tick < 100'000; tick += 7) {
    ASSERT_EQ(CueClock(1000).tickAt(tick / 1000.0), tick);
    ASSERT_EQ(CueClock(100).tickAt(tick / 100.0), tick);
  }
}

TEST(Captions, AreWrittenInTheFormOfTheFormat) {
  const auto written = [](CaptionFormat format) {
    std::string text;
    CaptionWriter writer(format, [&text](std::string_view piece) { text += piece; });
    writer.add({1, 2, "a<"});
    writer.add({35999999, 36000000, "b, {c}"});
    return text;
  };
  EXPECT_EQ(written(CaptionFormat::Vtt),
            "WEBVTT\n\n00:00:00.001 --> 00:00:00.002\na&lt;\n\n"
            "09:59:59.999 --> 10:00:00.000\nb, {c}\n\n");
  EXPECT_EQ(written(CaptionFormat::Srt),
            "1\n00:00:00,001 --> 00:00:00,002\na\u2039\n\n"
            "2\n09:59:59,999 --> 10:00:00,000\nb, {\u2060c}\n\n");
  const std::string ass = written(CaptionFormat::Ass);
  EXPECT_EQ(ass.substr(ass.find("Dialogue")),
            "Dialogue: 0,0:00:00.01,0:00:00.02,Keys,,0,0,0,,a<\n"
            "Dialogue: 0,99:59:59.99,100:00:00.00,Keys,,0,0,0,,b, \\{\u2060c\\}\n");
}

// Returns the text without what its escapes add.
std::string without(std::string text, const std::string& added) {
  for (auto at = text.find(added); at != std::string::npos; at = text.find(added, at)) {
    text.erase(at, added.size());
  }
  return text;
}

TEST(CaptionText, HasNoMarkupForAnyBytes) {
  const std::string alphabet[] = {
      "<",  ">",  "&",      "-",      "{", "}", "\\", "N", "b",    "i",      ";",  "\n",
      "\r", "\0", "\u2028", "\u00E9", "h", "/", "an", "1", "\xC3", "\u2060", "lt", "0:01 --> 0:02"};
  recording::Dice dice(4);
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    for (int part = 0; part < 8; ++part) text += alphabet[dice.bits() % std::size(alphabet)];
    const std::string vtt = vttText(text);
    const std::string srt = srtText(text);
    const std::string ass = assText(text);
    for (const std::string& each : {vtt, srt, ass}) {
      ASSERT_TRUE(text::isWellFormedUtf8(each));
      ASSERT_EQ(each.find_first_of(std::string("\n\r\0", 3)), std::string::npos);
    }
    ASSERT_EQ(vtt.find_first_of("<>"), std::string::npos);
    for (auto at = vtt.find('&'); at != std::string::npos; at = vtt.find('&', at + 1)) {
      const std::string rest = vtt.substr(at, 4);
      ASSERT_TRUE(rest == "&amp" || rest == "&lt;" || rest == "&gt;") << vtt;
    }
    ASSERT_EQ(srt.find_first_of("<>"), std::string::npos);
    for (std::size_t at = 0; at < srt.size(); ++at) {
      const bool isMarked = std::string("&{\\").find(srt[at]) != std::string::npos;
      ASSERT_TRUE(!isMarked || srt.substr(at + 1, 3) == "\u2060") << srt;
    }
    for (std::size_t at = 0; at < ass.size(); ++at) {
      if (ass[at] == '\\') {
        ASSERT_TRUE(ass[at + 1] == '{' || ass[at + 1] == '}' || ass.substr(at + 1, 3) == "\u2060");
        ++at;
      } else {
        ASSERT_TRUE(ass[at] != '{' && ass[at] != '}') << ass;
      }
    }
  }
}

TEST(CaptionText, ReadsAsItWasTyped) {
  EXPECT_EQ(without(srtText("if (a < b && c) { \\N --> }"), "\u2060"),
            "if (a \u2039 b && c) { \\N --\u203A }");
  EXPECT_EQ(vttText("\xFF"
                    "a\nb"),
            "\uFFFD"
            "a b");
  EXPECT_EQ(assText("\\N"), "\\\u2060N");
}

TEST(KeyCues, OfARedactionHaveTheTimesOfTheText) {
  std::vector<Key> keys = typed("the quick brown fox jumps over a  dgo", 0, 0.1);
  for (const char character : {'\b', '\b', 'o', 'g', '\n', 'x', '\x1b'}) {
    keys.push_back({keys.back().seconds + 0.1, character});
  }
  KeyCueOptions options;
  options.appliesBackspace = true;
  options.labels = KeyLabels::fromJson(R"({"keys": {"42": "", "27": "Esc"}})");
  const std::vector<Cue> plain = cuesOf(keys, options);
  ASSERT_GT(plain.size(), 1U);
  const std::pair<series::Redaction, const char*> cases[] = {
      {series::Redaction::Letters, "xxx xxxxx xxxxx xxx xxxxx xxxx x\u2423\u2423xxx\u21B5"},
      {series::Redaction::Digits, "the quick brown fox jumps over a\u2423\u2423dog\u21B5"},
      {series::Redaction::All, "xxx*xxxxx*xxxxx*xxx*xxxxx*xxxx*x**xxx*"}};
  for (const auto& [redaction, text] : cases) {
    options.redaction = redaction;
    const std::vector<Cue> masked = cuesOf(keys, options);
    ASSERT_EQ(masked.size(), plain.size());
    for (std::size_t i = 0; i < plain.size(); ++i) {
      EXPECT_EQ(masked[i].start, plain[i].start);
      EXPECT_EQ(masked[i].end, plain[i].end);
    }
    EXPECT_EQ(masked.front().text, std::string(text).substr(0, masked.front().text.size()));
  }
}

struct LabelCase {
  const char* json;
  const char* error;
};

TEST(KeyLabels, SayWhatIsWrong) {
  const LabelCase cases[] = {
      {"", "not JSON at byte 1"},
      {"[]", "the JSON is not an object"},
      {R"({"keys": {"1": 1e999}})", "a number in the JSON is out of range"},
      {R"({"key": {}})", "unknown member 'key'; use 'keys' and 'flags'"},
      {R"({"keys": []})", "'keys' is not an object"},
      {R"({"keys": {"8": 1}})", "the label of '8' in 'keys' is not a string"},
      {R"({"keys": {"a": ""}})",
       "'a' in 'keys' is not a 32-bit number; use decimal or 0x and hexadecimal"},
      {R"({"keys": {"0x100000000": ""}})",
       "'0x100000000' in 'keys' is not a 32-bit number; use decimal or 0x and hexadecimal"},
      {R"({"flags": {"6": ""}})", "'6' in 'flags' is not a single bit"},
      {R"({"flags": {"0": ""}})", "'0' in 'flags' is not a single bit"},
  };
  for (const LabelCase& c : cases) {
    try {
      KeyLabels::fromJson(c.json);
      ADD_FAILURE() << c.json;
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), c.error);
    }
  }
}

TEST(KeyLabels, NameCodesAndTheHighestFlag) {
  const auto labels = KeyLabels::fromJson(
      R"({"keys": {"-2": "Up", "0xFFFFFFFD": "Down"}, "flags": {"0x80000000": "Fn"}})");
  EXPECT_EQ(labels.keyText(-2), "Up");
  EXPECT_EQ(labels.keyText(-3), "Down");
  EXPECT_EQ(labels.flagsText(INT32_MIN + 1), "Fn+0x1+");
}

}  // namespace

}  // namespace formats
