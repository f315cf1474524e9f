// What a mistyped word was probably meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace voxa {

/// "; did you mean 'streams'?" for the closest of `names`, or empty when none is close: a name that
/// begins with `typed`, or one that up to a third of its characters (inserted, deleted, replaced,
/// or two neighbours exchanged) away.
std::string suggestion(std::string_view typed, const std::vector<std::string>& names);

}  // namespace voxa
