// Documents typed byte by byte in hexadecimal.
#pragma once

#include <string>

namespace testing_support {

/// The bytes that `text` spells: pairs of digits, with white space between them and remarks behind
/// "#". Fails the test for anything else.
std::string bytesFromHex(const std::string& text);

/// The bytes that tests/data/`name` spells. Fails the test when there are none.
std::string hexDocument(const std::string& name);

/// The text of tests/data/`name` as it stands.
std::string dataFile(const std::string& name);

}  // namespace testing_support
