// The folder that a command writes several files to.
#pragma once

#include <string>

namespace voxa {

/// Throws Failure (WrongUse) for "-", which is standard output: `writer`, a command or an option,
/// writes several files.
void requireFolderName(const std::string& folder, const std::string& writer);

/// Creates the folder with this UTF-8 name, or checks that the one that exists is empty; with
/// `force` it may have files. Throws std::runtime_error with the name and what to do, which ends
/// the command and is no Failure of the recording that is read.
void prepareFolder(const std::string& folder, bool force);

}  // namespace voxa
