#include "names/StreamFileName.h"

#include <locale>
#include <sstream>

#include "names/WindowsPath.h"

namespace names {

StreamPath splitStreamPath(const std::string& filename) {
  const WindowsPath path(filename);
  StreamPath result{path.parentPath(), std::nullopt};
  std::istringstream text(path.filename());
  text.imbue(std::locale::classic());  // the global one may have other white space
  boost::uuids::uuid id{};
  if (text >> id) result.streamId = id;
  return result;
}

}  // namespace names
