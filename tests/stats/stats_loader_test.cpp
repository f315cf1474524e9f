#include <gtest/gtest.h>

#include <boost/uuid/uuid_io.hpp>
#include <functional>
#include <stdexcept>

#include "host/Kestova/KestovaException.h"
#include "stats/VOXAStatsLoader.h"
#include "tests/stats/ScriptedReader.h"
#include "tests/support/TempFolder.h"
#include "tools/recording/Container.h"

namespace {

using Kestova::MediaFileStats;
using testing_support::script;
using testing_support::ScriptedTrack;

constexpr int kOther = 7;  // a kind that is neither video nor audio

class Stats : public testing::Test {
 protected:
  void SetUp() override { script() = {}; }

  const MediaFileStats::TrackStats& loadedTrack(const ScriptedTrack& track) {
    script().tracks = {track};
    loader.loadStats(recording, &stats);
    return stats.trackStats().back();
  }

  testing_support::TempFolder folder;
  const std::string recording = folder.file(
      "take.voxa", recording::atomBlock({recording::Entry{recording::streamId(0xF7), "records"},
                                         recording::Entry{recording::streamId(0x01), "records"}}));
  MediaFileStats stats;
  VOXAStatsLoader loader;
};

TEST_F(Stats, AreLoadedForTheExtensionVoxaOnly) {
  struct Row {
    const char* name;
    bool canOpen;
  };
  for (const Row& row :
       {Row{"C:\\rec\\a.voxa", true}, Row{"a.voxa", true}, Row{".voxa", true},
        Row{"a.b/c.voxa", true}, Row{"a.voxa:stream.voxa", true}, Row{"a.VOXA", false},
        Row{"a.voxa.bak", false}, Row{"a.mp4", false}, Row{"avoxa", false}, Row{"", false},
        Row{"dir.voxa/", false}, Row{"dir.voxa\\", false}, Row{"dir.voxa/a", false},
        Row{"a.voxa:stream", false}, Row{"\xFF.voxa", false}, Row{"\xED\xA0\x80.voxa", false},
        Row{"\xC0\xAF.voxa", false}, Row{"\xF4\x90\x80\x80.voxa", false}}) {
    EXPECT_EQ(loader.canOpenFile(row.name), row.canOpen) << row.name;
  }
}

TEST_F(Stats, MapTrackTags) {
  struct Row {
    unsigned int tag;
    int mapped;
  };
  for (const Row& row :
       {Row{100, 1}, Row{101, 2}, Row{102, 4}, Row{103, 3}, Row{104, 0}, Row{99, 0}, Row{0, 0}}) {
    EXPECT_EQ(VOXAStatsLoader::trackTagFromVOXATrackTag(row.tag), row.mapped) << row.tag;
  }
}

TEST_F(Stats, DescribeTheFileAndItsTracksInOrder) {
  script().tracks = {{640, 480, {0}, 600, 1200, 101},
                     {0, 0, {1}, 44100, 88200, 100},
                     {0, 0, {kOther}, 1, 2, 102},
                     {1920, 1080, {0}, 30000, 1LL << 40, 100}};
  loader.loadStats(recording, &stats);
  EXPECT_EQ(script().calls, "create " + recording + " 44100 1 null kind kind kind kind kind kind ");
  EXPECT_EQ(stats.filename(), recording);
  EXPECT_EQ(stats.rect(), Kestova::Rect<int>(0, 0, 1920, 1080));
  ASSERT_EQ(stats.trackStats().size(), 4U);

  const auto& camera = stats.trackStats()[0];
  EXPECT_EQ(camera.range, Kestova::Range<Kestova::int64>(0, 1200));
  EXPECT_EQ(camera.rate, boost::rational<unsigned int>(600));
  EXPECT_EQ(camera.rect, Kestova::Rect<int>(0, 0, 640, 480));
  EXPECT_EQ(camera.type, 0);
  EXPECT_EQ(camera.tag, 2);
  EXPECT_TRUE(camera.metaDataFilenames.empty());

  const auto& audio = stats.trackStats()[1];
  EXPECT_EQ(audio.type, 2);
  EXPECT_EQ(audio.sampleRate, 44100);
  EXPECT_EQ(audio.channelCount, 1);
  EXPECT_EQ(audio.bitsPerSample, 16);
  EXPECT_EQ(audio.bytesPerSample, 2);
  EXPECT_EQ(audio.tag, 1);
  EXPECT_TRUE(audio.metaDataFilenames.empty());  // audio, whatever its tag

  const auto& other = stats.trackStats()[2];
  EXPECT_EQ(other.type, 3);
  EXPECT_EQ(other.sampleRate, 0);
  EXPECT_EQ(other.channelCount, 1);
  EXPECT_EQ(other.tag, 4);
  EXPECT_EQ(other.auxText, "");
  EXPECT_EQ(other.auxValue, 1);

  const auto& screen = stats.trackStats()[3];
  EXPECT_EQ(screen.range.length, 1LL << 40);
  EXPECT_EQ(screen.metaDataFilenames,
            (std::vector<std::string>{recording + "/2b7b6a01-7a1f-11e2-83d0-0017f200be7f",
                                      recording + "/2b7b6af7-7a1f-11e2-83d0-0017f200be7f"}));
  for (std::size_t index = 0; index < 4; ++index) {
    EXPECT_EQ(stats.trackStats()[index].index, static_cast<int>(index));
  }
}

TEST_F(Stats, ReadTheKindAgainIfItIsNotVideo) {
  EXPECT_EQ(loadedTrack({1, 1, {1, kOther}, 1, 1, 0}).type, 3);
  EXPECT_EQ(loadedTrack({1, 1, {kOther, 1}, 1, 1, 0}).type, 2);
  EXPECT_EQ(loadedTrack({1, 1, {kOther, 0}, 1, 1, 0}).type, 3);
}

class ScreenStats : public Stats {
 protected:
  // Replaces the recording by one of `count` streams.
  void writeStreams(unsigned count) const {
    std::vector<recording::Entry> entries;
    for (unsigned number = 0; number < count; ++number) {
      boost::uuids::uuid id{};
      id.data[0] = static_cast<std::uint8_t>(number >> 8U);
      id.data[1] = static_cast<std::uint8_t>(number);
      entries.push_back({id, ""});
    }
    folder.file("take.voxa", recording::atomBlock(entries));
  }

