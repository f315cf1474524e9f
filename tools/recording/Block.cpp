#include "tools/recording/Block.h"

#include <limits>
#include <stdexcept>

#include "tools/recording/Container.h"

namespace recording {

namespace {

constexpr std::uint64_t kMaxChunkBytes = std::numeric_limits<std::uint32_t>::max();

// The bytes around a payload of some size.
struct Frame {
  Bytes header;
  Bytes pad;
};

Frame frameOf(Layout layout, const char* type, std::uint64_t payload) {
  if (layout == Layout::Atoms) return {atomHeader(type, payload), {}};
  return {Bytes(type, 4) + littleEndian(static_cast<std::uint32_t>(payload)),
          Bytes(payload % 2, '\0')};
}

std::uint64_t framedSize(Layout layout, std::uint64_t payload) {
  const Frame frame = frameOf(layout, "DATA", payload);
  return frame.header.size() + payload + frame.pad.size();
}

}  // namespace

void requireFits(Layout layout, const std::vector<StreamedEntry>& entries) {
  if (layout == Layout::Atoms) return;
  std::uint64_t size = 0;
  for (const StreamedEntry& entry : entries) {
    // Every sum stays below 2^63 + 2^32, because no entry is larger than a file.
    size += framedSize(layout, entry.size);
    if (entry.size > kMaxChunkBytes || size > kMaxChunkBytes) {
      throw std::runtime_error("stream " + entry.name + ": with its " + std::to_string(entry.size) +
                               " bytes the block exceeds the 4294967295 bytes that a RIFF chunk "
                               "holds; use a container of atoms");
    }
  }
}

void writeBlock(Layout layout, const std::vector<StreamedEntry>& entries, const Write& write) {
  requireFits(layout, entries);
  std::uint64_t size = 0;
  for (const StreamedEntry& entry : entries) size += framedSize(layout, entry.size);
  write(frameOf(layout, "ZRKM", size).header);  // the size is even in chunks
  for (const StreamedEntry& entry : entries) {
    const Frame frame = frameOf(layout, "DATA", entry.size);
    write(frame.header);
    std::uint64_t written = 0;
    entry.write([&](std::string_view bytes) {
      written += bytes.size();
      write(bytes);
    });
    if (written != entry.size) {
      throw std::runtime_error("stream " + entry.name + ": changed while it was read");
    }
    write(frame.pad);
  }
}

}  // namespace recording
