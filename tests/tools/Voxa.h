// Runs the program as a user does.
#pragma once

#include <string>
#include <vector>

namespace testing_support {

struct Result {
  int status = -1;
  std::string out;
  std::string error;
};

/// Runs voxa with these UTF-8 arguments and waits for it.
Result voxa(const std::vector<std::string>& arguments);

}  // namespace testing_support
