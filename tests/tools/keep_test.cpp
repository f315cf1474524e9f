// Metadata that an edit lost is found missing, kept beside the recording, and put back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"
#include "tools/recording/Sample.h"

namespace {

using nlohmann::json;
using recording::Bytes;
using testing_support::bytesOfFile;
using testing_support::Result;
using testing_support::TempFolder;
using testing_support::voxa;

Bytes mediaFor(const std::string& leaf) {
  const bool isRiff =
      leaf.find(".avi") != std::string::npos || leaf.find(".wav") != std::string::npos;
  return isRiff ? recording::chunk("RIFF", "media") : recording::atom("ftyp", "isom");
}

class Kept : public testing::Test {
 protected:
  Kept() { EXPECT_EQ(voxa({"sample", original, "--seconds", "4"}).status, 0); }

  Result graft(const std::string& edited, const std::string& out,
               const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"graft", edited, "--from", original, "-o", out};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return voxa(arguments);
  }

  const TempFolder folder;
  const std::string original = folder.name("take1.voxa");
};

TEST_F(Kept, StreamsAreCheckedLostAndGraftedInEveryContainer) {
  for (const std::string leaf : {"a.voxa", "a.mp4", "a.mov", "a.avi", "a.wav"}) {
    const std::string edited = folder.file("edited-" + leaf, mediaFor(leaf));
    const Result lost = voxa({"check", original, edited, "--format", "json"});
    EXPECT_EQ(lost.status, 8);
    const json losses = json::parse(lost.out);
    for (const json& stream : losses["streams"]) EXPECT_EQ(stream["state"], "lost");

    const std::string out = folder.name(leaf);
    const Result grafted = graft(edited, out);
    EXPECT_EQ(grafted.status, 0) << grafted.error;
    EXPECT_EQ(bytesOfFile(out).substr(0, mediaFor(leaf).size()), mediaFor(leaf));
    const Result kept = voxa({"check", original, out, "--format", "json"});
    EXPECT_EQ(kept.status, 0) << kept.out;
    const json report = json::parse(kept.out);
    EXPECT_TRUE(report["kept"]);
    EXPECT_EQ(report["streams"].size(), recording::sampleTypes().size());
    for (const json& stream : report["streams"]) EXPECT_EQ(stream["original"], stream["edited"]);
  }
}

TEST_F(Kept, SidecarHasAFileForEachStreamThatGraftTakes) {
  ASSERT_EQ(voxa({"sidecar", original}).status, 0);
  const std::string sidecar = original + ".streams";
  std::size_t count = 0;
  for (const auto& file : std::filesystem::directory_iterator(std::filesystem::u8path(sidecar))) {
    const std::string name = file.path().u8string();
    const std::string id = file.path().stem().u8string();
    const Result whole = voxa({"records", original, id, "--as", "points", "--format", "json"});
    const Result raw = voxa({"records", name, id, "--as", "points", "--format", "json"});
    EXPECT_EQ(json::parse(raw.out)["records"], json::parse(whole.out)["records"]) << id;
    ++count;
  }
  EXPECT_EQ(count, recording::sampleTypes().size());
  const std::string edited = folder.file("e.mp4", mediaFor("e.mp4"));
  const std::string out = folder.name("out.mp4");
  ASSERT_EQ(voxa({"graft", edited, "--from", sidecar, "-o", out}).status, 0);
  EXPECT_EQ(voxa({"check", original, out}).status, 0);
  EXPECT_EQ(voxa({"check", sidecar, out}).status, 0);

  EXPECT_EQ(voxa({"sidecar", original}).status, 1) << "the folder is not empty";
  EXPECT_EQ(voxa({"sidecar", original, "--force"}).error, "");
}

