#include "host/VOXA/Reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <sstream>

#include "tests/support/TempFolder.h"
#include "tools/recording/Container.h"
#include "tools/recording/Movie.h"

namespace {

using recording::atom;
using recording::bigEndian;
using recording::Bytes;
using recording::wideAtom;
using testing_support::TempFolder;

Bytes zeros(std::size_t count) {
  return Bytes(count, '\0');
}
Bytes big16(unsigned number) {
  return bigEndian(static_cast<std::uint16_t>(number));
}
Bytes big32(std::uint32_t number) {
  return bigEndian(number);
}
Bytes big64(std::uint64_t number) {
  return bigEndian(number);
}

// A full atom: version and flags in front of the payload.
Bytes full(const char* type, const Bytes& payload, std::uint32_t flags = 0,
           std::uint32_t version = 0) {
  return atom(type, big32(version << 24U | flags) + payload);
}

// The atoms of a track. Tests replace some of them.
struct TrackAtoms {
  Bytes tkhd =
      full("tkhd", zeros(8) + big32(1) + zeros(60) + big32(320U << 16U) + big32(240U << 16U));
  Bytes mdhd = full("mdhd", zeros(8) + big32(600) + big32(1200) + zeros(4));
  Bytes hdlr = full("hdlr", zeros(4) + "vide" + zeros(13));
  Bytes minf;
  Bytes udta;

  Bytes trak() const { return atom("trak", tkhd + atom("mdia", mdhd + hdlr + minf) + udta); }
};

Bytes file(const Bytes& moovPayload) {
  return atom("ftyp", "isom") + atom("moov", moovPayload);
}

Bytes videoEntry(unsigned width, unsigned height) {
  return atom("minf", atom("stbl", full("stsd", big32(1) + atom("avc1", zeros(24) + big16(width) +
                                                                            big16(height)))));
}

// The result of a reader, or "none".
std::string shown(const boost::shared_ptr<VOXA::Reader>& reader) {
  if (!reader) return "none";
  std::ostringstream text;
  text << reader->maxWidth() << "x" << reader->maxHeight();
  for (const auto& track : reader->tracks()) {
    text << " | " << track->kind() << " " << track->length() << "/" << track->rate() << " "
         << track->width() << "x" << track->height() << " " << track->tag();
  }
  return text.str();
}

class Movies : public testing::Test {
 protected:
  static boost::shared_ptr<VOXA::Reader> open(const std::string& name) {
    return VOXA::Reader::create(name, VOXA::AudioFormat::create16BitSignedInterleaved(44100, 1),
                                nullptr);
  }
  std::string read(const Bytes& bytes) { return shown(open(folder.file("a.mp4", bytes))); }

