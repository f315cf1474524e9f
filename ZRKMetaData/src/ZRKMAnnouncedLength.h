// Lengths that a file announces for what follows, which may be lies. A value cut short by the end
// of the file is still delivered at its announced length, zero where nothing was read, but a host
// must not lose gigabytes to four bytes of a damaged file.
#pragma once

#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

constexpr uint64 kMostMissingBytes = 64U << 20U;

/// Throws std::length_error, naming both numbers, when `count` announced bytes are over 64 MiB more
/// than the stream still has. To be called before memory is taken for them.
void checkAnnounced(StreamWindow& in, uint64 count);

/// Appends `count` announced bytes to `text`; those that the stream does not have are zero. Checks
/// as `checkAnnounced` does and leaves `text` as it was when that throws.
void appendAnnounced(StreamWindow& in, uint64 count, std::string& text);

}  // namespace ZRKMetaData
