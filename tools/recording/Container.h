// Writes containers of metadata entries: QuickTime-style atoms, RIFF-style chunks, raw files.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <vector>

#include "tools/recording/Bytes.h"

namespace recording {

/// One stream: the fields of its 24-byte header, and its records as bytes.
struct Entry {
  boost::uuids::uuid id{};
  Bytes records;
  std::int32_t version = 1;
  std::uint32_t reserved = 0;
};

/// The identifier of the format's family that has `key` as its fourth byte.
boost::uuids::uuid streamId(unsigned char key);

Bytes entryBytes(const Entry& entry);

/// The header of an atom with a payload of `payloadSize` bytes. Its size has 32 bits where that
/// suffices, else 64.
Bytes atomHeader(const char* type, std::uint64_t payloadSize);

/// An atom. Its size has 32 bits where that suffices; the size of a wide atom always has 64 bits.
/// `type` has four characters.
Bytes atom(const char* type, const Bytes& payload);
Bytes wideAtom(const char* type, const Bytes& payload);

/// A chunk, with a pad byte where its payload is odd. `type` has four characters.
Bytes chunk(const char* type, const Bytes& payload);

/// The metadata block: one "ZRKM" container of "DATA" entries.
Bytes atomBlock(const std::vector<Entry>& entries);
Bytes chunkBlock(const std::vector<Entry>& entries);

}  // namespace recording
