// Conversions of path names, which are UTF-8 on every platform, and the path locale of
// Boost.Filesystem.
//
// While the module is loaded, the path locale of Boost.Filesystem is one that converts between
// UTF-8 and UTF-16. PathLocale.cpp holds the object that installs it when the module is loaded.
// When the module is unloaded, the object puts back the locale that it replaced, but only where the
// present locale is still its own: a locale that the host installed meanwhile stays.
//
// Several copies of the module may share one Boost.Filesystem and be unloaded in any order. In an
// order other than the reverse of loading, the locale of an earlier copy can remain. It is safe to
// use, because its code belongs to the C++ runtime, but the host's own locale is not put back then.
//
// Thread rule: Boost.Filesystem does not guard its path locale. No other thread may convert a path
// between narrow and wide text, or imbue a path locale, while the module is being loaded or
// unloaded.
#pragma once

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

}  // namespace names
