// While the module is loaded, the path locale of Boost.Filesystem is one that converts between
// UTF-8 and UTF-16, so that every narrow path is UTF-8. The object below installs it when the
// module is loaded. When the module is unloaded, the object puts back the locale that it replaced,
// but only where the present locale is still its own: a locale that the host installed meanwhile
// stays.
//
// Several copies of the module may share one Boost.Filesystem and be unloaded in any order. In an
// order other than the reverse of loading, the locale of an earlier copy can remain. It is safe to
// use, because its code belongs to the C++ runtime, but the host's own locale is not put back then.
//
// Thread rule: Boost.Filesystem does not guard its path locale. No other thread may convert a path
// between narrow and wide text, or imbue a path locale, while the module is being loaded or
// unloaded.
#include <boost/filesystem/path.hpp>
#include <locale>

#include "names/Utf16.h"

namespace {

class PathLocale {
 public:
  PathLocale() : m_before(boost::filesystem::path::imbue(names::utf8Locale())) {}

  // The present locale can be read only by replacing it.
  ~PathLocale() {
    const std::locale present = boost::filesystem::path::imbue(m_before);
    if (present != names::utf8Locale()) boost::filesystem::path::imbue(present);
  }

  PathLocale(const PathLocale&) = delete;
  PathLocale& operator=(const PathLocale&) = delete;

 private:
  const std::locale m_before;
};

// NOLINTNEXTLINE(cert-err58-cpp): without memory for a locale the module cannot be loaded
const PathLocale g_pathLocale;

}  // namespace
