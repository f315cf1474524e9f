// voxa export, as a user runs it, for each record type and format.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/Streams.h"
#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"
#include "tools/series/RecordTypes.h"

namespace {

using nlohmann::json;
using recording::Bytes;
using recording::streamId;
using testing_support::bytesOfFile;
using testing_support::Filler;
using testing_support::Result;
using testing_support::TempFolder;
using testing_support::voxa;

constexpr int kCount = 9;

Result exported(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "export");
  return voxa(arguments);
}

// An export that must succeed, as JSON.
json documentOf(std::vector<std::string> arguments) {
  arguments.emplace_back("--format=json");
  const Result result = exported(std::move(arguments));
  EXPECT_EQ(result.status, 0) << result.error;
  return json::parse(result.out);
}

template <class T>
class Export : public testing::Test {
 protected:
  static std::string type() { return series::infoOf(series::recordTypeOf<T>()).name; }

  // A recording of one stream of the type.
  std::string recordingOf(const char* leaf, const Bytes& records) const {
    return m_folder.file(leaf, recording::atomBlock({{streamId(0xF0), records}}));
  }

  const TempFolder m_folder;
};
TYPED_TEST_SUITE(Export, testing_support::RecordTypes, testing_support::RecordTypeNames);

TYPED_TEST(Export, HasTheRecordsThatTheRecordsCommandPrints) {
  const std::string file =
      this->recordingOf("a.voxa", testing_support::filledRecords<TypeParam>(kCount));
  const std::string as = "--as=" + this->type();
  const json records =
      json::parse(voxa({"records", file, "F0", as, "--format=json"}).out)["records"];
  const json document = documentOf({file, as});
  ASSERT_EQ(document["records"].size(), std::size_t{kCount});
  EXPECT_TRUE(document["errors"].empty());
  for (std::size_t i = 0; i < records.size(); ++i) {
    json expected = records[i];
    if (expected.contains("rect")) {
      std::size_t coordinate = 0;
      for (const char* const name : {"a", "b", "c", "d"}) {
        expected[name] = expected["rect"][coordinate++];
      }
      expected.erase("rect");
    }
    expected.update({{"file", file}, {"stream", "F0"}, {"type", this->type()}});
    EXPECT_EQ(document["records"][i], expected);
  }

  const std::string folder = this->m_folder.name("wide");
  ASSERT_EQ(exported({file, as, "--layout=wide", "-o", folder}).status, 0);
  EXPECT_EQ(bytesOfFile(folder + "/a.voxa-F0.csv"),
            voxa({"records", file, "F0", as, "--format=csv"}).out);
}

TYPED_TEST(Export, KeepsOneOfTwoEqualRecords) {
  Bytes records;
  for (int n = 1; n <= kCount; ++n) {
    records += Filler<TypeParam>::bytes(n, n) + Filler<TypeParam>::bytes(n + 0.5, n);
  }
  const std::string file = this->recordingOf("a.voxa", records);
  const std::string as = "--as=" + this->type();
  const json every = documentOf({file, as})["records"];
  const json kept = documentOf({"--simplify", file, as})["records"];
  if (std::is_same_v<TypeParam, ZRKMetaData::KeyStroke>) {
    EXPECT_EQ(kept, every);
    return;
  }
  ASSERT_EQ(kept.size(), every.size() / 2);
  for (std::size_t i = 0; i < kept.size(); ++i) EXPECT_EQ(kept[i], every[2 * i]);
}

// Two recordings: numbers and texts in both, which are damaged in the second, and keystrokes in the
// first.
class Recordings : public testing::Test {
 protected:
  Recordings() {
    Bytes numbers;
    for (const auto& [seconds, value] : {std::pair(3.0, 7), {1.0, 8}, {2.0, 9}}) {
      numbers += recording::intRecord(seconds, value);
    }
    m_first = m_folder.file(
        "a b.voxa",
        recording::atomBlock({{streamId(0xF6), numbers},
                              {streamId(0xF9), recording::stringRecord(1, "=1;\"") +
                                                   recording::stringRecord(4, "end")},
                              {streamId(0xF3), recording::keystrokeRecord(2, 'k', 1)}}));
    Bytes cut = recording::stringRecord(1, "kept");
    const std::size_t position = cut.size();
    cut += recording::stringRecord(2, "lost");
    cut[position] = 3;  // bytes, where the time takes 8
    m_second =
        m_folder.file("b.voxa", recording::atomBlock({{streamId(0xF6), recording::intRecord(1, 2)},
                                                      {streamId(0xF9), cut}}));
  }

