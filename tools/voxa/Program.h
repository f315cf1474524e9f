// The program, from its arguments to its exit status.
#pragma once

#include <string>
#include <vector>

namespace voxa {

/// Runs one command. `arguments` are UTF-8 and do not begin with the program's name. Errors are one
/// line on standard error. Returns the exit status (Failure.h).
int run(std::vector<std::string> arguments);

}  // namespace voxa