  static void showScreens(std::size_t count) {
    script().tracks.assign(count, {640, 480, {0}, 600, 1200, 100});
  }
};

TEST_F(ScreenStats, RescanForTheFirstSixteenScreenTracks) {
  // Adds a stream to the recording after each track, which shows whether the next track is scanned.
  class Changing final : public MediaFileStats {
   public:
    explicit Changing(std::function<void(unsigned)> writeStreams)
        : m_writeStreams(std::move(writeStreams)) {}
    void addTrackStats(const TrackStats& track) override {
      counts.push_back(track.metaDataFilenames.size());
      m_writeStreams(static_cast<unsigned>(counts.size()) + 1);
    }
    std::vector<std::size_t> counts;

   private:
    const std::function<void(unsigned)> m_writeStreams;
  } changing([this](unsigned count) { writeStreams(count); });
  showScreens(18);
  writeStreams(1);
  loader.loadStats(recording, &changing);
  EXPECT_EQ(changing.counts, (std::vector<std::size_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13,
                                                       14, 15, 16, 16, 16}));
}

TEST_F(ScreenStats, HaveAtMost262144StreamNames) {
  constexpr unsigned kStreams = 16384;  // 16 tracks list 262,144 names
  writeStreams(kStreams);
  showScreens(16);
  loader.loadStats(recording, &stats);
  EXPECT_EQ(stats.trackStats().size(), 16U);
  EXPECT_EQ(stats.trackStats().back().metaDataFilenames.size(), kStreams);
  MediaFileStats limited;
  showScreens(18);
  try {
    loader.loadStats(recording, &limited);
    ADD_FAILURE() << "was loaded";
  } catch (const Kestova::KestovaException& error) {
    EXPECT_EQ(error.what(), recording +
                                ": track 16 would bring the stream names to 278528; "
                                "the maximum is 262144");
  }
  EXPECT_EQ(limited.filename(), recording);
  EXPECT_EQ(limited.trackStats().size(), 16U);
}

TEST_F(Stats, AcceptARateOfZero) {
  const auto& track = loadedTrack({1, 1, {0}, 0, 5, 0});
  EXPECT_EQ(track.rate.numerator(), 0U);
  EXPECT_EQ(track.rate.denominator(), 1U);
}

TEST_F(Stats, OfARecordingWithoutTracksHaveNameAndSize) {
  loader.loadStats(recording, &stats);
  EXPECT_EQ(stats.filename(), recording);
  EXPECT_EQ(stats.rect().width, 1920);
  EXPECT_TRUE(stats.trackStats().empty());
}

TEST_F(Stats, ThrowForUnreadableRecordingsAndStayEmpty) {
  script().opens = false;
  try {
    loader.loadStats("C:\\x.voxa", &stats);
    ADD_FAILURE() << "was loaded";
  } catch (const Kestova::KestovaException& error) {
    EXPECT_STREQ(error.what(), "Unable to create VOXA::Reader for C:\\x.voxa\n");
  }
  EXPECT_EQ(stats.filename(), "");
}

TEST_F(Stats, KeepTheTracksBeforeAFailure) {
  class Full final : public MediaFileStats {
   public:
    void addTrackStats(const TrackStats& track) override {
      if (track.index == 1) throw std::length_error("full");
      MediaFileStats::addTrackStats(track);
    }
  } full;
  script().tracks = {{1, 1, {0}, 1, 1, 0}, {1, 1, {0}, 1, 1, 0}};
  EXPECT_THROW(loader.loadStats(recording, &full), std::length_error);
  EXPECT_EQ(full.filename(), recording);
  EXPECT_EQ(full.trackStats().size(), 1U);
}

}  // namespace
