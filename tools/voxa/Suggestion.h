// Suggestions for mistyped words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace voxa {

/// Returns "; did you mean 'streams'?" for the closest of `names`, or an empty string when none is
/// close. A name is close when it begins with `typed`, or when the edits between the two (a
/// character inserted, deleted or replaced, or two neighbours exchanged) are at most a third of its
/// length.
std::string suggestion(std::string_view typed, const std::vector<std::string>& names);

}  // namespace voxa
