// The files that commands write, and those that they leave alone.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace {

using nlohmann::json;
using recording::Bytes;
using recording::streamId;
using testing_support::bytesOfFile;
using testing_support::Result;
using testing_support::TempFolder;
using testing_support::voxa;

Bytes typed(const std::string& text) {
  Bytes records;
  double seconds = 0;
  for (const char character : text) {
    records += recording::keystrokeRecord(seconds += 0.2, character, 0);
  }
  return records;
}

class Commands : public testing::Test {
 protected:
  // Two positions, keys of which one is removed again, and texts that differ in their characters.
  Commands()
      : m_file(m_folder.file(
            "a.voxa",
            recording::atomBlock(
                {{streamId(0xF0),
                  recording::pointRecord(0, 1, 2) + recording::pointRecord(1, 1, 2) +
                      recording::pointRecord(8, 30, 40) + recording::pointRecord(9, 30, 40)},
                 {streamId(0xF3), typed("the quick brown fox jumps over a dgo\b\bog and runs")},
                 {streamId(0xF9), recording::stringRecord(0, "one") +
                                      recording::stringRecord(1, "two") +
                                      recording::stringRecord(2, "two")}}))) {}

  Result run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin() + 1, m_file);
    arguments.insert(arguments.end(), {"--as=F0=points", "--as=F3=keystrokes", "--as=F9=strings"});
    return voxa(arguments);
  }

  const TempFolder m_folder;
  const std::string m_file;
};

TEST_F(Commands, ReplaceNoFileWhenNoRecordingCanBeRead) {
  const std::string out = m_folder.file("out", "good");
  const std::string folder = m_folder.name("wide");
  const std::pair<std::vector<std::string>, int> failures[] = {
      {{m_folder.name("absent.voxa")}, 5},
      {{m_file, "--streams=AA"}, 4},
      {{m_file, "--as=bogus"}, 2},
      {{m_file, m_file, "--as=F3=bogus"}, 2}};
  for (const auto& [arguments, status] : failures) {
    for (const char* const format : {"csv", "json", "xml", "otio"}) {
      std::vector<std::string> command = {"export", "--format", format};
      command.insert(command.end(), arguments.begin(), arguments.end());
      EXPECT_EQ(voxa(command).out, "") << format;
      const bool isWide = std::string(format) == "json";
      command.insert(command.end(), {"--force", "-o", out});
      EXPECT_EQ(voxa(command).status, status) << format;
      EXPECT_EQ(bytesOfFile(out), "good") << format;
      if (!isWide) continue;
      command.back() = folder;
      command.emplace_back("--layout=wide");
      EXPECT_EQ(voxa(command).status, status);
      EXPECT_FALSE(std::filesystem::exists(std::filesystem::u8path(folder)));
    }
  }
  const Result refused = voxa(
      {"export", m_file, m_file, "--streams=F9", "--as=F9=strings", "--layout=wide", "-o", out});
  EXPECT_EQ(refused.error, "voxa: " + out + ": is not a folder; name a folder\n");
}

TEST_F(Commands, FindAnExistingFileBeforeTheyReadRecords) {
  const std::string cut = m_folder.file("cut.dat", bytesOfFile(m_file).substr(16, 50));
  for (const auto& [command, leaf] : {std::pair("plot", "p.svg"),
                                      {"heatmap", "p.png"},
                                      {"report", "p.html"},
                                      {"records", "p.csv"}}) {
    const std::string out = m_folder.file(leaf, "good");
    std::vector<std::string> arguments = {command, cut, "--as=points", "-o", out};
    if (command != std::string("report")) arguments.insert(arguments.begin() + 2, "F0");
    const Result result = voxa(arguments);
    EXPECT_EQ(result.error, "voxa: " + out + ": file exists; use --force to replace it\n");
    EXPECT_EQ(bytesOfFile(out), "good");
  }
}

