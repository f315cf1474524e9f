// Fuzzes the stream window. The input is a program of reads, seeks and peeks, whose results and
// final stream state must equal those of the stream itself.
#include <sstream>

#include "ZRKMetaData/src/ZRKMStreamWindow.h"
#include "fuzz/Fuzz.h"

namespace {

using ZRKMetaData::StreamWindow;

constexpr std::size_t kFileSize = 300;

std::string countingBytes() {
  std::string bytes(kFileSize, '\0');
  char next = 0;
  for (char& byte : bytes) byte = ++next;
  return bytes;
}

std::size_t bytesLeft(std::istream& stream) {
  return kFileSize - static_cast<std::size_t>(stream.tellg());
}

void step(fuzz::Input& input, std::istream& plain, StreamWindow& window) {
  switch (input.take<std::uint8_t>() % 4) {
    case 0: {
      const auto to = input.take<std::uint16_t>() % (kFileSize + 1);
      plain.seekg(static_cast<std::streamoff>(to));
      window.seek(static_cast<ZRKMetaData::int64>(to));
      break;
    }
    case 1:
      plain.peek();
      window.peek();
      break;
    default: {
      std::string expected(input.take<std::uint8_t>() % 40, '?');
      std::string got = expected;
      plain.read(expected.data(), static_cast<std::streamsize>(expected.size()));
      const std::size_t count = window.read(got.data(), got.size());
      fuzz::require(count == static_cast<std::size_t>(plain.gcount()) && got == expected,
                    "both read the same bytes");
    }
  }
  fuzz::require(window.eof() == plain.eof() && window.good() == plain.good(),
                "both have the same state");
  if (plain.good()) {
    fuzz::require(window.bytesLeft() == bytesLeft(plain), "both have as many bytes left");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  std::istringstream plain(countingBytes());
  std::istringstream windowed(countingBytes());
  {
    StreamWindow window(windowed, 0, input.take<std::uint8_t>());
    const auto limit = input.take<std::uint16_t>() % 640;
    if (limit < 320) window.limitReadAhead(limit);
    while (!input.isEmpty() && plain.good()) step(input, plain, window);
  }
  fuzz::require(windowed.rdstate() == plain.rdstate(), "the stream ends in the same state");
  plain.clear();
  windowed.clear();
  fuzz::require(windowed.tellg() == plain.tellg(), "the stream ends at the same position");
  return 0;
}
