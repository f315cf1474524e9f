// Fuzzes `voxa graft` and `voxa sidecar`: whatever they write, the parser reads back equal. The
// first byte of the input selects the container, the side that the input is, and the cuts; the rest
// is a media file.
#include <filesystem>
#include <map>
#include <stdexcept>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "fuzz/Fuzz.h"
#include "fuzz/TempFile.h"
#include "tools/recording/Movie.h"
#include "tools/recording/Sample.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/StreamSource.h"

namespace {

using voxa::StreamSource;

// The types that the cuts name, by short key.
const std::map<std::string, series::RecordType> kTypes = {
    {"F3", series::recordTypeOf<ZRKMetaData::KeyStroke>()},
    {"F9", series::recordTypeOf<std::string>()},
    {"F1", series::recordTypeOf<ZRKMetaData::CursorImage>()},
    {"F5", series::recordTypeOf<ZRKMetaData::Rect>()}};

// Runs a command. Returns whether it may have written its result, which damaged streams do not
// prevent.
template <class Run>
bool mayWrite(Run run) {
  try {
    run();
  } catch (const voxa::Failure& failure) {
    return failure.status() == voxa::Status::DamagedData;
  } catch (const std::runtime_error&) {
    return false;
  }
  return true;
}

std::string bytesOf(const voxa::SourceStream& stream) {
  std::string bytes;
  series::readEntry(*stream.parser, stream.extent,
                    [&bytes](std::string_view piece) { bytes += piece; });
  return bytes;
}

// Every stream of `original` is in the other file, byte for byte or, after cuts, whole.
void checkStreams(const std::string& original, const std::string& copy, bool isCut) {
  const StreamSource before(original);
  const StreamSource after(copy);
  for (const voxa::SourceStream& stream : before.streams()) {
    const voxa::SourceStream* found = nullptr;
    for (const voxa::SourceStream& other : after.streams()) {
      if (other.id == stream.id) found = &other;
    }
    fuzz::require(found != nullptr, "every stream is read back");
    fuzz::require(!found->extent.isCut(), "what is written is whole");
    const std::string bytes = bytesOf(*found);
    if (!isCut) {
      fuzz::require(bytes == bytesOf(stream), "a stream is copied byte for byte");
      continue;
    }
    constexpr std::size_t kHeader = 24;
    fuzz::require(bytes.compare(0, kHeader, bytesOf(stream), 0, kHeader) == 0,
                  "the header is copied byte for byte");
    const auto type = kTypes.find(stream.name);
    if (type == kTypes.end()) continue;
    series::forEachRecord(*found->parser, found->id, type->second, {},
                          [](double seconds, const auto&) {
                            fuzz::require(seconds >= 0, "every record is in a part");
                          });
  }
}

// The reserved folder of one process.
class Folder {
 public:
  ~Folder() { remove(); }
  std::string name() const { return m_name.name(); }
  bool exists() const { return m_name.exists(); }
  void remove() const {
    std::error_code ignored;
    std::filesystem::remove_all(std::filesystem::u8path(name()), ignored);
  }

 private:
  const fuzz::TempFile m_name{".streams"};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Quiet quiet;
  ZRKMetaData::setAssertionHandler([](const char*, const char*, int) {});
  static const fuzz::TempFile kInput[] = {fuzz::TempFile(".mp4"), fuzz::TempFile(".avi")};
  static const fuzz::TempFile kOther[] = {fuzz::TempFile(".mov"), fuzz::TempFile(".wav")};
  static const fuzz::TempFile kOut[] = {fuzz::TempFile(".voxa"), fuzz::TempFile(".WAV")};
  static const Folder kFolder;
  fuzz::Input input(data, size);
  const auto choice = input.take<std::uint8_t>();
  const int container = choice & 1;
  const bool isOriginal = (choice & 2) != 0;
  const bool isCut = (choice & 4) != 0;
  const std::string bytes = input.rest();
  kInput[container].write(bytes);
  const auto entries = recording::sampleEntries(0.3, 1);
  kOther[container].write(container == 0
                              ? recording::sampleMovie(1) + recording::atomBlock(entries)
                              : recording::chunk("RIFF", "odd") + recording::chunkBlock(entries));

  const fuzz::TempFile& edited = isOriginal ? kOther[container] : kInput[container];
  std::string original = isOriginal ? kInput[container].name() : kOther[container].name();
  if (isOriginal && mayWrite([&] {
        voxa::writeSidecar({original, kFolder.name(), false, {}});
      }) &&
      kFolder.exists()) {
    checkStreams(original, kFolder.name(), false);
    original = kFolder.name();
  }
  voxa::GraftOptions options;
  options.edited = edited.name();
  options.original = original;
  options.out = kOut[container].name();
  if (isCut) {
    options.cuts = {"0.1-0.2", "0-1/7", "0.1-"};
    options.types = {"F3=keystrokes", "F9=strings", "F1=cursor-images", "F5=rects"};
  }
  const bool isPermitted = mayWrite([&] { voxa::graftStreams(options); });
  const bool isWritten = kOut[container].exists();
  fuzz::require(isPermitted || !isWritten, "what is refused leaves no file");
  if (isWritten) {
    const std::string before = edited.read();
    fuzz::require(kOut[container].read().compare(0, before.size(), before) == 0,
                  "the media is copied byte for byte");
    checkStreams(original, options.out, isCut);
  }
  fuzz::require(kInput[container].read() == bytes, "the input is only read");
  kOut[container].remove();
  kFolder.remove();
  return 0;
}
