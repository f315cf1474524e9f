// The reader of track tables. The input is the file.
#include <filesystem>
#include <fstream>
#include <random>

#include "fuzz/Fuzz.h"
#include "host/VOXA/Reader.h"

namespace {

// One file that every input is written to in turn.
const std::string& fileName() {
  static const std::string name = (std::filesystem::temp_directory_path() /
                                   ("kestova-fuzz-" + std::to_string(std::random_device()())))
                                      .u8string();
  return name;
}

std::string shown(const boost::shared_ptr<VOXA::Reader>& reader) {
  if (!reader) return "none";
  std::string text = std::to_string(reader->maxWidth()) + "x" + std::to_string(reader->maxHeight());
  for (const auto& track : reader->tracks()) {
    fuzz::require(track->kind() >= 0 && track->kind() <= 2, "a kind is 0, 1 or 2");
    fuzz::require(track->length() >= 0, "no track has a negative length");
    fuzz::require(track->kind() != 0 || track->width() <= reader->maxWidth(),
                  "no video track is wider than the widest");
    text += " " + std::to_string(track->kind()) + " " + std::to_string(track->length()) + "/" +
            std::to_string(track->rate()) + " " + std::to_string(track->tag());
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::ofstream(std::filesystem::u8path(fileName()), std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const auto read = [] {
    return VOXA::Reader::create(fileName(),
                                VOXA::AudioFormat::create16BitSignedInterleaved(44100, 1), nullptr);
  };
  const auto reader = read();
  fuzz::require(shown(reader) == shown(read()), "two reads of the same file agree");
  constexpr std::size_t kSmallestTrack = 100;
  fuzz::require(!reader || reader->tracks().size() <= size / kSmallestTrack,
                "there are no more tracks than the file has room for");
  std::filesystem::remove(std::filesystem::u8path(fileName()));
  return 0;
}
