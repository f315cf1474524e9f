// UTF-8 text that may be anything at all.
#pragma once

#include <string>
#include <string_view>

#include "host/Kestova/Export.h"

namespace Kestova {

/// Stands for what is no UTF-8.
constexpr char32_t kReplacementCharacter = U'\uFFFD';

/// Takes the first character off `text`, which must not be empty. Bytes that are no well-formed
/// character (a stray or missing continuation, an overlong form, a surrogate, above U+10FFFF) give
/// the replacement character for each longest run that could have begun one.
KESTOVA_API char32_t takeCharacter(std::string_view& text);

/// `text` as it is where it is UTF-8, with replacement characters where it is not.
KESTOVA_API std::string wellFormedUtf8(std::string_view text);

}  // namespace Kestova
