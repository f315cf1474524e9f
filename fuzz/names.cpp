// Stream file names under Windows path rules. The input is the name.
#include <boost/system/system_error.hpp>

#include "fuzz/Fuzz.h"
#include "names/Utf16.h"
#include "names/StreamFileName.h"
#include "names/WindowsPath.h"

namespace {

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The converter lets halves of surrogate pairs in, but they do not come back the same.
bool hasHalfOfPair(const std::string& name) {
  for (auto place = name.find('\xED'); place != std::string::npos;
       place = name.find('\xED', ++place)) {
    if (place + 1 < name.size() && static_cast<unsigned char>(name[place + 1]) >= 0xA0) return true;
  }
  return false;
}

void check(const std::string& name) {
  const names::WindowsPath path(name);
  if (hasHalfOfPair(name)) return;
  const std::string& filename = path.filename();
  const std::string& parent = path.parentPath();
  fuzz::require(name.compare(0, parent.size(), parent) == 0, "the parent begins the name");
  fuzz::require(filename == "." || endsWith(name, filename), "the file name ends the name");
  fuzz::require(parent.size() + filename.size() <= name.size() + 1, "the parts do not overlap");
  fuzz::require(filename.size() == 1 || filename == name ||
                    filename.find_first_of("/\\") == std::string::npos ||
                    filename.find_first_not_of("/\\") != std::string::npos,
                "a file name is no run of separators");
  fuzz::require(endsWith(filename, path.extension()), "the extension ends the file name");
  fuzz::require(names::toUtf8(names::toUtf16(name)) == name, "names survive the way to UTF-16");

  const names::StreamPath stream = names::splitStreamPath(name);
  fuzz::require(stream.recordingPath == parent, "the recording is the parent");
  if (stream.streamId) {
    const std::string whole = names::streamFileName("take.voxa", *stream.streamId);
    fuzz::require(names::splitStreamPath(whole).streamId == stream.streamId,
                  "an identifier survives being put into a name");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string name(reinterpret_cast<const char*>(data), size);
  try {
    check(name);
  } catch (const boost::system::system_error& error) {
    fuzz::require(error.code().category().name() == std::string("codecvt"),
                  "only names that are no UTF-8 are refused");
  }
  return 0;
}
