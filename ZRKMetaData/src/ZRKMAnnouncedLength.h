// Lengths that a file announces for what follows, which may be lies. A value cut short by the end
// of the file is still delivered at its announced length, zero where nothing was read, but a host
// must not lose gigabytes to four bytes of a damaged file.
#pragma once

#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

/// By how much an announced length may exceed what is there: 64 MiB.
constexpr uint64 kMaxMissingBytes = 64U << 20U;

/// Throws std::length_error, naming both numbers, when `count` announced bytes exceed what the
/// stream still has by more than 64 MiB. Call it before allocating memory for them.
void checkAnnounced(StreamWindow& in, uint64 count);

/// Appends `count` announced bytes to `text`; those that the stream does not have are zero. Checks
/// as `checkAnnounced` does and leaves `text` as it was when that throws.
void appendAnnounced(StreamWindow& in, uint64 count, std::string& text);

}  // namespace ZRKMetaData
