#include <gtest/gtest.h>

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cctype>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tests/support/Hex.h"
#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"
#include "tools/recording/Cursors.h"
#include "tools/recording/Sample.h"
#include "tools/recording/TopLevel.h"

namespace {

using nlohmann::json;
using recording::Bytes;
using recording::Layout;
using testing_support::bytesOfFile;
using testing_support::Result;
using testing_support::TempFolder;
using testing_support::voxa;

json streamsOf(const std::string& file) {
  return json::parse(voxa({"streams", file, "--format", "json"}).out)["streams"];
}

// Loads the cursor of a sample of ten seconds and returns the number of its keyframes.
std::size_t loadedPoints(const std::string& file) {
  const Result result =
      voxa({"load", file, "F0", "--as", "points", "--rate", "60", "--format", "json"});
  return result.status == 0 ? json::parse(result.out)["keyframes"].size() : 0;
}

TEST(Sample, WritesAStreamOfEveryTypeInEveryContainer) {
  const TempFolder folder;
  for (const char* const leaf : {"a.voxa", "a.mp4", "a.mov", "a.avi", "a.wav"}) {
    ASSERT_EQ(voxa({"sample", folder.name(leaf)}).status, 0);
    EXPECT_EQ(streamsOf(folder.name(leaf)).size(), recording::sampleTypes().size()) << leaf;
    EXPECT_EQ(loadedPoints(folder.name(leaf)), 600U) << leaf;
  }
  for (const std::string& type : recording::sampleTypes()) {
    ASSERT_EQ(voxa({"sample", folder.name("a.dat"), "--type", type, "--force"}).status, 0);
    const json streams = streamsOf(folder.name("a.dat"));
    ASSERT_EQ(streams.size(), 1U);
    const Result result =
        voxa({"records", folder.name("a.dat"), streams[0]["id"], "--as", type, "--format", "json"});
    EXPECT_GT(json::parse(result.out)["records"].size(), 1U) << type;
    EXPECT_EQ(result.status, 0) << type;
  }
}

TEST(Salvage, WritesTheStreamsOfEveryContainer) {
  const TempFolder folder;
  const std::string out = folder.name("saved.voxa");
  for (const char* const leaf : {"a.voxa", "a.mp4", "a.mov", "a.avi", "a.wav", "a.dat"}) {
    const std::string file = folder.name(leaf);
    ASSERT_EQ(voxa({"sample", file, "--seconds", "5"}).status, 0);
    const Result result = voxa({"salvage", file, "-o", out, "--force", "--format", "json"});
    EXPECT_EQ(result.status, 0) << leaf << result.error;
    const json ranges = json::parse(result.out)["ranges"];
    EXPECT_EQ(ranges.size(), streamsOf(file).size());
    for (const json& range : ranges) EXPECT_EQ(range["state"], "certain") << leaf;
    EXPECT_EQ(voxa({"diff", file, out}).status, 0) << leaf;
    EXPECT_FALSE(std::filesystem::exists(folder.name("saved.doubtful.voxa")));
  }
}

TEST(Sample, WritesTheSameBytesOnEveryPlatform) {
  const TempFolder folder;
  ASSERT_EQ(voxa({"sample", folder.name("a.voxa"), "--seconds", "2", "--seed", "7"}).status, 0);
  EXPECT_EQ(bytesOfFile(folder.name("a.voxa")), testing_support::dataFile("sample.voxa"));
  const std::string file = folder.file("b.voxa", testing_support::dataFile("sample.voxa"));
  EXPECT_EQ(
      voxa({"load", file, "F0", "--as", "points", "--rate", "30000/1001", "--format", "csv"}).out,
      testing_support::dataFile("sample-points.csv"));
}

// Reads the PNG files as the bytes that they are: an uncompressed image has its pixels at the end.
TEST(Sample, HasCursorsWhoseHotSpotIsOpaque) {
  std::set<Bytes> distinct;
  for (const recording::Cursor& cursor : recording::sampleCursors()) {
    distinct.insert(cursor.png);
    ASSERT_EQ(cursor.png.substr(0, 8), "\x89PNG\r\n\x1A\n");
    const auto number = [&cursor](std::size_t at) {
      return boost::endian::load_big_u32(
          reinterpret_cast<const unsigned char*>(cursor.png.data() + at));
    };
    constexpr std::size_t kEndBytes = 4 + 4 + 12;  // checksums of the pixels, the IEND chunk
    const std::size_t width = number(16);
    const std::size_t height = number(20);
    const std::size_t rowBytes = 1 + 4 * width;
    const std::size_t pixels = cursor.png.size() - kEndBytes - height * rowBytes;
    EXPECT_EQ(cursor.png.substr(pixels, 1), Bytes(1, '\0')) << "no filter";
    EXPECT_LT(static_cast<std::size_t>(cursor.hotX), width);
    EXPECT_LT(static_cast<std::size_t>(cursor.hotY), height);
    const std::size_t hot = static_cast<std::size_t>(cursor.hotY) * rowBytes + 1 +
                            4 * static_cast<std::size_t>(cursor.hotX);
    EXPECT_EQ(cursor.png.at(pixels + hot + 3), '\xFF');
    int opaque = 0;
    for (std::size_t at = 0; at < height * rowBytes; ++at) {
      opaque += at % rowBytes % 4 == 0 && at % rowBytes != 0 && cursor.png[pixels + at] != '\0';
    }
    EXPECT_GT(opaque, 60);
    EXPECT_LT(static_cast<std::size_t>(opaque), width * height);
  }
  EXPECT_EQ(distinct.size(), 3U);
}

TEST(Sample, PadsAnOddChunkBeforeTheBlock) {
  const TempFolder folder;
  const Bytes odd = recording::chunk("RIFF", "odd");
  for (const Bytes& media : {odd, odd.substr(0, odd.size() - 1)}) {  // with and without its pad
    const std::string file = folder.file("odd.wav", media);
    ASSERT_EQ(voxa({"sample", folder.name("out.wav"), "--onto", file, "--force"}).status, 0);
    EXPECT_EQ(loadedPoints(folder.name("out.wav")), 600U);
    EXPECT_EQ(bytesOfFile(folder.name("out.wav")).substr(0, odd.size()), odd);
  }
}

TEST(Sample, RefusesToWriteOntoItsSource) {
  const TempFolder folder;
  const Bytes media = recording::atom("ftyp", "isom");
  const std::string file = folder.file("a.mp4", media);
  const Result result = voxa({"sample", file, "--onto", file, "--force"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.error, "voxa: " + file + ": is the file that is read; write to another one\n");
  EXPECT_EQ(bytesOfFile(file), media);
}

TEST(Sample, RefusesMediaThatNothingCanFollow) {
  const TempFolder folder;
  const Bytes head = recording::atom("ftyp", "isom");
  struct Row {
    const char* leaf;
    Bytes media;
    const char* reason;
  };
  for (const Row& row : {
           Row{"a.mp4", head + recording::bigEndian(0U) + "mdat" + "media to the end",
               "'mdat' at byte 12 has the size 0: nothing can follow it"},
           Row{"b.mp4", head + recording::bigEndian(7U) + "free",
               "'free' at byte 12 is smaller than its header"},
           Row{"c.mp4", head + recording::atom("mdat", "media").substr(0, 12),
               "'mdat' at byte 12 announces more bytes than the file holds"},
           Row{"d.mp4", head + "1234", "the 4 bytes at byte 12 are no header"},
           Row{"e.mp4", head + recording::wideAtom("mdat", "media").substr(0, 16),
               "'mdat' at byte 12 announces more bytes than the file holds"},
           Row{"f.wav", "RIFF" + recording::littleEndian(0xFFFFFFFFU) + "WAVE",
               "'RIFF' at byte 0 announces more bytes than the file holds"},
           Row{"g.wav", recording::chunk("JUNK", ""),
               "'JUNK' at byte 0 has the size 0: nothing can follow it"},
       }) {
    const std::string media = folder.file(row.leaf, row.media);
    const std::string out = folder.name(std::string("out-") + row.leaf);
    const Result result = voxa({"sample", out, "--onto", media});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "voxa: " + media + ": " + row.reason + "\n");
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::u8path(out))) << row.leaf;
  }
}

