// Windows path rules for other platforms. Boost.Filesystem applies most of them under POSIX rules,
// after each backslash is replaced by a slash and each UTF-16 unit outside ASCII by a letter. The
// code below adds drives, shares, and the last colon of a name without separators.
#include <algorithm>
#include <boost/filesystem/path.hpp>
#include <cstddef>
#include <string>

#include "names/Utf16.h"
#include "names/WindowsPath.h"

namespace names {

namespace {

// Offsets in UTF-16 units.
struct Split {
  std::size_t filename = 0;   // the begin of the last component
  std::size_t parentEnd = 0;  // the end of the parent path
  bool isDot = false;         // a trailing separator makes the last component "."
};

// Returns one ASCII character per UTF-16 unit, so that offsets are the same in both.
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

Split splitWithoutSeparator(const std::string& flat) {
  if (flat.size() < 2) return {};
  const auto colon = flat.rfind(':', flat.size() - 2);
  const auto end = colon == std::string::npos ? 0 : colon + 1;
  return {end, end, false};
}

// Splits "X:/...", where X is any one unit. The rest begins at the last of the slashes that follow
// the colon.
Split splitWithDrive(const std::string& flat, wchar_t drive) {
  const auto afterSlashes = flat.find_first_not_of('/', 2);
  const auto slashes = (afterSlashes == std::string::npos ? flat.size() : afterSlashes) - 2;
  const auto skipped = slashes - 1;
  const boost::filesystem::path rest(flat.substr(2 + skipped));
  const auto parent = rest.parent_path().size();
  Split parts;
  parts.filename = flat.size() - rest.filename().size();
  parts.isDot = rest.size() > 1 ? flat.back() == '/' : !isAsciiLetter(drive);
  if (parent == 0) {
    parts.parentEnd = skipped != 0 ? 3 : 2;
  } else {
    parts.parentEnd = parent == 1 ? 3 : 2 + skipped + parent;
  }
  return parts;
}

Split splitWithRoot(const std::string& flat) {
  const boost::filesystem::path path(flat);
  Split parts;
  parts.filename = flat.size() - path.filename().size();
  parts.parentEnd = path.parent_path().size();
  parts.isDot = flat.back() == '/' && path.filename() == ".";
  constexpr std::size_t kPrefixSize = 4;  // of "//?/", whose root ends at the next separator
  if (flat.size() > kPrefixSize && flat.compare(0, kPrefixSize, "//?/") == 0) {
    const auto separator = flat.find('/', kPrefixSize);
    if (separator != std::string::npos && parts.parentEnd == separator &&
        parts.filename > separator) {
      ++parts.parentEnd;
    }
  }
  return parts;
}

Split split(const std::wstring& wide) {
  const std::string flat = flattened(wide);
  if (flat.find('/') == std::string::npos) return splitWithoutSeparator(flat);
  if (flat.size() > 2 && flat[1] == ':' && flat[2] == '/') return splitWithDrive(flat, wide[0]);
  return splitWithRoot(flat);
}

}  // namespace

WindowsPath::WindowsPath(const std::string& name) {
  const std::wstring wide = toUtf16(name);
  const Split parts = split(wide);
  m_filename = parts.isDot ? "." : toUtf8(wide.substr(parts.filename));
  m_parentPath = toUtf8(wide.substr(0, parts.parentEnd));
}

}  // namespace names
