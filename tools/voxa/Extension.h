// The extensions by which commands choose a format.
#pragma once

#include <string>

namespace voxa {

/// The extension of a UTF-8 file name in lower case, with its point: ".srt" of "take1.SRT". Empty
/// for none.
std::string extensionOf(const std::string& file);

}  // namespace voxa