TEST_F(Kept, OtherFilesOfASidecarAreNamedAndLeftOut) {
  ASSERT_EQ(voxa({"sidecar", original}).status, 0);
  const std::string sidecar = original + ".streams";
  const Bytes raw = recording::entryBytes({recording::streamId(0x01), recording::intRecord(0, 1)});
  folder.file("take1.voxa.streams/y.dat", "junk");
  folder.file("take1.voxa.streams/z.dat", raw);
  folder.file("take1.voxa.streams/notes.txt", "no stream");
  const std::string edited = folder.file("e.mp4", mediaFor("e.mp4"));
  const std::string out = folder.name("out.mp4");
  const Result grafted = voxa({"graft", edited, "--from", sidecar, "-o", out});
  EXPECT_EQ(grafted.status, 0);
  const std::string end = ".dat, after the stream in its header; left out\n";
  EXPECT_EQ(grafted.error, "voxa: " + sidecar +
                               "/y.dat: is not named 6a756e6b-0000-0000-0000-000000000000" + end +
                               "voxa: " + sidecar +
                               "/z.dat: is not named 2b7b6a01-7a1f-11e2-83d0-0017f200be7f" + end);
  EXPECT_EQ(voxa({"check", original, out}).status, 0);
  EXPECT_EQ(voxa({"sidecar", original, "--force"}).error,
            "voxa: " + sidecar +
                ": has other .dat files, which stay; remove those that are not of this recording: "
                "y.dat z.dat\n");
}

TEST_F(Kept, ChangedStreamsAreNamed) {
  const std::string copy = folder.name("copy.voxa");
  Bytes bytes = bytesOfFile(original);
  bytes.back() = static_cast<char>(bytes.back() ^ 1);
  const Result result = voxa({"check", original, folder.file("copy.voxa", bytes)});
  EXPECT_EQ(result.status, 8);
  EXPECT_NE(result.out.find("changed  "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("kept  "), std::string::npos) << result.out;
  EXPECT_EQ(voxa({"check", folder.file("media.mp4", mediaFor("a.mp4")), copy}).status, 4);
  EXPECT_EQ(voxa({"check", original, folder.name("none.mp4")}).status, 5);
}

TEST_F(Kept, CutsMoveTheRecordsThatExportSelects) {
  const std::string edited = folder.file("e.mov", mediaFor("e.mov"));
  const std::string out = folder.name("out.mov");
  const auto recordsOf = [](const std::string& file, const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"export", file, "--format", "json"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return json::parse(voxa(arguments).out)["records"];
  };
  const std::vector<std::string> types = {
      "--as=F1=cursor-images", "--as=F3=keystrokes", "--as=F5=rects",   "--as=F9=strings",
      "--as=F6=ints",          "--as=F0=points",     "--as=F2=doubles", "--as=F8=int64s"};
  std::vector<std::string> more = {"--cut", "1.5-3", "--shift", "1/4"};
  more.insert(more.end(), types.begin(), types.end());
  ASSERT_EQ(graft(edited, out, more).status, 0);
  std::vector<std::string> range = {"--from", "1.5", "--to", "3"};
  range.insert(range.end(), types.begin(), types.end());
  const json expected = recordsOf(original, range);
  int carriedCount = 0;
  std::size_t next = 0;
  for (json record : recordsOf(out, types)) {
    // A moved record is the one of the range but for its time.
    record.erase("file");
    const double time = record["time"];
    if (next < expected.size()) {
      json moved = expected[next];
      moved.erase("file");
      const bool isThere = std::abs(time - (moved["time"].get<double>() - 1.25)) < 1e-15;
      moved["time"] = time;
      if (isThere && moved == record) {
        ++next;
        continue;
      }
    }
    ++carriedCount;  // the value that holds where the part begins
    EXPECT_EQ(time, 0.25) << record;
    EXPECT_NE(record["stream"], "F3") << "keys are not carried";
  }
  EXPECT_EQ(next, expected.size()) << "every record of the range is there";
  EXPECT_EQ(carriedCount, 4) << "of images, rectangles, numbers and texts between their records";
}

TEST_F(Kept, GraftRefusesWhatNothingCanFollow) {
  const Bytes head = recording::atom("ftyp", "isom");
  const auto refusal = [&](const std::string& leaf, const Bytes& media) {
    const std::string edited = folder.file(leaf, media);
    const std::string out = folder.name("out-" + leaf);
    const Result result = graft(edited, out);
    EXPECT_EQ(result.status, 1) << leaf;
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::u8path(out))) << leaf;
    return result.error.substr(std::min(result.error.size(), 8 + edited.size()));
  };
  EXPECT_EQ(refusal("a.mp4", head + recording::bigEndian(0U) + "mdatmedia"),
            "'mdat' at byte 12 has the size 0: nothing can follow it\n");
  EXPECT_EQ(refusal("b.mp4", head + recording::atom("ZRKM", recording::bigEndian(99U) + "DATA")),
            "'DATA' at byte 20 announces more bytes than the block holds\n");
  EXPECT_EQ(refusal("c.wav", recording::chunk("RIFF", "x") + recording::chunk("ZRKM", "DATA")),
            "the 4 bytes at byte 18 are no header\n");
  EXPECT_EQ(refusal("d.mp4", "no media at all"), "is not an MP4 or MOV file\n");
  EXPECT_EQ(refusal("e.mov", Bytes(64, '\0')), "is not an MP4 or MOV file\n");
  EXPECT_EQ(refusal("f.avi", "short"), "is not a RIFF file\n");
  EXPECT_EQ(refusal("g.mp4", recording::bigEndian(99U) + "ftypisom"),
            "'ftyp' at byte 0 announces more bytes than the file holds\n");
}

