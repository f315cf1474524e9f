// Reads the documents of tests/data.
#pragma once

#include <string>

namespace testing_support {

/// The bytes of a hexadecimal `text`: pairs of digits separated by white space; "#" begins a
/// comment. Fails the test for any other text.
std::string bytesFromHex(const std::string& text);

/// The bytes of the hexadecimal document tests/data/`name`. Fails the test if there are none.
std::string hexDocument(const std::string& name);

/// The text of tests/data/`name`.
std::string dataFile(const std::string& name);

}  // namespace testing_support
