// The SHA-256 digest of some bytes, by the platform's own library.
#pragma once

#include <cstddef>
#include <string>

namespace voxa {

/// 64 lower-case hexadecimal digits. Throws Failure when the library cannot.
std::string sha256(const unsigned char* bytes, std::size_t count);

}  // namespace voxa
