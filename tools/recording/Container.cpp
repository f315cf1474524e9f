#include "tools/recording/Container.h"

#include <limits>

namespace recording {

namespace {

constexpr std::uint64_t kAtomHeaderSize = 8;
constexpr std::uint64_t kWideAtomHeaderSize = 16;
constexpr std::uint32_t kSizeFollowsType = 1;

Bytes wideAtomHeader(const char* type, std::uint64_t payloadSize) {
  return bigEndian(kSizeFollowsType) + Bytes(type, 4) +
         bigEndian(kWideAtomHeaderSize + payloadSize);
}

template <class Wrap>
Bytes container(const std::vector<Entry>& entries, Wrap wrap) {
  Bytes payload;
  for (const Entry& entry : entries) payload += wrap("DATA", entryBytes(entry));
  return wrap("ZRKM", payload);
}

}  // namespace

boost::uuids::uuid streamId(unsigned char key) {
  return {{0x2B, 0x7B, 0x6A, key, 0x7A, 0x1F, 0x11, 0xE2, 0x83, 0xD0, 0x00, 0x17, 0xF2, 0x00, 0xBE,
           0x7F}};
}

Bytes entryBytes(const Entry& entry) {
  return Bytes(entry.id.begin(), entry.id.end()) + littleEndian(entry.version) +
         littleEndian(entry.reserved) + entry.records;
}

Bytes atomHeader(const char* type, std::uint64_t payloadSize) {
  const std::uint64_t size = kAtomHeaderSize + payloadSize;
  if (size > std::numeric_limits<std::uint32_t>::max()) return wideAtomHeader(type, payloadSize);
  return bigEndian(static_cast<std::uint32_t>(size)) + Bytes(type, 4);
}

Bytes atom(const char* type, const Bytes& payload) {
  return atomHeader(type, payload.size()) + payload;
}

Bytes wideAtom(const char* type, const Bytes& payload) {
  return wideAtomHeader(type, payload.size()) + payload;
}

Bytes chunk(const char* type, const Bytes& payload) {
  return Bytes(type, 4) + littleEndian(static_cast<std::uint32_t>(payload.size())) + payload +
         Bytes(payload.size() % 2, '\0');
}

Bytes atomBlock(const std::vector<Entry>& entries) {
  return container(entries, atom);
}

Bytes chunkBlock(const std::vector<Entry>& entries) {
  return container(entries, chunk);
}

}  // namespace recording
