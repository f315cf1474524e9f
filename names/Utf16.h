// Conversions of path names between UTF-8 and UTF-16. Path names are UTF-8 on every platform.
#pragma once

#include <locale>
#include <string>

namespace names {

/// Returns `name` in UTF-16, one code unit per wide character. UTF-8 is strict: encoded surrogates,
/// overlong forms and code points above U+10FFFF are malformed. Throws boost::system::system_error
/// "boost::filesystem::path codecvt to wstring: ..." for malformed text. May be called from any
/// thread.
std::wstring toUtf16(const std::string& name);

/// Returns UTF-16 as UTF-8. Throws the same error with "to string" for malformed text, such as an
/// unpaired surrogate. May be called from any thread.
std::string toUtf8(const std::wstring& name);

/// The classic locale with a facet std::codecvt<wchar_t, char, std::mbstate_t> that converts
/// between UTF-8 and UTF-16. The facet lets encoded surrogates pass; `toUtf16` does not. The code
/// of the facet belongs to the C++ runtime, so copies of the locale stay usable when the module has
/// been unloaded. May be called from any thread.
const std::locale& utf8Locale();

}  // namespace names