TEST_F(Commands, TakeExtensionsInAnyLetterCase) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"captions", "F3", "-o", m_folder.name("c.SRT")}, "1\n00:00:"},
      {{"captions", "F3", "-o", m_folder.name("c.Ass")}, "[Script "},
      {{"heatmap", "F0", "-o", m_folder.name("h.PNG")}, "\x89PNG"},
      {{"salvage", "-o", m_folder.name("s.VOXA")}, "\0\0"}};
  for (const auto& [arguments, begin] : cases) {
    const bool isSalvage = arguments.front() == "salvage";
    const Result result =
        isSalvage ? voxa({"salvage", m_file, arguments[1], arguments[2]}) : run(arguments);
    EXPECT_LE(result.status, isSalvage ? 3 : 0) << result.error;
    const std::string bytes = bytesOfFile(arguments.back());
    EXPECT_EQ(bytes.rfind(begin, 0), 0U) << arguments.back() << bytes.substr(0, 20);
  }
}

TEST_F(Commands, DecideBeforeTheyMask) {
  const auto leftOut = [](const Result& result) {
    return result.error.substr(result.error.find("a.voxa: "));
  };
  const std::vector<std::string> frames = {"frames", "F9", "--rate=1", "--simplify"};
  std::vector<std::string> masked = frames;
  masked.emplace_back("--redact");
  EXPECT_EQ(leftOut(run(frames)), "a.voxa: 1 of 3 frames left out\n");
  EXPECT_EQ(leftOut(run(masked)), "a.voxa: 1 of 3 frames left out\n");
  EXPECT_EQ(run(masked).out, "frame,time,seconds,F9.value\n0,0/1,0,xxx\n1,1/1,1,xxx\n");

  const std::string plain = run({"captions", "F3", "--apply-backspace"}).out;
  const std::string redacted = run({"captions", "F3", "--apply-backspace", "--redact"}).out;
  const auto timesOf = [](const std::string& text) {
    std::vector<std::string> times;
    for (std::size_t at = 0; (at = text.find(" --> ", at)) != std::string::npos; ++at) {
      times.push_back(text.substr(at - 12, 29));
    }
    return times;
  };
  EXPECT_GT(timesOf(plain).size(), 1U);
  EXPECT_EQ(timesOf(redacted), timesOf(plain));
  EXPECT_EQ(redacted.find_first_of("aeiou\u232B\u2423", 8), std::string::npos) << redacted;
}

TEST_F(Commands, DropPositionsOfAnOverlayThatChangeNothing) {
  const auto overlay = [this](const char* option) {
    return run({"overlay", "--keys=none", "--screen=100x100", "-o", "-", option});
  };
  const Result every = overlay("--quiet");
  const Result kept = overlay("--simplify");
  EXPECT_EQ(kept.out, every.out);
  EXPECT_NE(kept.error.find("F0: 2 of 4 records dropped\n"), std::string::npos) << kept.error;
  EXPECT_NE(overlay("--simplify=50").out, every.out);
}

TEST_F(Commands, SayWhenNoRecordIsInTheRange) {
  const Result mlt =
      run({"export", "--streams=F9", "--format=mlt", "--rate=10", "--property=p", "--from=100"});
  EXPECT_EQ(mlt.status, 1);
  EXPECT_EQ(mlt.out, "");
  EXPECT_NE(mlt.error.find("a.voxa: F9: no records in the range; "), std::string::npos);
  for (const char* const chapters : {"--chapters=pauses", "--chapters=strings"}) {
    const Result result = run({"export", "--format=ffmetadata", chapters, "--from=100"});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(result.out, ";FFMETADATA1\n");
    EXPECT_EQ(result.error, "voxa: " + m_file + ": no records in the range\n");
  }
}