TEST_F(Kept, FilesOfOtherExtensionsNeedAContainer) {
  const std::string source = folder.file("take1.rec", bytesOfFile(original));
  const std::string edited = folder.file("edited.bin", mediaFor("a.mp4"));
  const std::string out = folder.name("out.bin");
  std::vector<std::string> grafting = {"graft", edited, "--from", source, "-o", out};
  EXPECT_EQ(voxa(grafting).status, 2);
  grafting.insert(grafting.end(), {"--container", "atoms"});
  EXPECT_EQ(voxa(grafting).error, "");
  const Result refused = voxa({"check", original, out});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.error.find("; use --container\n"), std::string::npos) << refused.error;
  EXPECT_EQ(voxa({"check", source, out, "--container", "atoms"}).status, 0);
  EXPECT_EQ(voxa({"check", original, out, "--container", "riff"}).status, 8)
      << "the extension decides where it names a container";
}

TEST_F(Kept, GraftNamesTheStreamsThatTheEditHad) {
  const Bytes block =
      recording::atomBlock({{recording::streamId(0xF0), recording::pointRecord(0, 1, 2)},
                            {recording::streamId(0x01), recording::intRecord(0, 1)}});
  const std::string edited = folder.file("e.mp4", mediaFor("e.mp4") + block);
  const std::string out = folder.name("out.mp4");
  EXPECT_EQ(graft(edited, out).error,
            "voxa: " + edited +
                ": has streams of its own, which stay: 2b7b6a01-7a1f-11e2-83d0-0017f200be7f\n");
  EXPECT_EQ(voxa({"check", original, out}).status, 0) << "ours are the last, which count";
  EXPECT_EQ(voxa({"check", edited, out}).status, 8);
}

TEST_F(Kept, GraftNeedsATypeToMoveRecords) {
  const std::string edited = folder.file("e.mp4", mediaFor("e.mp4"));
  const std::string out = folder.name("out.mp4");
  const std::string source =
      folder.file("o.voxa", recording::atomBlock({{recording::streamId(0xF0), Bytes(16, '\0')}}));
  const auto status = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"graft", edited, "--from", source, "-o", out, "--force"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return voxa(arguments).status;
  };
  EXPECT_EQ(status({}), 0);
  EXPECT_EQ(status({"--cut", "0-1"}), 2);
  EXPECT_EQ(status({"--cut", "0-1", "--as", "points"}), 0);
  EXPECT_EQ(status({"--shift=-1", "--as", "F0=points"}), 0);
  for (const std::vector<std::string>& wrong :
       std::vector<std::vector<std::string>>{{"--cut", "1"},
                                             {"--cut", "2-1"},
                                             {"--cut", "1-", "--cut", "2-3"},
                                             {"--cut", "5f-6f"},
                                             {"--cut", "0-1", "--edl", edited},
                                             {"--shift", "x"},
                                             {"--edl", edited}}) {
    EXPECT_EQ(status(wrong), 2) << wrong[1];
  }
  EXPECT_EQ(status({"--edl", folder.name("none.edl")}), 5);
  EXPECT_EQ(graft(edited, folder.name("out.wav")).status, 2);
  EXPECT_EQ(graft(edited, folder.name("out.dat")).status, 2);
  EXPECT_EQ(graft(edited, original, {"--force"}).status, 1) << "would replace the source";
  EXPECT_EQ(graft(edited, edited, {"--force"}).status, 1);
}

