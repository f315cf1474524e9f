#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/Hex.h"
#include "tests/support/Streams.h"
#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"

namespace {

using nlohmann::json;
using recording::atomBlock;
using recording::Bytes;
using recording::Entry;
using recording::entryBytes;
using recording::streamId;
using testing_support::hexDocument;
using testing_support::Result;
using testing_support::TempFolder;
using testing_support::voxa;

enum Status { Done, Failed, WrongUse, DamagedData, NoSuchStream, CannotOpen };

class Program : public testing::Test {
 protected:
  std::string document(const char* name, const char* leaf) const {
    return folder.file(leaf, hexDocument(name));
  }
  TempFolder folder;
};

TEST_F(Program, ListsStreamsAsJson) {
  const std::string file = document("atoms.hex", "a.voxa");
  const Result run = voxa({"streams", file, "--format", "json"});
  EXPECT_EQ(run.status, Done);
  EXPECT_EQ(run.error, "");
  EXPECT_EQ(run.out, "{\"file\":" + json(file).dump() +
                         ",\"container\":\"Atoms\",\"streams\":["
                         "{\"id\":\"2b7b6af0-7a1f-11e2-83d0-0017f200be7f\",\"key\":\"F0\","
                         "\"known\":true,\"offset\":16,\"size\":32,\"version\":1},"
                         "{\"id\":\"2b7b6af9-7a1f-11e2-83d0-0017f200be7f\",\"key\":\"F9\","
                         "\"known\":true,\"offset\":64,\"size\":33,\"version\":2}]}\n");
}

TEST_F(Program, ListsStreamsOfEachContainer) {
  struct Row {
    const char* document;
    const char* leaf;
    const char* container;
    std::size_t streams;
  };
  for (const Row& row :
       {Row{"chunks.hex", "a.avi", "Riff", 2}, Row{"points.hex", "a.dat", "Raw", 1},
        Row{"wide-atoms.hex", "a.mov", "Atoms", 1}, Row{"atoms.hex", "a.bin", "None", 0}}) {
    const std::string file = document(row.document, row.leaf);
    const Result run = voxa({"streams", file, "--format", "json"});
    const json result = json::parse(run.out);
    EXPECT_EQ(result["container"], row.container);
    EXPECT_EQ(result["streams"].size(), row.streams) << row.leaf;
    EXPECT_EQ(run.error.empty(), row.container != std::string("None"));
  }
  const Result forced =
      voxa({"streams", folder.name("a.bin"), "--format", "json", "--container", "Atoms"});
  EXPECT_EQ(json::parse(forced.out)["streams"].size(), 2U);
  EXPECT_EQ(forced.error, "");
}

TEST_F(Program, ShowsTheVersionOfACutHeaderOverTheDefault) {
  const std::string file =
      folder.file("a.dat", entryBytes({streamId(0xF0), "", 0x01020304}).substr(0, 18));
  const Result run = voxa({"streams", file, "--format", "json"});
  EXPECT_EQ(json::parse(run.out)["streams"][0]["version"], static_cast<int>(0xFFFF0304));
}

// One raw document of each type, in each form.
TEST_F(Program, PrintsRecordsOfEachType) {
  struct Row {
    const char* document;
    const char* key;
    const char* type;
    const char* csv;
    const char* jsonRecords;
  };
  for (const Row& row : {
           Row{"ints.hex", "F6", "ints", "time,value\n0.5,258\n1.5,-2\n",
               R"([{"time":0.5,"value":258},{"time":1.5,"value":-2}])"},
           Row{"doubles.hex", "F2", "doubles", "time,value\n0.5,1.5\n2,-0.25\n",
               R"([{"time":0.5,"value":1.5},{"time":2.0,"value":-0.25}])"},
           Row{"int64s.hex", "F8", "int64s", "time,value\n0.5,4294967297\n1,-2\n",
               R"([{"time":0.5,"value":4294967297},{"time":1.0,"value":-2}])"},
           Row{"strings.hex", "f9", "strings", "time,value\n0.5,Hi\n1,\n",
               R"([{"time":0.5,"value":"Hi"},{"time":1.0,"value":""}])"},
           Row{"keystrokes.hex", "F3", "keystrokes",
               "time,character,eventFlags\n0.5,65,3\n1,-1,-2147483648\n",
               R"([{"time":0.5,"character":65,"eventFlags":3},
                   {"time":1.0,"character":-1,"eventFlags":-2147483648}])"},
           Row{"points.hex", "F0", "points", "time,x,y\n0.5,-5,7\n1,1920,1080\n",
               R"([{"time":0.5,"x":-5,"y":7},{"time":1.0,"x":1920,"y":1080}])"},
           Row{"rects.hex", "F5", "rects", "time,a,b,c,d\n0.5,1,2,3,4\n1,-1,256,65536,16777217\n",
               R"([{"time":0.5,"rect":[1,2,3,4]},{"time":1.0,"rect":[-1,256,65536,16777217]}])"},
           Row{"cursor-images.hex", "2b7b6af1-7a1f-11e2-83d0-0017f200be7f", "cursor-images",
               "time,imageId,dataSize,imageInfo0,imageInfo1,sha256\n"
               "0.5,4294967298,11,16,-1,"
               "fa22dfe1da9013b3c1145040acae9089e0c08bc1c1a0719614f4b73add6f6ef5\n"
               "1,4294967298,0,0,0,\n",
               R"([{"time":0.5,"imageId":4294967298,"dataSize":11,"imageInfo0":16,"imageInfo1":-1,
                    "sha256":"fa22dfe1da9013b3c1145040acae9089e0c08bc1c1a0719614f4b73add6f6ef5"},
                   {"time":1.0,"imageId":4294967298,"dataSize":0,"imageInfo0":0,"imageInfo1":0,
                    "sha256":""}])"},
       }) {
    const std::string file = document(row.document, "a.dat");
    const std::vector<std::string> command = {"records", file,     row.key,
                                              "--as",    row.type, "--format"};
    const auto in = [&](const char* format) {
      auto arguments = command;
      arguments.emplace_back(format);
      return voxa(arguments);
    };
    EXPECT_EQ(in("csv").out, row.csv);
    EXPECT_EQ(json::parse(in("json").out), json({{"records", json::parse(row.jsonRecords)}}))
        << row.type;
    EXPECT_EQ(in("table").status, Done);
  }
}

