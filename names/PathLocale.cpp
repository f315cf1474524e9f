#include "names/PathLocale.h"

#include <boost/filesystem/path.hpp>
#include <boost/filesystem/path_traits.hpp>
#include <codecvt>
#include <locale>

namespace names {

namespace {

using Converter = std::codecvt_utf8_utf16<wchar_t>;
using Facet = std::codecvt<wchar_t, char, std::mbstate_t>;

// Boost's own UTF-8 facet cuts characters above U+FFFF and lets overlong forms pass.
std::locale utf8Locale() {
  return {std::locale(), new Converter};
}

const Facet& converter() {
  static const std::locale locale = utf8Locale();
  return std::use_facet<Facet>(locale);
}

class PathLocale {
 public:
  PathLocale() : m_before(boost::filesystem::path::imbue(utf8Locale())) {}
  ~PathLocale() { boost::filesystem::path::imbue(m_before); }
  PathLocale(const PathLocale&) = delete;
  PathLocale& operator=(const PathLocale&) = delete;

 private:
  const std::locale m_before;
};

// NOLINTNEXTLINE(cert-err58-cpp): without memory for a locale the module cannot be loaded
const PathLocale g_pathLocale;

}  // namespace

std::wstring toUtf16(const std::string& name) {
  std::wstring wide;
  boost::filesystem::path_traits::convert(name.data(), name.data() + name.size(), wide,
                                          converter());
  return wide;
}

std::string toUtf8(const std::wstring& name) {
  std::string narrow;
  boost::filesystem::path_traits::convert(name.data(), name.data() + name.size(), narrow,
                                          converter());
  return narrow;
}

}  // namespace names