TEST_F(Commands, NameTheRecordAtWhichTheFileEnds) {
  const Bytes whole = bytesOfFile(m_file);
  const std::size_t missing = 5;
  const std::string cut = m_folder.file("cut.voxa", whole.substr(0, whole.size() - missing));
  const std::vector<std::vector<std::string>> commands = {{"records", cut, "F9"},
                                                          {"export", cut, "--streams=F9"},
                                                          {"frames", cut, "F9", "--rate=1"},
                                                          {"plot", cut, "F9", "-o", "-"},
                                                          {"report", cut, "F9", "-o", "-"},
                                                          {"info", cut, "--streams=F9"}};
  for (std::vector<std::string> command : commands) {
    command.emplace_back("--as=F9=strings");
    if (command.front() == "records") command.back() = "--as=strings";
    const Result result = voxa(command);
    EXPECT_EQ(result.status, 3) << command.front();
    const std::string text = result.error + result.out;
    EXPECT_NE(text.find("the file ends"), std::string::npos) << command.front() << text;
  }
  const std::string offset = std::to_string(whole.size() - 15);
  EXPECT_NE(voxa({"records", cut, "F9", "--as=strings"})
                .error.find(": byte " + offset +
                            ": the file ends 10 bytes into a record of 15 bytes; the records "
                            "before are printed\n"),
            std::string::npos);
  EXPECT_NE(voxa({"info", cut}).out.find("F9: the file ends 5 bytes before the stream does\n"),
            std::string::npos);
  const std::string image = m_folder.file(
      "image.dat",
      recording::entryBytes({streamId(0xF1), recording::cursorImageRecord(0, 7, 0, 0, "BM pixels")})
          .substr(0, 24 + 32 + 4));
  EXPECT_EQ(
      voxa({"images", image, "F1", "--as", "cursor-images", "-o", m_folder.name("images")}).status,
      3);
  EXPECT_FALSE(std::filesystem::exists(m_folder.name("images") + "/7.bmp"));
}

// A window of frames ends at 4 MiB of texts.
TEST(FramesOfLongTexts, HoldTheLastTextOfEachFrameInWhateverOrderTheTimesAre) {
  const TempFolder folder;
  constexpr int kFrames = 9;
  constexpr std::size_t kLength = std::size_t{1} << 20U;
  const auto textOf = [](int n) {
    return std::to_string(n) + std::string(kLength, static_cast<char>('a' + n));
  };
  const std::vector<int> orders[] = {{0, 1, 2, 3, 4, 5, 6, 7, 8}, {8, 3, 7, 0, 5, 1, 6, 2, 4}};
  for (const std::vector<int>& order : orders) {
    Bytes texts;
    Bytes numbers;
    for (const int n : order) {
      texts += recording::stringRecord(n, "replaced") + recording::stringRecord(n, textOf(n));
      numbers += recording::intRecord(n, n);
    }
    const std::string file = folder.file(
        "a.voxa", recording::atomBlock({{streamId(0xF6), numbers}, {streamId(0xF9), texts}}));
    const Result result = voxa({"frames", file, "F6", "F9", "--as=F6=ints", "--as=F9=strings",
                                "--rate=1", "--format=json"});
    ASSERT_EQ(result.status, 0) << result.error;
    const json rows = json::parse(result.out)["frames"];
    ASSERT_EQ(rows.size(), std::size_t{kFrames});
    for (int n = 0; n < kFrames; ++n) {
      const json& row = rows[static_cast<std::size_t>(n)];
      EXPECT_EQ(row["F6"]["value"], n);
      EXPECT_TRUE(row["F9"]["value"] == textOf(n)) << n;
    }
  }
}

TEST_F(Commands, NameARecordingFromTheFolderOfTheTimeline) {
  namespace fs = std::filesystem;
  const fs::path before = fs::current_path();
  fs::current_path(fs::u8path(m_folder.name("")));
  fs::create_directories("in/deep");
  fs::create_directories("out");
  fs::copy_file("a.voxa", "in/deep/a b.voxa");
  const std::pair<const char*, const char*> cases[] = {{"here.otio", "in/deep/a%20b.voxa"},
                                                       {"out/there.otio", "../in/deep/a%20b.voxa"},
                                                       {"in/deep/beside.otio", "a%20b.voxa"},
                                                       {"-", "in/deep/a%20b.voxa"}};
  for (const auto& [out, url] : cases) {
    const Result result =
        voxa({"export", "in/deep/a b.voxa", "--as=F9=strings", "--format=otio", "-o", out});
    const json timeline = json::parse(std::string(out) == "-" ? result.out : bytesOfFile(out));
    const json clip = timeline["tracks"]["children"][0]["children"][0];
    EXPECT_EQ(clip["media_reference"]["target_url"], url) << out;
  }
  fs::current_path(before);
}

}  // namespace
