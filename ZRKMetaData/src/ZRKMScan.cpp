#include "ZRKMetaData/src/ZRKMScan.h"

#include <cstring>
#include <iostream>
#include <set>
#include <string>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMExceptionMaskGuard.h"
#include "ZRKMetaData/src/ZRKMParserUtil.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

namespace {

// In bytes. The first read fetches the headers at the start of a usual file. While structures are
// small, reads grow until a run of them costs few system calls.
constexpr std::size_t kFirstReadAhead = 1024;
constexpr std::size_t kMaxReadAhead = 65536;

constexpr uint32 kContainerAtom = 0x5A524B4D;  // "ZRKM"
constexpr uint32 kEntryAtom = 0x44415441;      // "DATA"
constexpr uint32 kChunkHeaderSize = 8;

// How a scan goes on after one structure inside a container.
enum class Next { Entry, EndOfContainer, EndOfScan };

// Clears the index, seeks to byte 0 and returns the size of the stream in bytes, or -1 if the
// stream does not report its position.
int64 beginScan(std::istream& stream, MetaDataLocations& locations) {
  locations.clear();
  const auto noted = stream.tellg();
  stream.seekg(0, std::ios::end);
  const std::streamoff fileSize = stream.tellg();
  stream.seekg(noted);
  stream.seekg(0);
  return fileSize;
}

// Wraps on overflow: an announced size may lead to any position, also backward.
int64 wrappingSum(int64 position, uint64 size) {
  return static_cast<int64>(static_cast<uint64>(position) + size);
}

// Collects messages for standard error, one per line, and writes them in blocks: a file may hold a
// million entries that need one, and standard error is not buffered.
class Messages {
 public:
  Messages() = default;
  ~Messages() { write(); }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  void add(const char* message) {
    constexpr std::size_t kBlockByteCount = 4096;
    m_text += message;
    if (m_text.size() >= kBlockByteCount) write();
  }

 private:
  void write() noexcept {
    if (m_text.empty()) return;
    try {
      std::cerr.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
    } catch (...) {  // the host may have given std::cerr an exception mask
    }
    m_text.clear();
  }

  std::string m_text;
};

// The position of a scan, which moves from structure to structure, and the bound on scans that jump
// backward.
class ScanPosition {
 public:
  ScanPosition(std::istream& stream, int64 fileSize, uint64 maxAfterBackwardJump)
      : window(stream, 0, kFirstReadAhead, kMaxReadAhead),
        m_fileSize(fileSize),
        m_maxAfterBackwardJump(maxAfterBackwardJump) {}

  int64 position() const { return window.position(); }
  bool atEnd() const { return window.eof() || position() >= m_fileSize; }
  uint64 fileSize() const { return static_cast<uint64>(m_fileSize); }

  /// Must be called for each structure before it is read. Returns false when the scan must end.
  bool mayExamine() {
    if (m_ledBackward.empty()) return true;
    return ++m_examinedAfterBackwardJump <= m_maxAfterBackwardJump &&
           m_ledBackward.count(position()) == 0;
  }

  /// Moves from the structure at `start` to `next`. Returns false when the scan must end.
  bool moveTo(int64 start, int64 next) {
    if (next < 0) {
      window.seek(next);  // sets failbit when the window is destroyed
      return false;
    }
    if (next < start) m_ledBackward.insert(start);
    window.seek(next);
    return true;
  }

  bool hasRoomForHeader() const {
    return m_fileSize >= MetaDataHeader::kByteCount &&
           position() <= m_fileSize - MetaDataHeader::kByteCount;
  }

  StreamWindow window;
  Messages messages;