TEST_F(Kept, GraftNamesTypesThatItGuessedAndThoseInDoubt) {
  const std::string edited = folder.file("e.mp4", mediaFor("e.mp4"));
  const std::string out = folder.name("out.mp4");
  const Bytes points = recording::sampleEntry("points", 10, 1).records;
  const auto source = [&](const Bytes& other) {
    return folder.file("o.voxa", recording::atomBlock({{recording::streamId(0xF0), points},
                                                       {recording::streamId(0xF2), other},
                                                       {recording::streamId(0xF6), other}}));
  };
  const std::string certain = source(points);
  const auto note = [&](const char* stream) {
    return "voxa: " + certain + ": " + stream + " read as points (guessed; override with --as)\n";
  };
  EXPECT_EQ(voxa({"graft", edited, "--from", certain, "-o", out, "--cut", "0-1"}).error,
            note("F0") + note("F2") + note("F6"));
  const std::string doubtful = source(Bytes(16, '\0'));
  const Result refused =
      voxa({"graft", edited, "--from", doubtful, "-o", out, "--cut", "0-1", "--force", "-q"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(std::count(refused.error.begin(), refused.error.end(), '\n'), 1) << refused.error;
  for (const char* const part : {"the record type of F2 is not certain; ", "; nor is that of F6; ",
                                 "; use --as F2=TYPE --as F6=TYPE\n"}) {
    EXPECT_NE(refused.error.find(part), std::string::npos) << refused.error;
  }
}

TEST_F(Kept, PartsBehindTheLastRecordAreNamed) {
  const std::string edited = folder.file("e.mp4", mediaFor("e.mp4"));
  const std::string out = folder.name("out.mp4");
  const std::string source = folder.file(
      "o.voxa", recording::atomBlock({{recording::streamId(0xF0), recording::pointRecord(1, 1, 2)},
                                      {recording::streamId(0xF6), recording::intRecord(2.5, 1)}}));
  const std::string list =
      folder.file("cut.edl", "1 o V C 01:00:01:00 01:00:02:00 00:00:00:00 00:00:01:00\n");
  const auto said = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"graft", edited, "--from", source, "-o", out, "--force"};
    arguments.insert(arguments.end(), {"--as", "F0=points", "--as", "F6=ints"});
    arguments.insert(arguments.end(), more.begin(), more.end());
    return voxa(arguments).error;
  };
  const std::string head = "voxa: " + source + ": the part from ";
  EXPECT_EQ(said({"--cut", "2.5-3"}), "");
  EXPECT_EQ(said({"--cut", "0-1", "--cut", "2.75-3", "--cut", "4-5"}),
            head + "2.75 s begins after the last record at 2.5 s\n");
  EXPECT_EQ(said({"--edl", list, "--rate", "25"}),
            head +
                "3601 s begins after the last record at 2.5 s; does the list count from "
                "01:00:00:00?\n");
}

TEST_F(Kept, DamagedStreamsAreCopiedAsFarAsTheyGo) {
  Bytes bytes = bytesOfFile(original);
  bytes.resize(bytes.size() - 30);
  const std::string cut = folder.file("cut.voxa", bytes);
  const Result result = voxa({"sidecar", cut});
  EXPECT_EQ(result.status, 3);
  EXPECT_NE(result.error.find("the file ends 30 bytes before the stream"), std::string::npos);
  const std::string edited = folder.file("e.mp4", mediaFor("e.mp4"));
  EXPECT_EQ(voxa({"graft", edited, "--from", cut, "-o", folder.name("out.mp4")}).status, 3);
  EXPECT_EQ(voxa({"check", cut + ".streams", folder.name("out.mp4")}).status, 0);
}

}  // namespace
