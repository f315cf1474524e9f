// Reads values whose length the file announces. A value that the end of the file cuts short is
// still delivered at its announced length, with zeros in place of the missing bytes. The number of
// missing bytes is bounded, because four bytes of a damaged file can announce gigabytes.
#pragma once

#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

/// The most bytes that may be missing of an announced length: 64 MiB.
constexpr uint64 kMaxMissingBytes = 64U << 20U;

/// Throws std::length_error, naming both numbers, when `count` announced bytes exceed what the
/// stream still has by more than 64 MiB. Call it before allocating memory for them.
void checkAnnounced(StreamWindow& in, uint64 count);

/// Appends `count` announced bytes to `text`; bytes that the stream does not have are zero. Throws
/// as `checkAnnounced` does and then leaves `text` unchanged.
void appendAnnounced(StreamWindow& in, uint64 count, std::string& text);

}  // namespace ZRKMetaData
