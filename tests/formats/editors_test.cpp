// Formats that video editors read: MLT animations, chapters and OpenTimelineIO.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "text/Utf8.h"
#include "tools/formats/Chapters.h"
#include "tools/formats/MltAnimation.h"
#include "tools/formats/OtioTimeline.h"
#include "tools/recording/Dice.h"

namespace {

using namespace formats;

template <class Write>
std::string written(Write write) {
  std::string text;
  TextSink sink([&text](std::string_view block) { text += block; });
  write(sink);
  sink.flush();
  return text;
}

TEST(MltAnimation, HoldsTheLastValueOfEachFrame) {
  const std::string text = written([](TextSink& sink) {
    MltAnimation animation(sink);
    animation.begin("a<b");
    for (const auto& [frame, value] : {std::pair(-7, "1"), {-1, "2"}, {5, "3"}, {5, "<"}, {9, "4"}})
      animation.add(frame, value);
    animation.finish();
  });
  EXPECT_EQ(text, "<property name=\"a&lt;b\">0|=2;5|=&lt;;9|=4</property>\n");
  EXPECT_EQ(written([](TextSink& sink) {
              MltAnimation animation(sink);
              animation.begin("p");
              animation.finish();
            }),
            "<property name=\"p\"></property>\n");
}

TEST(MltAnimation, WritesTheFieldsOfARecordAsOneValue) {
  EXPECT_EQ(mltValue(0.1, ""), "0.1");
  EXPECT_EQ(mltValue(ZRKMetaData::Point(3, -4), ""), "3 -4");
  EXPECT_EQ(mltValue(ZRKMetaData::Point(3, -4), "y"), "-4");
  EXPECT_EQ(mltValue(ZRKMetaData::Rect(1, 2, 3, 4), ""), "1 2 3 4");
  EXPECT_EQ(mltValue(ZRKMetaData::CursorImage(7, 0, 0, 0, nullptr), ""), "7");
  EXPECT_EQ(mltValue(std::string("a;\"b\"=c"), ""), "\"a;'b'=c\"");
}

std::string shown(const std::vector<Chapter>& chapters) {
  std::string text;
  for (const Chapter& chapter : chapters) {
    text += chapter.title + " " + std::to_string(chapter.start) + " " +
            std::to_string(chapter.end) + "\n";
  }
  return text;
}

TEST(TextChapters, EndWhereTheNextOneBegins) {
  TextChapters chapters;
  for (const auto& [seconds, text] :
       {std::pair(2.0, "b"), {-3.0, "early"}, {-1.0, "a"}, {5.0, "replaced"}, {5.0, "c"}})
    chapters.add(seconds, text);
  EXPECT_EQ(shown(chapters.chapters(9)),
            "a 0.000000 2.000000\nb 2.000000 5.000000\nc 5.000000 9.000000\n");
  EXPECT_EQ(shown(chapters.chapters(1)),
            "a 0.000000 2.000000\nb 2.000000 5.000000\nc 5.000000 5.000000\n");
}

TEST(PauseChapters, BeginBehindEachPauseInWhateverOrderTheTimesAre) {
  recording::Dice dice(3);
  for (int round = 0; round < 200; ++round) {
    std::vector<double> times;
    for (int n = 0; n < 12; ++n) times.push_back(dice.below(60));
    PauseChapters chapters(4);
    for (const double time : times) chapters.add(time);
    std::set<double> sorted(times.begin(), times.end());
    std::vector<double> starts = {0};
    double before = 0;
    for (const double time : sorted) {
      if (time - before >= 4) starts.push_back(time);
      before = time;
    }
    const auto result = chapters.chapters(100);
    ASSERT_EQ(result.size(), starts.size());
    for (std::size_t i = 0; i < starts.size(); ++i) {
      EXPECT_EQ(result[i].start, starts[i]);
      EXPECT_EQ(result[i].end, i + 1 < starts.size() ? starts[i + 1] : 100);
      EXPECT_EQ(result[i].title, "Chapter " + std::to_string(i + 1));
    }
  }
}

TEST(FfMetadata, EscapesWhatHasAMeaning) {
  EXPECT_EQ(written([](TextSink& sink) {
              writeFfMetadata(sink, {{0.1, 2, std::string("a=b;c#d\\e\nf\0g\xFF", 14)}});
            }),
            ";FFMETADATA1\n\n[CHAPTER]\nTIMEBASE=1/1000000000\nSTART=100000000\nEND=2000000000\n"
            "title=a\\=b\\;c\\#d\\\\e\\\nf\uFFFDg\uFFFD\n");
}

TEST(OtioTimeline, HasAClipForEachRecordingAndExactTimes) {
  const std::string text = written([](TextSink& sink) {
    OtioTimeline timeline(sink, 30000.0 / 1001);
    timeline.begin("t\"");
    timeline.beginClip();
    timeline.beginStream({"a", "F9", series::recordTypeOf<std::string>()});
    timeline.add(3, 0.1, std::string("x\n"));
    timeline.beginStream({"a", "F3", series::recordTypeOf<ZRKMetaData::KeyStroke>()});
    timeline.add(1e17, 2, ZRKMetaData::KeyStroke(' ', -1));
    timeline.endClip("a", "a%20b", 300);
    timeline.beginClip();
    timeline.endClip("b", "b", 0);
    timeline.finish();
  });
  const auto json = nlohmann::json::parse(text);
  EXPECT_EQ(json["name"], "t\"");
  const auto& clips = json["tracks"]["children"][0]["children"];
  ASSERT_EQ(clips.size(), 2U);
  EXPECT_EQ(clips[0]["media_reference"]["target_url"], "a%20b");
  EXPECT_EQ(clips[0]["media_reference"]["available_range"]["duration"]["value"], 300.0);
  const auto& markers = clips[0]["markers"];
  ASSERT_EQ(markers.size(), 2U);
  EXPECT_EQ(markers[0]["name"], "x\n");
  EXPECT_EQ(markers[0]["metadata"]["voxa"]["time"], 0.1);
  EXPECT_EQ(markers[0]["marked_range"]["start_time"]["rate"], 30000.0 / 1001);
  EXPECT_TRUE(markers[0]["marked_range"]["start_time"]["value"].is_number_float());
  EXPECT_EQ(markers[1]["marked_range"]["start_time"]["value"], 1e17);
  EXPECT_EQ(markers[1]["name"], "Space");
  EXPECT_EQ(clips[1]["markers"].size(), 0U);
}

TEST(MediaUrl, EscapesWhatAUrlMustNotHold) {
  const struct {
    const char* file;
    bool isWindows;
    const char* url;
  } cases[] = {{"take 1.voxa", false, "take%201.voxa"},
               {"/a/b#?%.mp4", false, "file:///a/b%23%3f%25.mp4"},
               {"a\\b", false, "a%5cb"},
               {"a\\b", true, "a/b"},
               {"C:\\a\\b", true, "file:///C:/a/b"},
               {"\\\\host\\b", true, "file:////host/b"},
               {"\u00FC", false, "%c3%bc"}};
  for (const auto& row : cases) EXPECT_EQ(mediaUrl(row.file, row.isWindows), row.url);
}

TEST(KeyName, IsTheCharacterOrItsNumber) {
  const std::pair<int, const char*> cases[] = {{'a', "a"},
                                               {' ', "Space"},
                                               {8, "key 8"},
                                               {0x7F, "key 127"},
                                               {0xFC, "\u00FC"},
                                               {0x20AC, "\u20AC"},
                                               {0x1F600, "\U0001F600"},
                                               {0xD800, "key 55296"},
                                               {-1, "key -1"},
                                               {0x110000, "key 1114112"}};
  for (const auto& [character, name] : cases) EXPECT_EQ(keyName(character), name) << character;
}

TEST(EncodedUtf8, IsReadBackAsTheSameCharacter) {
  for (const char32_t code : {0x0U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xFFFFU, 0x10000U, 0x10FFFFU}) {
    const std::string bytes = text::encodedUtf8(code);
    const text::Utf8Character character = text::firstCharacter(bytes);
    EXPECT_EQ(character.codePoint, code);
    EXPECT_EQ(character.length, bytes.size());
    EXPECT_TRUE(character.isWellFormed);
  }
}

}  // namespace