TEST_F(Program, PrintsWhatStandsBeforeDamage) {
  using namespace recording;
  const std::string file =
      folder.file("a.dat", entryBytes({streamId(0xF0), pointRecord(1, 2, 3) + pointRecord(2, 3, 4)})
                               .substr(0, 24 + 16 + 4));
  const Result asJson = voxa({"records", file, "F0", "--as", "points", "--format", "json"});
  EXPECT_EQ(asJson.status, DamagedData);
  EXPECT_EQ(json::parse(asJson.out), json::parse(R"({"records":[{"time":1.0,"x":2,"y":3}],
                            "error":"invalid meta data entry"})"));
  const std::string line = "voxa: " + file +
                           ": stream 2b7b6af0-7a1f-11e2-83d0-0017f200be7f: invalid meta data "
                           "entry\n";
  EXPECT_EQ(asJson.error, line);
  const Result asCsv = voxa({"records", file, "F0", "--as", "points", "--format", "csv"});
  EXPECT_EQ(asCsv.status, DamagedData);
  EXPECT_EQ(asCsv.out, "time,x,y\n1,2,3\n");
  const Result loaded =
      voxa({"load", file, "F0", "--as", "points", "--rate", "30", "--format", "csv"});
  EXPECT_EQ(loaded.status, DamagedData);
  EXPECT_EQ(loaded.out, "");
  EXPECT_EQ(loaded.error, line);
}

