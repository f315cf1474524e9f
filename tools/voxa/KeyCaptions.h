// Functions that the commands which show keystrokes as text share.
#pragma once

#include <cstdint>
#include <string>

#include "tools/formats/KeyCues.h"
#include "tools/voxa/Commands.h"

namespace voxa {

/// Reads the labels of `options`. Throws Failure: CannotOpen for a file that cannot be read, Failed
/// for one that holds no labels.
formats::KeyCueOptions keyCueOptions(const KeyTextOptions& options);

/// Says on standard error how many records were left out for their time, if any.
void sayLeftOut(const std::string& file, const std::string& stream, std::uint64_t leftOutCount,
                std::uint64_t count);

}  // namespace voxa
