// The names of keys in pictures and captions.
#pragma once

#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace formats {

/// The character of a key as UTF-8, or the symbol that stands on the keys for Backspace, Delete,
/// Tab, Enter and Esc; U+2423 for the space. Empty for codes without a printable character: other
/// controls, surrogates, private use, bidirectional controls, and what is no code point. May be
/// called from any thread.
std::string keySymbol(ZRKMetaData::int32 character);

}  // namespace formats