TEST_F(Program, LoadsKeyframesOfEachType) {
  using namespace recording;
  struct Row {
    const char* type;
    Bytes records;
    const char* csv;
    const char* jsonValue;
  };
  for (const Row& row : {
           Row{"ints", intRecord(1, -7), "frame,value\n25,-7\n", "-7"},
           Row{"doubles", doubleRecord(1, 0.1), "frame,value\n25,0.10000000000000001\n", "0.1"},
           Row{"opacity", doubleRecord(1, std::numeric_limits<double>::infinity()),
               "frame,value\n25,inf\n", "\"Infinity\""},
           Row{"int64s", int64Record(1, 1LL << 40), "frame,value\n25,1099511627776\n",
               "1099511627776"},
           Row{"strings", stringRecord(1, "a,\"b\"\xFF\n"),
               "frame,value\n25,\"a,\"\"b\"\"\xEF\xBF\xBD\n\"\n", R"("a,\"b\"\uFFFD\n")"},
           Row{"cursor-images", cursorReferenceRecord(1, 42),
               "frame,value\n25,2b7b6af7-7a1f-11e2-83d0-0017f200be7f/42\n",
               R"("2b7b6af7-7a1f-11e2-83d0-0017f200be7f/42")"},
           Row{"keystrokes", keystrokeRecord(1, 65, -3), "frame,character,eventFlags\n25,65,-3\n",
               R"({"character":65,"eventFlags":-3})"},
           Row{"points", pointRecord(1, -5, 7), "frame,x,y\n25,-5,7\n", R"({"x":-5.0,"y":7.0})"},
           Row{"rects", rectRecord(1, 1, 2, 3, 16777217), "frame,a,b,c,d\n25,1,2,3,16777216\n",
               "[1.0,2.0,3.0,16777216.0]"},
       }) {
    const std::string file = folder.file("a.voxa", atomBlock({Entry{streamId(0xF7), row.records}}));
    const auto in = [&](const char* format) {
      return voxa({"load", file, "F7", "--as", row.type, "--rate", "50/2", "--format", format});
    };
    EXPECT_EQ(in("csv").out, row.csv) << row.type;
    const json expected = {
        {"name", "2b7b6af7-7a1f-11e2-83d0-0017f200be7f"},
        {"type", row.type},
        {"rate", "25/1"},
        {"keyframes",
         json::array({{{"frame", 25}, {"seconds", 1.0}, {"value", json::parse(row.jsonValue)}}})}};
    EXPECT_EQ(json::parse(in("json").out), expected) << row.type;
    EXPECT_EQ(in("table").status, Done);
  }
}

TEST_F(Program, LoadsTheValueAtATime) {
  const std::string file = folder.file(
      "a.voxa",
      atomBlock({Entry{streamId(0xF6), recording::intRecord(0, 1) + recording::intRecord(1, 2)}}));
  struct Row {
    const char* at;
    const char* csv;
  };
  for (const Row& row :
       {Row{"29", "29,1"}, Row{"30", "30,2"}, Row{"0.5s", "15,1"}, Row{"0.35s", "21/2,1"},
        Row{"1s", "30,2"}, Row{"-1", "-1,1"}, Row{"1.001s", "3003/100,2"}}) {
    const Result run = voxa({"load", file, "F6", "--as", "ints", "--rate", "30",
                             std::string("--at=") + row.at, "--format", "csv"});
    EXPECT_EQ(run.out, std::string("frame,value\n") + row.csv + "\n") << row.at << run.error;
  }
}

TEST_F(Program, TakesARefusedVersionForAnEmptyStream) {
  const std::string file =
      folder.file("a.voxa", atomBlock({Entry{streamId(0xF6), recording::intRecord(0, 1), 2}}));
  const std::string message =
      "MetaDataReader<T>::parseFile - Version is larger than what we can handle\n";
  const Result records = voxa({"records", file, "F6", "--as", "ints", "--format", "json"});
  EXPECT_EQ(records.status, Done);
  EXPECT_EQ(records.out, "{\"records\":[]}\n");
  EXPECT_EQ(records.error, message);
  const Result load = voxa({"load", file, "F6", "--as", "ints", "--rate", "30", "--format", "csv"});
  EXPECT_EQ(load.status, Done);
  EXPECT_EQ(load.out, "frame,value\n");
  EXPECT_EQ(load.error, message);
}

TEST_F(Program, SaysThatAStreamIsNotThere) {
  const std::string file = document("atoms.hex", "a.voxa");
  const Result records = voxa({"records", file, "F6", "--as", "ints", "--format", "csv"});
  EXPECT_EQ(records.status, NoSuchStream);
  EXPECT_EQ(records.out, "");
  EXPECT_EQ(records.error, "voxa: " + file + ": no stream F6\n");
  const Result load = voxa({"load", file, "2b7b6af6-7a1f-11e2-83d0-0017f200be7f", "--as", "ints",
                            "--rate", "30", "--format", "csv"});
  EXPECT_EQ(load.status, NoSuchStream);
  EXPECT_EQ(load.out, "frame,value\n");
}

