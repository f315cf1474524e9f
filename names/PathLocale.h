// Narrow path names are UTF-8, on every platform.
//
// When the module is loaded, a locale whose converter goes between UTF-8 and UTF-16 becomes the
// path locale of Boost.Filesystem; when it is unloaded, the locale that was there before comes
// back, since the host may share the library and go on using it. That object lives in
// PathLocale.cpp and nowhere else.
#pragma once

#include <string>

namespace names {

/// `name` in UTF-16, one wide character a unit. Throws boost::system::system_error "boost::
/// filesystem::path codecvt to wstring: ..." for what is no UTF-8. Safe from any thread.
std::wstring toUtf16(const std::string& name);

/// The way back. Throws the same error with "to string" for what is no UTF-16.
std::string toUtf8(const std::wstring& name);

}  // namespace names
