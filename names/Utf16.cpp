#include "names/Utf16.h"

#include <boost/filesystem/path.hpp>
#include <boost/filesystem/path_traits.hpp>
#include <boost/system/system_error.hpp>
#include <codecvt>
#include <cwchar>
#include <locale>
#include <string>

#include "text/Utf8.h"

namespace names {

namespace {

// The base class of std::codecvt_utf8_utf16, whose vtable, destructor and conversions are symbols
// of libstdc++ and stay loaded when the module does not. Those of the derived template would be
// emitted in the module. The constructor of the base class is protected; this file is compiled
// without access control. (Boost's own UTF-8 facet truncates characters above U+FFFF on Windows and
// accepts overlong forms.)
using Converter = std::__codecvt_utf8_utf16_base<wchar_t>;
using Facet = std::codecvt<wchar_t, char, std::mbstate_t>;

const Facet& converter() {
  return std::use_facet<Facet>(utf8Locale());
}

}  // namespace

// Based on the classic locale, because the code of the global locale's facets may be unloaded.
const std::locale& utf8Locale() {
  constexpr unsigned long kMaxCodePoint = 0x10FFFF;
  static const std::locale locale(std::locale::classic(),
                                  new Converter(kMaxCodePoint, std::codecvt_mode{}, 0));
  return locale;
}

std::wstring toUtf16(const std::string& name) {
  std::wstring wide;
  boost::filesystem::path_traits::convert(name.data(), name.data() + name.size(), wide,
                                          converter());
  // libstdc++ lets encoded surrogates pass.
  if (!text::isWellFormedUtf8(name)) {
    throw boost::system::system_error(std::codecvt_base::error,
                                      boost::filesystem::codecvt_error_category(),
                                      "boost::filesystem::path codecvt to wstring");
  }
  return wide;
}

std::string toUtf8(const std::wstring& name) {
  std::string narrow;
  boost::filesystem::path_traits::convert(name.data(), name.data() + name.size(), narrow,
                                          converter());
  return narrow;
}

}  // namespace names