TEST_F(Program, TakesAKeyForTheRegisteredIdentifierOrAsksWhich) {
  auto other = streamId(0xF6);
  other.data[15] = 0;
  auto third = streamId(0xF4);
  third.data[15] = 0;
  const std::string file = folder.file(
      "a.voxa",
      atomBlock({Entry{other, recording::intRecord(0, 1), -1},
                 Entry{streamId(0xF6), recording::intRecord(0, 2)},
                 Entry{streamId(0xF4), recording::intRecord(0, 3), -1}, Entry{third, "", -1}}));
  const Result known = voxa({"records", file, "F6", "--as", "ints", "--format", "csv"});
  EXPECT_EQ(known.out, "time,value\n0,2\n");
  const Result unknown = voxa({"records", file, "F4", "--as", "ints", "--format", "csv"});
  EXPECT_EQ(unknown.status, WrongUse);
  EXPECT_NE(unknown.error.find("2b7b6af4-7a1f-11e2-83d0-0017f200be00 "
                               "2b7b6af4-7a1f-11e2-83d0-0017f200be7f"),
            std::string::npos)
      << unknown.error;
}

TEST_F(Program, SaysWhyAFileCannotBeOpened) {
  const std::string absent = folder.name("absent.voxa");
  const Result run = voxa({"streams", absent});
  EXPECT_EQ(run.status, CannotOpen);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.error.find("voxa: " + absent + ": cannot be opened: "), 0U) << run.error;
  EXPECT_EQ(voxa({"records", folder.name(""), "F0", "--as", "ints"}).status, CannotOpen);
  EXPECT_EQ(voxa({"load", absent, "F0", "--as", "ints", "--rate", "1"}).status, CannotOpen);
  EXPECT_EQ(voxa({"sample", folder.name("o.mp4"), "--onto", absent}).status, CannotOpen);
}

TEST_F(Program, ExplainsWrongUseInOneLine) {
  const std::string file = document("ints.hex", "a.dat");
  const std::vector<std::string> load = {"load", file, "F6", "--as", "ints", "--rate"};
  const auto loadWith = [&](std::initializer_list<const char*> more) {
    auto arguments = load;
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  };
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {},
           {"unknown"},
           {"streams"},
           {"streams", file, "--format", "csv"},
           {"streams", file, "--container", "None"},
           {"records", file, "F6", "--as", "numbers"},
           {"records", file, "not an identifier", "--as", "ints"},
           {"records", file, "{2b7b6af6-7a1f-11e2-83d0-0017f200be7}", "--as", "ints"},
           loadWith({"0"}),
           loadWith({"30/0"}),
           loadWith({"29.97"}),
           loadWith({"4294967296"}),
           loadWith({"-30"}),
           loadWith({"30", "--at", "1.5"}),
           loadWith({"30", "--at", "s"}),
           loadWith({"30", "--at", "9223372036854775807s"}),
           loadWith({"30", "--at", "1e3s"}),
           {"sample", folder.name("a.mkv")},
           {"sample", folder.name("b.dat"), "--onto", file},
           {"sample", folder.name("b.dat"), "--seconds", "-1"},
       }) {
    const Result run = voxa(arguments);
    EXPECT_EQ(run.status, WrongUse) << testing::PrintToString(arguments);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.error.find("voxa: "), 0U) << run.error;
    EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
  }
}

TEST_F(Program, HelpsOnEveryLevelWithAnExample) {
  for (const auto& arguments : std::vector<std::vector<std::string>>{{"--help"},
                                                                     {"streams", "--help"},
                                                                     {"records", "--help"},
                                                                     {"load", "--help"},
                                                                     {"sample", "--help"}}) {
    const Result run = voxa(arguments);
    EXPECT_EQ(run.status, Done);
    EXPECT_NE(run.out.find("Example: voxa "), std::string::npos) << run.out;
  }
  EXPECT_EQ(voxa({"--version"}).out.find("voxa "), 0U);
}

}  // namespace
