// Finds where entry headers may stand in a file, by their bytes. Internal to the search for
// entries.
#pragma once

#include <cstddef>
#include <istream>
#include <vector>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace series::detail {

/// The offsets of entry headers in rising order: of each registered identifier, and behind each
/// header of a "DATA" structure, where a version follows that can be read. Whole media of 64 KiB
/// and more are not searched. Throws std::runtime_error when there are many more than `maxCount`.
std::vector<ZRKMetaData::int64> headerOffsets(std::istream& file, bool isAtoms,
                                              ZRKMetaData::int64 fileSize, std::size_t maxCount);

/// Throws the exception of too many headers.
[[noreturn]] void refuseHeaders(std::size_t maxCount);

}  // namespace series::detail
