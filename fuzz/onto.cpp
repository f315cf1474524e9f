// Fuzzes `voxa sample --onto`, which appends a metadata block to media. The first byte of the input
// selects the container; the rest is the media file.
#include <boost/uuid/uuid.hpp>
#include <memory>
#include <stdexcept>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "fuzz/Fuzz.h"
#include "fuzz/TempFile.h"
#include "host/VOXA/Reader.h"
#include "tools/recording/Sample.h"
#include "tools/voxa/Commands.h"

namespace {

using ZRKMetaData::MetaDataParser;

constexpr double kSeconds = 0.05;

// The offset of the four bytes that may differ from `media`, 0 if none differ.
std::size_t offsetOfChange(const std::string& media, const std::string& out) {
  fuzz::require(out.size() > media.size(), "something is appended");
  const auto difference = std::mismatch(media.begin(), media.end(), out.begin());
  if (difference.first == media.end()) return 0;
  const auto offset = static_cast<std::size_t>(difference.first - media.begin());
  fuzz::require(media.compare(offset, 4, "moov") == 0 && out.compare(offset, 4, "free") == 0,
                "nothing changes but the type of the movie header");
  fuzz::require(
      media.compare(offset + 4, std::string::npos, out, offset + 4, media.size() - offset - 4) == 0,
      "one movie header becomes free space");
  return offset;
}

// Every stream of the sample, at the end of the file. Media that has blocks of its own, or what a
// scan takes for one, may end the scan before that.
void checkIndex(const fuzz::TempFile& file, std::size_t mediaSize) {
  const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForFile(file.name()));
  for (const auto& entry : recording::sampleEntries(kSeconds, 1)) {
    const auto location = parser->locationOf(entry.id);
    fuzz::require(location.offset >= static_cast<std::streamoff>(mediaSize),
                  "the index has every stream of the block");
  }
}

std::size_t trackCount(const fuzz::TempFile& file) {
  const auto reader = VOXA::Reader::create(
      file.name(), VOXA::AudioFormat::create16BitSignedInterleaved(44100, 1), nullptr);
  return reader ? reader->tracks().size() : 0;
}

std::size_t count(const std::string& text, const char* part) {
  std::size_t found = 0;
  for (auto offset = text.find(part); offset != std::string::npos;
       offset = text.find(part, offset + 1)) {
    ++found;
  }
  return found;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Quiet quiet;
  ZRKMetaData::setAssertionHandler([](const char*, const char*, int) {});
  static const fuzz::TempFile kMedia[] = {fuzz::TempFile(".mp4"), fuzz::TempFile(".avi")};
  static const fuzz::TempFile kOut[] = {fuzz::TempFile(".mov"), fuzz::TempFile(".wav")};
  fuzz::Input input(data, size);
  const auto container = input.take<std::uint8_t>() % 2;
  const std::string bytes = input.rest();
  const fuzz::TempFile& media = kMedia[container];
  const fuzz::TempFile& out = kOut[container];
  media.write(bytes);

  voxa::SampleOptions options;
  options.onto = media.name();
  options.out = out.name();
  options.seconds = kSeconds;
  bool isWritten = true;
  try {
    voxa::writeSample(options);
  } catch (const std::runtime_error&) {
    isWritten = false;
  }
  fuzz::require(media.read() == bytes, "the media is only read");
  fuzz::require(out.exists() == isWritten, "what is refused leaves no file");
  if (isWritten) {
    const std::size_t change = offsetOfChange(bytes, out.read());
    if (count(bytes, "ZRKM") == 0) checkIndex(out, bytes.size());
    if (change != 0 && count(bytes, "moov") == 1) {
      // New tags may replace what keeps the reader from the media itself.
      fuzz::require(trackCount(out) >= trackCount(media), "no track is lost");
    }
  }
  out.remove();
  return 0;
}
