// Fuzzes the reader of track tables. The input is the file.
#include "fuzz/Fuzz.h"
#include "fuzz/TempFile.h"
#include "host/VOXA/Reader.h"

namespace {

std::string shown(const boost::shared_ptr<VOXA::Reader>& reader) {
  if (!reader) return "none";
  std::string text = std::to_string(reader->maxWidth()) + "x" + std::to_string(reader->maxHeight());
  for (const auto& track : reader->tracks()) {
    fuzz::require(track->kind() >= 0 && track->kind() <= 2, "a kind is 0, 1 or 2");
    fuzz::require(track->length() >= 0, "lengths are not negative");
    fuzz::require(track->kind() != 0 || track->width() <= reader->maxWidth(),
                  "the maximum width is the maximum");
    text += " " + std::to_string(track->kind()) + " " + std::to_string(track->length()) + "/" +
            std::to_string(track->rate()) + " " + std::to_string(track->tag());
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::TempFile file;
  file.write(std::string(reinterpret_cast<const char*>(data), size));
  const auto read = [] {
    return VOXA::Reader::create(file.name(),
                                VOXA::AudioFormat::create16BitSignedInterleaved(44100, 1), nullptr);
  };
  const auto reader = read();
  fuzz::require(shown(reader) == shown(read()), "two reads of the same file agree");
  constexpr std::size_t kSmallestTrack = 100;
  fuzz::require(!reader || reader->tracks().size() <= size / kSmallestTrack,
                "the file has room for the tracks");
  return 0;
}