  TempFolder folder;
};

TEST_F(Movies, DescribeTheirTracks) {
  EXPECT_EQ(read(recording::sampleMovie(3)),
            "1920x1080 | 0 1800/600 1920x1080 100 | 0 1800/600 640x480 101 | 1 132300/44100 0x0 0");
  EXPECT_EQ(read(file(TrackAtoms().trak())), "320x240 | 0 1200/600 320x240 0");
  EXPECT_EQ(read(file("")), "0x0");
  EXPECT_EQ(read(atom("mdat", "media") + file(TrackAtoms().trak())),
            "320x240 | 0 1200/600 320x240 0");
}

TEST_F(Movies, HaveTheMaximumSizeOfTheirVideoTracks) {
  TrackAtoms wide;
  wide.tkhd = full("tkhd", zeros(8) + big32(1) + zeros(60) + big32(640U << 16U) + big32(1U << 16U));
  TrackAtoms other;
  other.tkhd =
      full("tkhd", zeros(8) + big32(1) + zeros(60) + big32(9999U << 16U) + big32(9999U << 16U));
  other.hdlr = full("hdlr", zeros(4) + "text" + zeros(13));
  EXPECT_EQ(read(file(TrackAtoms().trak() + wide.trak() + other.trak())),
            "640x240 | 0 1200/600 320x240 0 | 0 1200/600 640x1 0 | 2 1200/600 9999x9999 0");
}

TEST_F(Movies, AreReadInEveryVersionOfTheirAtoms) {
  TrackAtoms atoms;
  atoms.tkhd = full(
      "tkhd", zeros(16) + big32(1) + zeros(64) + big32(320U << 16U) + big32(240U << 16U | 0x8000U),
      0, 1);
  atoms.mdhd = full("mdhd", zeros(16) + big32(600) + big64(uint64_t{1} << 40U) + zeros(4), 0, 1);
  atoms.udta = atom("udta", atom("name", "x") + atom("VTAG", big32(101)) + zeros(4));
  EXPECT_EQ(read(file(atoms.trak())), "320x240 | 0 1099511627776/600 320x240 101");
  EXPECT_EQ(read(wideAtom("mdat", "media") + wideAtom("moov", atoms.trak())),
            "320x240 | 0 1099511627776/600 320x240 101");
  // The size 0 means: up to the end of the file.
  EXPECT_EQ(read(file(TrackAtoms().trak()) + big32(0) + "mdat" + "media"),
            "320x240 | 0 1200/600 320x240 0");
}

TEST_F(Movies, UseTheSizeOfTheSampleEntryIfTheHeaderSaysZero) {
  TrackAtoms atoms;
  atoms.tkhd = full("tkhd", zeros(8) + big32(1) + zeros(60) + big32(0) + big32(0));
  atoms.minf = videoEntry(160, 120);
  EXPECT_EQ(read(file(atoms.trak())), "160x120 | 0 1200/600 160x120 0");
  atoms.tkhd = full("tkhd", zeros(8) + big32(1) + zeros(60) + big32(320U << 16U) + big32(0));
  EXPECT_EQ(read(file(atoms.trak())), "320x120 | 0 1200/600 320x120 0");
}

class FragmentedMovies : public Movies {
 protected:
  // A movie with one track without a duration, and the header of its fragments.
  static Bytes header(const Bytes& mvex, std::uint32_t duration = 0) {
    TrackAtoms atoms;
    atoms.mdhd = full("mdhd", zeros(8) + big32(600) + big32(duration) + zeros(4));
    const Bytes mvhd = full("mvhd", zeros(8) + big32(1000) + zeros(84));
    return file(mvhd + atoms.trak() + atom("mvex", mvex));
  }
  static Bytes trex(std::uint32_t duration) {
    return full("trex", big32(1) + big32(1) + big32(duration) + zeros(8));
  }
  static Bytes moof(const Bytes& trafPayload) { return atom("moof", atom("traf", trafPayload)); }
  static Bytes tfhd(std::uint32_t id = 1) { return full("tfhd", big32(id)); }
};

TEST_F(FragmentedMovies, EndWhereTheirLastFragmentEnds) {
  constexpr std::uint32_t kDurations = 0x100;
  constexpr std::uint32_t kEverything = 0xF05;
  const Bytes threeOfTen = full("trun", big32(3));
  const Bytes own = full("trun", big32(2) + big32(7) + big32(8), kDurations);
  const Bytes everything =
      full("trun", big32(2) + zeros(8) + big32(5) + zeros(12) + big32(6) + zeros(12), kEverything);
  const Bytes defaults = full("tfhd", big32(1) + zeros(12) + big32(100), 0x1 | 0x2 | 0x8);
  const auto at = [](std::uint32_t time) { return full("tfdt", big32(time)); };
  const Bytes atWide = full("tfdt", big64(uint64_t{1} << 33U), 0, 1);
  struct Row {
    const char* why;
    Bytes fragments;
    std::string length;
  };
  for (const Row& row : {
           Row{"no fragment", "", "0"},
           Row{"the default duration of the movie", moof(tfhd() + threeOfTen), "30"},
           Row{"consecutive fragments", moof(tfhd() + threeOfTen) + moof(tfhd() + threeOfTen + own),
               "75"},
           Row{"one duration per sample", moof(tfhd() + own), "15"},
           Row{"durations among other fields", moof(tfhd() + everything), "11"},
           Row{"the default duration of the fragment", moof(defaults + threeOfTen), "300"},
           Row{"a start time", moof(tfhd() + at(1000) + threeOfTen), "1030"},
           Row{"a 64-bit start time", moof(tfhd() + atWide + own), "8589934607"},
           Row{"the last fragment in time, not in the file",
               moof(tfhd() + at(1000) + threeOfTen) + moof(tfhd() + at(0) + threeOfTen), "1030"},
           Row{"a fragment of another track", moof(tfhd(2) + threeOfTen), "0"},
           Row{"a truncated fragment", moof(tfhd() + threeOfTen) + moof(tfhd() + own).substr(0, 30),
               "30"},
           Row{"truncated media", moof(tfhd() + threeOfTen) + atom("mdat", "media").substr(0, 9),
               "30"},
       }) {
    EXPECT_EQ(read(header(trex(10)) + row.fragments),
              "320x240 | 0 " + row.length + "/600 320x240 0")
        << row.why;
  }

  // The duration in the media header may include the fragments, so the larger of the two is used.
  const Bytes twice = moof(tfhd() + threeOfTen) + moof(tfhd() + threeOfTen);
  EXPECT_EQ(read(header(trex(10), 60) + twice), "320x240 | 0 60/600 320x240 0");
  EXPECT_EQ(read(header(trex(10), 59) + twice), "320x240 | 0 60/600 320x240 0");
  EXPECT_EQ(read(header(trex(10), 500) + twice), "320x240 | 0 500/600 320x240 0");
}

TEST_F(FragmentedMovies, WithoutFragmentsHaveTheDurationOfTheMovie) {
  EXPECT_EQ(read(header(full("mehd", big32(2500)) + trex(10))), "320x240 | 0 1500/600 320x240 0");
  EXPECT_EQ(read(header(full("mehd", big64(uint64_t{1} << 33U), 0, 1))),
            "320x240 | 0 5153960755/600 320x240 0");
  EXPECT_EQ(read(header(full("mehd", big32(2500)), 77)), "320x240 | 0 77/600 320x240 0");
}

TEST_F(Movies, WithDamagedTablesAreRejected) {
  const Bytes trak = TrackAtoms().trak();
  TrackAtoms noTkhd;
  noTkhd.tkhd.clear();
  TrackAtoms noMdhd;
  noMdhd.mdhd.clear();
  TrackAtoms noHdlr;
  noHdlr.hdlr.clear();
  TrackAtoms shortTkhd;
  shortTkhd.tkhd = full("tkhd", zeros(79));  // one byte less than its fields
  TrackAtoms shortTag;
  shortTag.udta = atom("udta", atom("VTAG", zeros(3)));
  TrackAtoms noSampleSize;
  noSampleSize.tkhd = full("tkhd", zeros(80));
  TrackAtoms shortSampleEntry = noSampleSize;
  shortSampleEntry.minf =
      atom("minf", atom("stbl", full("stsd", big32(1) + atom("avc1", zeros(27)))));
  TrackAtoms endless;
  endless.mdhd = full("mdhd", zeros(16) + big32(600) + big64(uint64_t{1} << 63U) + zeros(4), 0, 1);
  TrackAtoms unknown;
  unknown.mdhd = full("mdhd", zeros(8) + big32(600) + big32(0xFFFFFFFF) + zeros(4));
  const Bytes mvhd = full("mvhd", zeros(8) + big32(1000) + zeros(84));
  const Bytes timeless = full("mvhd", zeros(96));
  const Bytes mehd = atom("mvex", full("mehd", big32(5)));
  const Bytes trex = full("trex", big32(1) + big32(1) + big32(1) + zeros(8));
  const auto fragmented = [&](const Bytes& traf) {
    return file(mvhd + trak + atom("mvex", trex)) + atom("moof", atom("traf", traf));
  };
  struct Row {
    const char* why;
    Bytes bytes;
  };
  for (const Row& row : {
           Row{"empty", ""},
           Row{"no movie header", atom("mdat", "media")},
           Row{"no track header", file(noTkhd.trak())},
           Row{"no media header", file(noMdhd.trak())},
           Row{"no handler", file(noHdlr.trak())},
           Row{"a short track header", file(shortTkhd.trak())},
           Row{"a short tag", file(shortTag.trak())},
           Row{"no size", file(noSampleSize.trak())},
           Row{"a short sample entry", file(shortSampleEntry.trak())},
           Row{"a duration beyond 63 bits", file(endless.trak())},
           Row{"a track one byte larger than the movie header",
               file(big32(static_cast<std::uint32_t>(trak.size() + 1)) + trak.substr(4))},
           Row{"an atom smaller than its header", file(trak + big32(7) + "free")},
           Row{"a wide atom smaller than its header", file(trak + big32(1) + "free" + big64(15))},
           Row{"a wide size that wraps", file(trak + big32(1) + "free" + big64(~uint64_t{0}))},
           Row{"a truncated movie header", file(trak).substr(0, 60)},
           Row{"a movie duration without a timescale", file(timeless + unknown.trak() + mehd)},
           Row{"a fragment without its header", fragmented(full("trun", big32(1)))},
           Row{"a run with fewer samples than its count",
               fragmented(full("tfhd", big32(1)) +
                          full("trun", big32(0xFFFFFFFF) + big32(1), 0x100))},
           Row{"runs whose sum exceeds 64 bits",
               fragmented(full("tfhd", big32(1)) + full("tfdt", big64(~uint64_t{0}), 0, 1) +
                          full("trun", big32(1)))},
       }) {
    EXPECT_EQ(read(row.bytes), "none") << row.why;
  }
}

TEST_F(Movies, ThatDoNotExistAreRejected) {
  EXPECT_EQ(open(folder.name("absent.mp4")), nullptr);
  EXPECT_EQ(open(folder.name("")), nullptr);
  const std::string name = folder.file("\xC3\xBC\xF0\x9F\x98\x80.mp4", file(TrackAtoms().trak()));
  EXPECT_NE(open(name), nullptr);
}

// Real media. The expected tracks are those that ffprobe prints.
class Media : public testing::TestWithParam<const char*> {};

TEST_P(Media, HaveTheTracksOfFfprobe) {
  const std::string name = std::string(KESTOVA_TEST_MEDIA) + "/" + GetParam();
  const auto reader = VOXA::Reader::create(
      name, VOXA::AudioFormat::create16BitSignedInterleaved(44100, 1), nullptr);
  ASSERT_TRUE(reader);
  std::string tracks;
  for (const auto& track : reader->tracks()) {
    const bool isVideo = track->kind() == 0;
    tracks +=
        isVideo ? "video," + std::to_string(track->width()) + "," + std::to_string(track->height())
                : "audio";
    tracks += ",1/" + std::to_string(track->rate()) + "," + std::to_string(track->length()) + "\n";
  }
  EXPECT_EQ(tracks, testing_support::bytesOfFile(name + ".tracks"));
}

// The name of a case: the file name with "_" for characters that test names cannot have.
std::string caseName(const testing::TestParamInfo<const char*>& file) {
  std::string name = file.param;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Files, Media,
                         testing::Values("end.mp4", "front.mp4", "fragmented.mp4", "sound.mp4",
                                         "two-videos.mp4", "clip.mov"),
                         caseName);

}  // namespace
