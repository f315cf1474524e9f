#include "names/StreamFileName.h"

#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <locale>
#include <optional>
#include <sstream>
#include <string>

#include "names/WindowsPath.h"

namespace names {

StreamPath splitStreamPath(const std::string& filename) {
  const WindowsPath path(filename);
  StreamPath result{path.parentPath(), std::nullopt};
  std::istringstream text(path.filename());
  text.imbue(std::locale::classic());  // the global locale may define other white space
  boost::uuids::uuid id{};
  if (text >> id) result.streamId = id;
  return result;
}

}  // namespace names
