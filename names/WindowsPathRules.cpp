// Windows path rules for platforms whose own are others. Most of them are those of POSIX once every
// back slash is a slash and every unit that is no ASCII character one letter, so that Boost can be
// asked; what is left are drives, shares and the last colon of a name without separators.
#include <algorithm>
#include <boost/filesystem/path.hpp>

#include "names/Utf16.h"
#include "names/WindowsPath.h"

namespace names {

namespace {

// Where the parts of a name stand, in UTF-16 units.
struct Places {
  std::size_t filename = 0;
  std::size_t parentEnd = 0;
  bool isDot = false;  // a trailing separator stands for the file name "."
};

// One plain character a unit, so that places in it are places in the name.
std::string flattened(const std::wstring& wide) {
  std::string flat(wide.size(), 'x');
  std::transform(wide.begin(), wide.end(), flat.begin(), [](wchar_t unit) {
    if (unit == L'\\') return '/';
    return unit < 0x80 ? static_cast<char>(unit) : 'x';
  });
  return flat;
}

bool isAsciiLetter(wchar_t unit) {
  return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

Places placesWithoutSeparator(const std::string& flat) {
  if (flat.size() < 2) return {};
  const auto colon = flat.rfind(':', flat.size() - 2);
  const auto end = colon == std::string::npos ? 0 : colon + 1;
  return {end, end, false};
}

// "X:/...", where X is any one unit. The rest begins at the last of the slashes behind the colon.
Places placesWithDrive(const std::string& flat, wchar_t drive) {
  const auto afterSlashes = flat.find_first_not_of('/', 2);
  const auto slashes = (afterSlashes == std::string::npos ? flat.size() : afterSlashes) - 2;
  const auto skipped = slashes - 1;
  const boost::filesystem::path rest(flat.substr(2 + skipped));
  const auto parent = rest.parent_path().size();
  Places places;
  places.filename = flat.size() - rest.filename().size();
  places.isDot = rest.size() > 1 ? flat.back() == '/' : !isAsciiLetter(drive);
  if (parent == 0) {
    places.parentEnd = skipped != 0 ? 3 : 2;
  } else {
    places.parentEnd = parent == 1 ? 3 : 2 + skipped + parent;
  }
  return places;
}

Places placesWithRoot(const std::string& flat) {
  const boost::filesystem::path path(flat);
  Places places;
  places.filename = flat.size() - path.filename().size();
  places.parentEnd = path.parent_path().size();
  places.isDot = flat.back() == '/' && path.filename() == ".";
  constexpr std::size_t kPrefixSize = 4;  // of "//?/": the root reaches to the next separator
  if (flat.size() > kPrefixSize && flat.compare(0, kPrefixSize, "//?/") == 0) {
    const auto separator = flat.find('/', kPrefixSize);
    if (separator != std::string::npos && places.parentEnd == separator &&
        places.filename > separator) {
      ++places.parentEnd;
    }
  }
  return places;
}

Places placesIn(const std::wstring& wide) {
  const std::string flat = flattened(wide);
  if (flat.find('/') == std::string::npos) return placesWithoutSeparator(flat);
  if (flat.size() > 2 && flat[1] == ':' && flat[2] == '/') return placesWithDrive(flat, wide[0]);
  return placesWithRoot(flat);
}

}  // namespace

WindowsPath::WindowsPath(const std::string& name) {
  const std::wstring wide = toUtf16(name);
  const Places places = placesIn(wide);
  m_filename = places.isDot ? "." : toUtf8(wide.substr(places.filename));
  m_parentPath = toUtf8(wide.substr(0, places.parentEnd));
}

}  // namespace names
