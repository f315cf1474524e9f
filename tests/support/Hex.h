// Documents typed byte by byte in hexadecimal.
#pragma once

#include <string>

namespace testing_support {

/// The bytes of tests/data/`name`: pairs of digits, with white space between them and remarks
/// behind "#". Fails the test when the file is missing, empty or holds anything else.
std::string hexDocument(const std::string& name);

/// The text of tests/data/`name` as it stands.
std::string dataFile(const std::string& name);

}  // namespace testing_support
