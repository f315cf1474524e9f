#include <gtest/gtest.h>

#include <algorithm>
#include <boost/uuid/string_generator.hpp>
#include <nlohmann/json.hpp>

#include "tests/support/Hex.h"
#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"
#include "tools/recording/Container.h"
#include "tools/recording/Movie.h"

namespace {

using nlohmann::json;
using recording::Bytes;
using testing_support::Result;
using testing_support::TempFolder;
using testing_support::voxa;

// Returns the bytes of the file of a case: a document, a block of entries, or hexadecimal bytes.
Bytes bytesOf(const json& file) {
  if (file.contains("document")) return testing_support::hexDocument(file["document"]);
  if (file.contains("hex")) return testing_support::bytesFromHex(file["hex"]);
  std::vector<recording::Entry> entries;
  for (const json& entry : file["entries"]) {
    const std::string id = entry["id"];
    const bool isKey = id.size() == 2;
    entries.push_back(
        {isKey ? recording::streamId(static_cast<unsigned char>(std::stoi(id, nullptr, 16)))
               : boost::uuids::string_generator()(id),
         testing_support::bytesFromHex(entry["records"]), entry.value("version", 1)});
  }
  return recording::atomBlock(entries);
}

// Replaces a word such as FILE with the name that it stands for.
std::string filledIn(std::string text, const std::string& word, const std::string& name) {
  for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at)) {
    text.replace(at, word.size(), name);
    at += name.size();
  }
  return text;
}

class Program : public testing::TestWithParam<json> {};

// tests/data/voxa.json: the arguments, the file, and the expected status and output.
TEST_P(Program, Case) {
  const json& c = GetParam();
  const TempFolder folder;
  const json& file = c["file"];
  const std::string name = folder.name(file["name"]);
  if (file.size() > 1) folder.file(file["name"], bytesOf(file));
  const auto fill = [&](const std::string& text) {
    return filledIn(filledIn(text, "FILE", name), "FOLDER", folder.name(""));
  };

  std::vector<std::string> arguments;
  for (const json& argument : c["arguments"]) arguments.push_back(fill(argument));
  const Result result = voxa(arguments);
  EXPECT_EQ(result.status, c["status"]);
  EXPECT_EQ(result.out, c.contains("out") ? fill(c["out"]) : result.out);
  EXPECT_EQ(result.error, c.contains("error") ? fill(c["error"]) : result.error);
  if (c.contains("json")) {
    EXPECT_EQ(json::parse(result.out), json::parse(fill(c["json"].dump())));
  }
  if (c.contains("error line")) {
    EXPECT_EQ(result.error.find("voxa: "), 0U) << result.error;
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Program,
    testing::ValuesIn(json::parse(testing_support::dataFile("voxa.json")).get<std::vector<json>>()),
    [](const testing::TestParamInfo<json>& c) {
      std::string name = c.param["name"];
      std::replace_if(
          name.begin(), name.end(), [](unsigned char byte) { return std::isalnum(byte) == 0; },
          '_');
      return name;
    });

TEST(Stats, PrintsTheTracksAsTheHostSeesThem) {
  const TempFolder folder;
  const std::string file = folder.file(
      "a.mp4", recording::sampleMovie(3) + recording::atomBlock({{recording::streamId(0xF0), ""},
                                                                 {recording::streamId(0xEF), ""}}));
  const std::string text = testing_support::dataFile("stats.json");
  EXPECT_EQ(voxa({"stats", file, "--format", "json"}).out, filledIn(text, "FILE", file));
  EXPECT_EQ(voxa({"stats", file}).out,
            filledIn(testing_support::dataFile("stats.txt"), "FILE", file));
}

TEST(Help, OfEveryCommandHasAnExample) {
  for (const char* const command : {"streams", "records", "load", "stats", "slots", "sample"}) {
    const Result result = voxa({command, "--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("Example: voxa "), std::string::npos) << result.out;
    EXPECT_EQ(voxa({"help", command}).out, result.out);
  }
  const Result result = voxa({"--help"});
  EXPECT_NE(result.out.find("Example: voxa "), std::string::npos) << result.out;
  for (const Result& same : {voxa({}), voxa({"help"})}) {
    EXPECT_EQ(same.out, result.out);
    EXPECT_EQ(same.status, 0);
  }
  EXPECT_EQ(voxa({"--version"}).out.find("voxa "), 0U);
}

TEST(Load, TakesTheRateOfTheScreenTrackForATimeInSeconds) {
  const TempFolder folder;
  const std::string file = folder.file("a.voxa", testing_support::dataFile("sample.voxa"));
  const std::vector<std::string> load = {"load",   file,   "F0",   "--as",
                                         "points", "--at", "1.5s", "--format=csv"};
  std::vector<std::string> withRate = load;
  withRate.push_back("--rate=600");
  const Result result = voxa(load);
  EXPECT_EQ(result.out, voxa(withRate).out);
  EXPECT_EQ(result.out.find("frame,x,y\n900,"), 0U) << result.out;
  EXPECT_EQ(result.error, "voxa: " + file + ": --rate is that of the screen track: 600/1\n");
}

}  // namespace
