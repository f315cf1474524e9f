#include "names/StreamFileName.h"

#include <sstream>

#include "names/WindowsPath.h"

namespace names {

StreamPath splitStreamPath(const std::string& filename) {
  const WindowsPath path(filename);
  StreamPath result{path.parentPath(), std::nullopt};
  std::istringstream text(path.filename());
  boost::uuids::uuid id{};
  if (text >> id) result.streamId = id;
  return result;
}

}  // namespace names