  std::vector<std::string> both(const std::vector<std::string>& options) const {
    std::vector<std::string> arguments = {m_first, m_second, "--as=F6=ints", "--as=F9=strings",
                                          "--as=F3=keystrokes"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return arguments;
  }

  // The same for the first recording alone.
  std::vector<std::string> first(const std::vector<std::string>& options) const {
    std::vector<std::string> arguments = both(options);
    arguments.erase(arguments.begin() + 1);
    return arguments;
  }

  const TempFolder m_folder;
  std::string m_first;
  std::string m_second;
};

TEST_F(Recordings, AreOneTableWhoseDamageIsReported) {
  const Result result = exported(both({"--streams=F6,F9,F3", "--format=json"}));
  EXPECT_EQ(result.status, 4);  // the second one has no keystrokes, the worse of its two failures
  const json document = json::parse(result.out);
  EXPECT_EQ(document["records"].size(), 8U);
  ASSERT_EQ(document["errors"].size(), 1U);
  EXPECT_EQ(document["errors"][0]["file"], m_second);
  EXPECT_EQ(document["errors"][0]["stream"], "F9");
  EXPECT_NE(result.error.find(m_second + ": no stream F3; "), std::string::npos) << result.error;
  EXPECT_NE(result.error.find(": byte 100: meta data entry announces a string of 3 bytes"),
            std::string::npos)
      << result.error;
  EXPECT_EQ(exported(both({"--streams=F6"})).status, 0);
  EXPECT_EQ(exported(both({"--streams=F9"})).status, 3);
  EXPECT_EQ(exported(both({"--streams=F6", m_folder.name("absent.voxa")})).status, 5);
}

TEST_F(Recordings, AreWrittenForEditors) {
  EXPECT_EQ(exported(first({"--streams=F6", "--format=mlt", "--rate=10", "--property=p"})).out,
            "<property name=\"p\">10|=8;20|=9;30|=7</property>\n");
  EXPECT_EQ(exported(first({"--format=ffmetadata"})).out,
            ";FFMETADATA1\n\n[CHAPTER]\nTIMEBASE=1/1000000000\nSTART=1000000000\nEND=4000000000\n"
            "title=\\=1\\;\"\n\n[CHAPTER]\nTIMEBASE=1/1000000000\nSTART=4000000000\n"
            "END=4000000000\ntitle=end\n");
  EXPECT_EQ(exported(first({"--streams=F9", "--spreadsheet-safe", "--layout=wide", "-o",
                            m_folder.name("safe")}))
                .status,
            0);
  EXPECT_EQ(bytesOfFile(m_folder.name("safe") + "/a b.voxa-F9.csv"),
            "time,value\n1,\"'=1;\"\"\"\n4,\"end\"\n");
  const json timeline = json::parse(exported(first({"--format=otio", "--rate=25"})).out);
  const json clip = timeline["tracks"]["children"][0]["children"][0];
  EXPECT_EQ(clip["name"], "a b.voxa");
  std::vector<std::string> markers;
  for (const json& marker : clip["markers"]) {
    markers.push_back(marker["name"].get<std::string>() + " " +
                      marker["marked_range"]["start_time"]["value"].dump());
  }
  EXPECT_EQ(markers, (std::vector<std::string>{"k 50.0", "=1;\" 25.0", "end 100.0"}));
  const std::string url = clip["media_reference"]["target_url"];
  EXPECT_EQ(url.substr(0, 8), "file:///");
  EXPECT_EQ(url.substr(url.size() - 11), "/a%20b.voxa");
}

TEST_F(Recordings, AreNotWrittenWithOptionsOfOtherFormats) {
  const std::vector<std::string> wrong[] = {
      {"--format=mlt"},
      {"--format=mlt", "--rate=10", "--property=p"},
      {"--format=mlt", "--rate=10", "--property=p", "--streams=F6", "--field=x"},
      {"--property=p"},
      {"--field=x"},
      {"--gap=3", "--format=ffmetadata"},
      {"--gap=3", "--chapters=pauses"},
      {"--format=json", "--spreadsheet-safe"},
      {"--format=otio", "--layout=wide", "-o", m_folder.name("wide")},
      {"--layout=wide"},
      {"--simplify=-1"},
      {"--redact=some"},
      {"--from=2", "--to=1"}};
  for (const auto& options : wrong) {
    const Result result = exported(first(options));
    EXPECT_EQ(result.status, 2) << options.front() << result.error;
    EXPECT_EQ(result.out, "") << options.front();
  }
  EXPECT_EQ(exported(both({"--format=ffmetadata"})).status, 2);
  EXPECT_FALSE(std::filesystem::exists(m_folder.name("wide")));
}

}  // namespace