// Returns the tag of each track as the host sees it.
std::vector<int> tagsOf(const std::string& file) {
  std::vector<int> tags;
  const json stats = json::parse(voxa({"stats", file, "--format", "json"}).out);
  for (const json& track : stats["tracks"]) {
    tags.push_back(track["tag"]);
  }
  return tags;
}

TEST(Sample, TagsTheVideoTracks) {
  const TempFolder folder;
  ASSERT_EQ(voxa({"sample", folder.name("a.voxa")}).status, 0);
  EXPECT_EQ(tagsOf(folder.name("a.voxa")), (std::vector<int>{1, 2, 0}));
  // Tracks that have a tag keep it; user data that is there stays.
  ASSERT_EQ(voxa({"sample", folder.name("b.voxa"), "--onto", folder.name("a.voxa")}).error, "");
  EXPECT_EQ(tagsOf(folder.name("b.voxa")), (std::vector<int>{1, 2, 0}));
}

TEST(Sample, SaysWhyTracksAreNotTagged) {
  const TempFolder folder;
  const Bytes head = recording::atom("ftyp", "isom");
  struct Row {
    Bytes media;
    const char* reason;
  };
  for (const Row& row :
       {Row{head, "there is no movie header"},
        Row{head + recording::atom("moov", recording::atom("mvex", "")), "the movie is fragmented"},
        Row{head + recording::atom("moov", Bytes((8U << 20U) + 1, '\0')),
            "the movie header has over 8 MiB"},
        Row{head + recording::atom("moov", recording::bigEndian(99U) + "trak"),
            "in the movie header 'trak' at byte 0 announces more bytes than the file holds"}}) {
    const std::string media = folder.file("m.mp4", row.media);
    const Result result = voxa({"sample", folder.name("o.mp4"), "--onto", media, "--force"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "voxa: " + folder.name("o.mp4") +
                                ": the tracks are not tagged: " + row.reason + "\n");
    EXPECT_EQ(streamsOf(folder.name("o.mp4")).size(), recording::sampleTypes().size());
  }
}

// Real media that tests/media/make-media makes with ffmpeg.
class Media : public testing::TestWithParam<const char*> {
 protected:
  std::string media() const { return std::string(KESTOVA_TEST_MEDIA) + "/" + GetParam(); }
  Layout layout() const {
    const std::string name = GetParam();
    return name.find(".avi") + 1 + name.find(".wav") + 1 != 0 ? Layout::Chunks : Layout::Atoms;
  }
  TempFolder folder;
};

TEST_P(Media, IsIndexedAndLoadedWithABlockAppended) {
  const std::string out = folder.name(GetParam());
  const Result result = voxa({"sample", out, "--onto", media()});
  ASSERT_EQ(result.status, 0) << result.error;
  EXPECT_EQ(streamsOf(out).size(), recording::sampleTypes().size());
  EXPECT_EQ(loadedPoints(out), 600U);
  EXPECT_EQ(streamsOf(media()).size(), 0U);
  const std::string name = GetParam();
  if (name == "fragmented.mp4") {
    EXPECT_EQ(result.error,
              "voxa: " + out + ": the tracks are not tagged: the movie is fragmented\n");
  } else if (layout() == Layout::Atoms) {
    EXPECT_EQ(tagsOf(out),
              name == "two-videos.mp4" ? (std::vector<int>{1, 2, 0}) : (std::vector<int>{1, 0}));
  }
}

INSTANTIATE_TEST_SUITE_P(Files, Media,
                         testing::Values("end.mp4", "front.mp4", "fragmented.mp4", "two-videos.mp4",
                                         "clip.mov", "clip.avi", "clip.wav"),
                         [](const testing::TestParamInfo<const char*>& media) {
                           std::string name = media.param;
                           std::replace_if(
                               name.begin(), name.end(),
                               [](unsigned char byte) { return std::isalnum(byte) == 0; }, '_');
                           return name;
                         });

}  // namespace
