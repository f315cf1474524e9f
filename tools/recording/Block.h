// Writes a metadata block whose entries are not held in memory.
//
// Container.h builds a block of entries that are. The bytes are the same.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/recording/Append.h"

namespace recording {

/// An entry that is written in pieces.
struct StreamedEntry {
  std::string name;                         ///< for messages
  std::uint64_t size = 0;                   ///< in bytes: the header of 24 bytes and the records
  std::function<void(const Write&)> write;  ///< passes exactly `size` bytes on
};

/// Throws std::runtime_error when a block of `layout` cannot hold the entries: the size of a chunk
/// has 32 bits. Writes nothing.
void requireFits(Layout layout, const std::vector<StreamedEntry>& entries);

/// Writes the block, one entry after the other. Throws as `requireFits` does, before anything is
/// written, and std::runtime_error when an entry passes on another number of bytes than its size.
/// Other exceptions of `write` and of the entries pass through.
void writeBlock(Layout layout, const std::vector<StreamedEntry>& entries, const Write& write);

}  // namespace recording
