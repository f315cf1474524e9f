// Tells how many bytes of streams have been read, for displays of progress.
#pragma once

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace series {

/// Receives the number of bytes that the functions of this room have read of recordings on one
/// thread.
class ReadListener {
 public:
  ReadListener() = default;
  ReadListener(const ReadListener&) = delete;
  ReadListener& operator=(const ReadListener&) = delete;

  /// `byteCount` bytes were read since the last call. Called about once per
  /// kReportedBytes and at the end of each reading. Must not throw and must read no stream.
  virtual void onBytesRead(ZRKMetaData::int64 byteCount) noexcept = 0;

 protected:
  ~ReadListener() = default;
};

/// Far apart, so that a record costs one comparison.
constexpr ZRKMetaData::int64 kReportedBytes = 1 << 20;

/// Makes `listener` that of the calling thread, none where it is null, and returns the previous
/// one. It must outlive its use.
ReadListener* setReadListener(ReadListener* listener);

/// Calls the listener of the calling thread.
void reportBytesRead(ZRKMetaData::int64 byteCount);

}  // namespace series
