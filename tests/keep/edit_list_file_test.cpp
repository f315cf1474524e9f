// Lists of cuts as editors write them.
#include "tools/keep/EditListFile.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using keep::Piece;

std::string shown(const series::ExactSeconds& time) {
  return std::to_string(time.numerator) +
         (time.denominator == 1 ? "" : "/" + std::to_string(time.denominator));
}

// "from-to@at" for each piece, or the refusal.
std::string read(const std::string& text, const std::string& recording = "take1.voxa",
                 const std::optional<series::FrameRate>& rate = {}) {
  try {
    std::string all;
    for (const Piece& piece : keep::readEditList(text, recording, rate)) {
      all += (all.empty() ? "" : " ") + shown(piece.from) + "-" +
             (piece.to ? shown(*piece.to) : "") + "@" + shown(piece.at);
    }
    return all;
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

struct Row {
  const char* name;
  std::string text;
  std::string expected;
};

void check(const std::vector<Row>& rows, const std::optional<series::FrameRate>& rate = {}) {
  for (const Row& row : rows)
    EXPECT_EQ(read(row.text, "take1.voxa", rate), row.expected) << row.name;
}

TEST(ConcatList, KeepsTheFilesFromInpointToOutpoint) {
  check({
      {"two parts",
       "ffconcat version 1.0\nfile a.mp4\ninpoint 1.5\noutpoint 00:00:04\nfile a.mp4\n"
       "inpoint 10\noutpoint 12.25\n",
       "3/2-4@0 10-49/4@5/2"},
      {"rest at the end", "# made by hand\nfile a.mp4\noutpoint 2s\nfile a.mp4\ninpoint 5\n",
       "0-2@0 5-@2"},
      {"quotes", "file 'it'\\''s, a b.mp4'\noutpoint 1500ms\nfile it\\'s,\\ a\\ b.mp4\r\n",
       "0-3/2@0 0-@3/2"},
      {"duration", "file a\nduration 3\ninpoint 1\nfile a\noutpoint 1\noption x y\n",
       "1-4@0 0-1@3"},
      {"others are gaps",
       "file x/TAKE1.mp4\noutpoint 1\nfile intro.mp4\noutpoint 250000us\n"
       "file y/take1.mov\noutpoint 2\n",
       "0-1@0 0-2@5/4"},
      {"no recording", "file a.mp4\noutpoint 1\nfile b.mp4\noutpoint 1\n",
       "several recordings are listed, but none is called take1: a b"},
      {"no end", "file a.mp4\nfile a.mp4\n",
       "line 1: the end of a.mp4 is not listed; add an outpoint or a duration"},
      {"no file", "ffconcat version 1.0\ninpoint 2\n",
       "line 2: inpoint stands in front of the first file"},
      {"no time", "file a\noutpoint x\n",
       "line 2: x: a time is seconds (12.5 or 12.5s), [HH:]MM:SS[.mmm], a fraction of seconds "
       "(1001/30) or frames (75f)"},
      {"nothing", "ffconcat version 1.0\n", "no part of a recording is listed"},
      {"tabs", "file\ta.mp4\noutpoint\t2\n", "0-2@0"},
      {"no name", "file a\noutpoint 1\nfile\n", "line 3: file has no name behind it"},
      {"backwards", "# c\nfile a\ninpoint 5\noutpoint 3\n",
       "line 2: a has its outpoint before its inpoint"},
      {"negative", "file a\nduration -3\n", "line 1: a has a negative duration"},
      {"overlap", "file a\nduration 1\noutpoint 3\nfile a\noutpoint 1\n",
       "line 4: the part of a begins before that of line 1 ends"},
  });
}

TEST(Cmx3600, KeepsVideoEventsByTheirTimecodes) {
  const std::string head = "TITLE: CUT\nFCM: NON-DROP FRAME\n\n";
  const std::string first =
      "001  TAKE1    V     C        00:00:01:00 00:00:03:05 01:00:00:00 01:00:02:05\n";
  check(
      {
          {"two events",
           head + first +
               "* COMMENT\n"
               "002  TAKE1    AA/V  C        00:00:10:00 00:00:11:00 01:00:02:05 01:00:03:05\n",
           "1-16/5@0 10-11@11/5"},
          {"names and black",
           head + "001  AX  V  C  00:00:00:00 00:00:01:00 01:00:00:00 01:00:01:00\r\n"
                  "* FROM CLIP NAME:  Take1.mp4 \r\n"
                  "002  BL  V  C  00:00:00:00 00:00:02:00 01:00:01:00 01:00:03:00\n"
                  "003  AX  V  C  00:00:05:00 00:00:06:00 01:00:03:00 01:00:04:00\n"
                  "* FROM CLIP NAME: other.mp4\n",
           "0-1@0"},
          {"sound follows",
           head + first +
               "002  TAKE1    A     C        00:00:05:00 00:00:06:00 01:00:00:00 01:00:01:00\n",
           "1-16/5@0"},
          {"sound alone", "1 A A2 C 00:00:05:00 00:00:06:00 00:00:00:00 00:00:01:00", "5-6@0"},
          {"normal speed", first + "M2   TAKE1   025.0   00:00:01:00\n", "1-16/5@0"},
          {"dissolve", head + "001 A V D 025 00:00:01:00 00:00:03:05 01:00:00:00 01:00:02:05\n",
           "line 4: the transition D is no cut; only cuts are read"},
          {"speed", first + "M2   TAKE1   050.0   00:00:01:00\n",
           "line 2: changes of speed are not read"},
          {"stretched", "1 A V C 00:00:01:00 00:00:03:00 01:00:00:00 01:00:01:00\n",
           "line 1: 50 frames of the source last 25 frames; changes of speed are not read"},
          {"short", "1 A V C 00:00:01:00\n", "line 1: an event has four timecodes"},
          {"frames", "1 A V C 00:00:01:25 00:00:03:00 01:00:00:00 01:00:01:00\n",
           "line 1: 00:00:01:25 is no timecode of 25 frames per second"},
          {"signs", "1 A V C -1:00:01:20 00:00:03:00 01:00:00:00 01:00:01:00\n",
           "line 1: -1:00:01:20 is no timecode of 25 frames per second"},
          {"drop frame", "1 A V C 00:01:00;02 00:01:01;02 01:00:00;00 01:00:01;00\n",
           "line 1: drop-frame timecode needs --rate 30000/1001 or 60000/1001"},
          {"nothing", "TITLE: x\n", "no part of a recording is listed"},
          {"backwards", "1 A V C 00:00:03:00 00:00:01:00 01:00:02:00 01:00:00:00\n",
           "line 1: the source ends before it begins"},
          {"overlap", first + "002  TAKE1 V C 00:00:05:00 00:00:06:00 01:00:01:00 01:00:02:00\n",
           "line 2: the part of TAKE1 begins before that of line 1 ends"},
          {"out of order",
           "1 T V C 00:00:05:00 00:00:06:00 00:00:01:00 00:00:02:00\n"
           "2 T V C 00:00:08:00 00:00:09:00 00:00:00:00 00:00:01:00\n",
           "8-9@0 5-6@1"},
      },
      series::FrameRate(25));
  EXPECT_EQ(read(first), "an edit decision list needs the rate of its timecodes (--rate)");
}

TEST(Cmx3600, SkipsTheNumbersThatDropFrameTimecodeSkips) {
  const series::FrameRate ntsc(30000, 1001);
  // One hour of drop-frame timecode has 107,892 frames, a minute 1,798 but the tenth 1,800.
  check({{"hour", "FCM: DROP FRAME\n1 A V C 01:00:00:00 01:00:01:00 00:00:00:00 00:00:01:00\n",
          "8999991/2500-18004987/5000@0"},
         {"minute", "1 A V C 00:00:59;29 00:01:00;02 00:10:00;00 00:10:00;01\n",
          "1800799/30000-3003/50@0"}},
        ntsc);
}

TEST(Otio, KeepsTheClipsOfTheVideoTrack) {
  const auto time = [](double value, double rate) {
    std::ostringstream text;
    text << R"({"OTIO_SCHEMA":"RationalTime.1","value":)" << value << R"(,"rate":)" << rate << "}";
    return text.str();
  };
  const auto range = [&time](double start, double duration, double rate) {
    return R"({"OTIO_SCHEMA":"TimeRange.1","start_time":)" + time(start, rate) + R"(,"duration":)" +
           time(duration, rate) + "}";
  };
  const auto clip = [](const std::string& url, const std::string& source,
                       const std::string& available, const std::string& more = "") {
    return R"({"OTIO_SCHEMA":"Clip.1","name":"c","source_range":)" + source +
           R"(,"media_reference":{"OTIO_SCHEMA":"ExternalReference.1","target_url":")" + url +
           R"(","available_range":)" + available + "}" + more + "}";
  };
  const auto timeline = [](const std::string& children, const std::string& others = "",
                           const std::string& trackMembers = "",
                           const std::string& stackMembers = "") {
    return R"({"OTIO_SCHEMA":"Timeline.1","tracks":{"OTIO_SCHEMA":"Stack.1",)" + stackMembers +
           R"("children":[{"OTIO_SCHEMA":"Track.1","name":"V1","kind":"Video",)" + trackMembers +
           R"("children":[)" + children + "]}" + others + "]}}";
  };
  const auto warped = [&](const std::string& scalar) {
    return clip("take1.mp4", range(0, 24, 24), "null",
                R"(,"effects":[{"OTIO_SCHEMA":"LinearTimeWarp.1")" + scalar + "}]");
  };
  const std::string trim = R"("source_range":)" + range(0, 12, 24) + ",";
  const std::string freeze = R"("effects":[{"OTIO_SCHEMA":"FreezeFrame.1"}],)";
  const std::string gap = R"({"OTIO_SCHEMA":"Gap.1","source_range":)" + range(0, 12, 24) + "}";
  const std::string one = clip("take1.mp4", range(48, 24, 24), "null");
  check({
      {"clips and a gap",
       timeline(one + "," + gap + "," + clip("take1.mp4", range(0, 6, 24), "null")),
       "2-3@0 0-1/4@3/2"},
      {"media timecode",
       timeline(clip("file:///a%20b/Take1.mp4", range(86424, 24, 24), range(86400, 240, 24))),
       "1-2@0"},
      {"whole media", timeline(clip("take1.mp4", "null", range(5, 10, 5))), "0-2@0"},
      {"a rate of NTSC", timeline(clip("take1.mp4", range(30, 30, 29.97), "null")),
       "1001/1000-1001/500@0"},
      {"a rate of sound", timeline(clip("take1.mp4", range(44100, 22050, 44100), "null")),
       "1-3/2@0"},
      {"a whole rate near one of NTSC", timeline(clip("take1.mp4", range(999, 999, 999), "null")),
       "1-2@0"},
      {"transition", timeline(one + R"(,{"OTIO_SCHEMA":"Transition.1"},)" + one), "2-3@0 2-3@1"},
      {"other clips", timeline(one + "," + clip("b.mp4", range(0, 24, 24), "null") + "," + one),
       "2-3@0 2-3@2"},
      {"disabled",
       timeline(clip("take1.mp4", range(0, 24, 24), "null", R"(,"enabled":false)") + "," + one),
       "2-3@1"},
      {"sound",
       timeline(one, R"(,{"OTIO_SCHEMA":"Track.1","kind":"Audio","children":[)" + one + "]}"),
       "2-3@0"},
      {"two tracks",
       timeline(one, R"(,{"OTIO_SCHEMA":"Track.1","kind":"Video","children":[)" + one + "]}"),
       "2 tracks have clips; one can be followed, so disable the others"},
      {"a disabled track",
       timeline(one, R"(,{"OTIO_SCHEMA":"Track.1","kind":"Video","enabled":false,"children":[)" +
                         one + "]}"),
       "2-3@0"},
      {"no track", timeline(one, "", R"("enabled":false,)"), "no track that is enabled has clips"},
      {"trimmed track", timeline(one, "", trim),
       "Track V1 has a source_range, which is not read; trim its clips"},
      {"trimmed stack", timeline(one, "", "", trim),
       "Stack has a source_range, which is not read; trim its clips"},
      {"slow track", timeline(one, "", freeze), "Track V1: changes of speed are not read"},
      {"slow stack", timeline(one, "", "", freeze), "Stack: changes of speed are not read"},
      {"speed", timeline(warped("")), "Clip c: changes of speed are not read"},
      {"double speed", timeline(warped(R"(,"time_scalar":2.0)")),
       "Clip c: changes of speed are not read"},
      {"normal speed", timeline(warped(R"(,"time_scalar":1.0)")), "0-1@0"},
      {"no range", timeline(clip("take1.mp4", "null", "null")),
       "Clip c has neither source_range nor available_range"},
      {"negative", timeline(clip("take1.mp4", range(0, -1, 24), "null")),
       "Clip c: the source_range has a negative duration"},
      {"half a range", timeline(clip("take1.mp4", R"({"start_time":0})", "null")),
       "Clip c: the source_range: the start_time has no rate"},
      {"a text", timeline(clip("take1.mp4", R"({"start_time":{"rate":"24"}})", "null")),
       "Clip c: the source_range: the start_time has a rate that is no number"},
      {"nested", timeline(R"({"OTIO_SCHEMA":"Stack.1","children":[]})"),
       "Track V1 has a Stack, which cannot be followed"},
      {"rate", timeline(clip("take1.mp4", range(0, 24, 0), "null")),
       "Clip c: the source_range: the start_time has the rate 0.000000"},
      {"far", timeline(clip("take1.mp4", range(1e300, 24, 24), "null")),
       "Clip c: the source_range: the start_time is out of range"},
      {"clip", R"({"OTIO_SCHEMA":"Clip.1"})",
       "the outermost object is a Clip; a Timeline of OpenTimelineIO is read"},
      {"no schema", "{}",
       "the outermost object has no OTIO_SCHEMA; a Timeline of OpenTimelineIO is read"},
      {"no tracks", R"({"OTIO_SCHEMA":"Timeline.1","name":"cut"})", "Timeline cut has no tracks"},
      {"no children", R"({"OTIO_SCHEMA":"Timeline.1","tracks":{"OTIO_SCHEMA":"Stack.1"}})",
       "Stack has no children"},
      {"no list", R"({"OTIO_SCHEMA":"Timeline.1","tracks":{"OTIO_SCHEMA":"Stack.1","children":1}})",
       "Stack has children that are no list"},
      {"a child of no kind", timeline("7"), "Track V1 has a child without an OTIO_SCHEMA"},
      {"half a text", "{\n \"OTIO_SCHEMA\":\n", "line 3: the text is no JSON from here on"},
      {"huge", R"({"a":1e999})", "a number in the JSON text is out of range"},
  });
  EXPECT_EQ(read(timeline(one), "x/take1.voxa.streams/"), "2-3@0") << "a sidecar";
}

TEST(EditLists, AreToldByTheirText) {
  const std::string refusal =
      "is no list of cuts; a concat script of FFmpeg begins with ffconcat or file, CMX 3600 with "
      "TITLE:, OpenTimelineIO with {";
  check({{"empty", "", refusal},
         {"blank", " \r\n\n", refusal},
         {"comments", "# file a\n", refusal},
         {"another format", "<?xml version=\"1.0\"?>\n<xmeml/>", refusal}});
}

TEST(EditLists, MatchSourcesWithDotsInTheirNames) {
  const auto list = [](const std::string& first, const std::string& second) {
    return "file " + first + "\noutpoint 1\nfile " + second + "\noutpoint 2\n";
  };
  EXPECT_EQ(read(list("take.1", "take.2"), "take.1.mp4"), "0-1@0");
  EXPECT_EQ(read(list("take.1.mov", "Take.2"), "x/take.2.mp4"), "0-2@1");
  EXPECT_EQ(read(list("take.v1", "take.v2.mxf"), "take.v1.mp4"), "0-1@0");
  EXPECT_EQ(read(list("take.1", "take.2"), "other.mp4"),
            "several recordings are listed, but none is called other: take.1 take.2");
}

}  // namespace
