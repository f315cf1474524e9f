// The services that the parser needs from the operating system. Each platform implements them in a
// file of its own: ZRKMPlatformPosix.cpp, ZRKMPlatformWindows.cpp.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace ZRKMetaData {

/// An open file, which the destructor closes. Has no position, so several threads may read it.
class OpenFile {
 public:
  OpenFile() = default;
  virtual ~OpenFile() = default;
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  /// Opens the file with this UTF-8 name for reading. Returns null for a directory or a pipe,
  /// because a recording must be seekable, for a name without a file, and on Windows for a name
  /// that is not UTF-8. POSIX systems look up the bytes of a name as they are.
  static std::unique_ptr<OpenFile> open(const std::string& name);

  /// Reads up to `count` bytes from byte `position` on, in one call of the system, and returns how
  /// many it read: 0 at and behind the end. Throws std::ios_base::failure when the device fails.
  virtual std::size_t readAt(int64 position, char* destination, std::size_t count) const = 0;

  /// The size in bytes, -1 when the system does not tell.
  virtual int64 size() const = 0;
};

/// The default assertion handler: writes one line to standard error.
void writeAssertionReport(const char* expression, const char* unit, int line);

}  // namespace ZRKMetaData