 private:
  const int64 m_fileSize;
  const uint64 m_maxAfterBackwardJump;
  uint64 m_examinedAfterBackwardJump = 0;
  std::set<int64> m_ledBackward;  // the structures whose sizes led backward, by position
};

Next scanEntryAtom(ScanPosition& at, int64 containerEnd, MetaDataLocations& locations) {
  if (at.atEnd() || at.position() >= containerEnd) return Next::EndOfContainer;
  const int64 start = at.position();
  if (!at.mayExamine()) return Next::EndOfScan;

  uint64 size = 0;
  uint32 type = 0;
  if (!readAtomHeader(at.window, at.fileSize(), &size, &type)) {
    return at.window.good() ? Next::EndOfContainer : Next::EndOfScan;
  }
  if (size == 0) return Next::EndOfContainer;

  if (type != kEntryAtom) {
    at.messages.add("Found a non DATA atom mixed in the ZRK meta data\n");
  } else {
    if (!at.hasRoomForHeader()) return Next::EndOfContainer;
    const int64 offset = at.position();
    const MetaDataHeader header = readHeader(at.window);
    if (!at.window.good()) return Next::EndOfScan;
    if (size <= 16) reportAssertion("dataAtomSize > 16", "ZRKMMetaDataParser", 87);
    // The format subtracts 16 even where the header of the atom has only 8 bytes.
    locations[header.uuid] = {offset, static_cast<int64>(size - 16)};
  }
  return at.moveTo(start, wrappingSum(start, size)) ? Next::Entry : Next::EndOfScan;
}

Next scanEntryChunk(ScanPosition& at, int64 containerEnd, MetaDataLocations& locations) {
  if (at.atEnd() || at.position() >= containerEnd) return Next::EndOfContainer;
  const int64 start = at.position();
  if (!at.mayExamine()) return Next::EndOfScan;

  char type[4];
  uint32 size = 0;
  if (!readChunkHeader(at.window, at.fileSize(), type, &size)) {
    return at.window.good() ? Next::EndOfContainer : Next::EndOfScan;
  }
  if (size == 0) return Next::EndOfScan;  // unlike an entry atom, which ends only its container

  const int64 payload = start + kChunkHeaderSize;
  if (std::memcmp(type, "DATA", sizeof type) != 0) {
    at.messages.add("Found a non DATA chunk mixed in the ZRK meta data\n");
  } else {
    if (!at.hasRoomForHeader()) return Next::EndOfContainer;
    const MetaDataHeader header = readHeader(at.window);
    if (!at.window.good()) return Next::EndOfScan;
    locations[header.uuid] = {payload, size};
  }
  return at.moveTo(start, payload + size + size % 2) ? Next::Entry : Next::EndOfScan;
}

// Scans the entries of one container. Returns false when the scan must end.
template <class ScanEntry>
bool scanContainer(ScanPosition& at, int64 end, MetaDataLocations& locations, ScanEntry scanEntry) {
  Next next = Next::Entry;
  while (next == Next::Entry) next = scanEntry(at, end, locations);
  return next == Next::EndOfContainer;
}

void walkAtoms(ScanPosition& at, MetaDataLocations& locations) {
  while (!at.atEnd()) {
    const int64 start = at.position();
    if (!at.mayExamine()) return;
    uint64 size = 0;
    uint32 type = 0;
    if (!readAtomHeader(at.window, at.fileSize(), &size, &type) || size == 0) return;
    const int64 end = wrappingSum(start, size);
    if (type == kContainerAtom && !scanContainer(at, end, locations, scanEntryAtom)) return;
    if (!at.moveTo(start, end)) return;
  }
}

void walkChunks(ScanPosition& at, MetaDataLocations& locations) {
  while (!at.atEnd()) {
    const int64 start = at.position();
    if (!at.mayExamine()) return;
    char type[4];
    uint32 size = 0;
    if (!readChunkHeader(at.window, at.fileSize(), type, &size) || size == 0) return;
    const int64 end = start + kChunkHeaderSize + size;
    const bool isContainer = std::memcmp(type, "ZRKM", sizeof type) == 0;
    if (isContainer && !scanContainer(at, end, locations, scanEntryChunk)) return;
    if (!at.moveTo(start, end + size % 2)) return;
  }
}

using Walk = void (*)(ScanPosition& at, MetaDataLocations& locations);

void scan(std::istream& stream, MetaDataLocations& locations, uint64 maxAfterBackwardJump,
          Walk walk) {
  const ExceptionMaskGuard maskGuard(stream);
  ScanPosition at(stream, beginScan(stream, locations), maxAfterBackwardJump);
  walk(at, locations);
}

}  // namespace

void scanAtoms(std::istream& stream, MetaDataLocations& locations, uint64 maxAfterBackwardJump) {
  scan(stream, locations, maxAfterBackwardJump, walkAtoms);
}

void scanChunks(std::istream& stream, MetaDataLocations& locations) {
  // A chunk never leads backward: its size is unsigned and counts from the end of its header.
  scan(stream, locations, kMaxStructuresAfterBackwardJump, walkChunks);
}

void scanRaw(std::istream& stream, MetaDataLocations& locations) {
  const ExceptionMaskGuard maskGuard(stream);
  const int64 fileSize = beginScan(stream, locations);
  StreamWindow window(stream, 0, 0);
  const MetaDataHeader header = readHeader(window);
  locations[header.uuid] = {0, fileSize};
}

}  // namespace ZRKMetaData
