// Fuzzes stream file names under Windows path rules. The input is the name.
#include <boost/system/system_error.hpp>

#include "fuzz/Fuzz.h"
#include "names/StreamFileName.h"
#include "names/Utf16.h"
#include "names/WindowsPath.h"

namespace {

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void check(const std::string& name) {
  const names::WindowsPath path(name);
  const std::string& filename = path.filename();
  const std::string& parent = path.parentPath();
  fuzz::require(name.compare(0, parent.size(), parent) == 0, "the name begins with the parent");
  fuzz::require(filename == "." || endsWith(name, filename), "the name ends with the file name");
  fuzz::require(parent.size() + filename.size() <= name.size() + 1, "the parts do not overlap");
  fuzz::require(filename.size() == 1 || filename == name ||
                    filename.find_first_of("/\\") == std::string::npos ||
                    filename.find_first_not_of("/\\") != std::string::npos,
                "a file name is not a run of separators");
  fuzz::require(endsWith(filename, path.extension()), "the file name ends with the extension");
  fuzz::require(names::toUtf8(names::toUtf16(name)) == name, "names convert to UTF-16 and back");

  const names::StreamPath stream = names::splitStreamPath(name);
  fuzz::require(stream.recordingPath == parent, "the recording is the parent");
  if (stream.streamId) {
    const std::string whole = names::streamFileName("take.voxa", *stream.streamId);
    fuzz::require(names::splitStreamPath(whole).streamId == stream.streamId,
                  "an identifier in a name reads back the same");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string name(reinterpret_cast<const char*>(data), size);
  try {
    check(name);
  } catch (const boost::system::system_error& error) {
    fuzz::require(error.code().category().name() == std::string("codecvt"),
                  "only names that are not UTF-8 are rejected");
  }
  return 0;
}
