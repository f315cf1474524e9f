// Base64 (RFC 4648, section 4, with padding). May be called from any thread.
#pragma once

#include <string>
#include <string_view>

namespace text {

std::string base64(std::string_view bytes);

}  // namespace text
