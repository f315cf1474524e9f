// What messages say of a guessed record type.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/series/Guess.h"
#include "tools/series/RecordTypes.h"

namespace voxa {

/// For a stream whose guess is certain.
std::string guessedText(const std::string& stream, series::RecordType type);

/// For streams, by their names, whose guess is not certain: the likeliest types of each, with what
/// decides on them, and the options that name one. Requires: there are some.
std::string doubtText(const std::vector<std::pair<std::string, series::Guess>>& streams);

}  // namespace voxa
