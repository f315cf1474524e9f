// Reads a std::istream through a window of read-ahead and keeps the position itself, so that small
// reads and short skips cost neither a system call nor a question to the stream.
//
// A read obeys the law of std::istream::read: what is there is delivered, the rest of the
// destination keeps its content, and coming up short sets the end-of-file and failure indicators.
// The indicators and the position are the window's own; they are those that plain reading of the
// same bytes would give, however far ahead the window has read. The destructor sets both on the
// stream.
//
// A window belongs to one thread. While it lives nobody else uses the stream, and the stream's
// exception mask is set aside (ZRKMExceptionMaskGuard.h).
#pragma once

#include <algorithm>
#include <cstddef>
#include <istream>
#include <limits>
#include <memory>
#include <utility>

#include "ZRKMetaData/src/ZRKMExceptionMaskGuard.h"
#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace ZRKMetaData {

class StreamWindow {
 public:
  /// Reads `stream` from byte `position` on, up to `capacity` bytes ahead. With capacity 0 every
  /// read goes to the stream as it is. The stream must outlive the window.
  StreamWindow(std::istream& stream, int64 position, std::size_t capacity);

  /// Reads `stream` from where it stands, nothing ahead; positions count from there.
  explicit StreamWindow(std::istream& stream);

  /// Leaves the stream at the window's position, with the window's indicators.
  ~StreamWindow();

  StreamWindow(const StreamWindow&) = delete;
  StreamWindow& operator=(const StreamWindow&) = delete;

  /// The byte that the next read delivers first.
  int64 position() const { return m_streamPosition - (m_end - m_next); }

  bool good() const { return m_state == std::ios::goodbit; }
  bool eof() const { return (m_state & std::ios::eofbit) != 0; }
  bool bad() const { return (m_state & std::ios::badbit) != 0; }

  /// Read-ahead stops at byte `limit`; a read that asks for bytes beyond it fetches just those.
  void limitReadAhead(int64 limit) { m_limit = limit; }

  /// Delivers up to `count` bytes and returns how many.
  std::size_t read(void* destination, std::size_t count) {
    if (count > static_cast<std::size_t>(m_end - m_next)) return readPastWindow(destination, count);
    std::copy_n(m_next, count, static_cast<char*>(destination));
    m_next += count;
    return count;
  }

  /// The next `count` bytes where they stand in the window, or null when they are not all there.
  /// Good until the next operation.
  const char* take(std::size_t count) {
    if (count > static_cast<std::size_t>(m_end - m_next)) return nullptr;
    return std::exchange(m_next, m_next + count);
  }

  /// Makes `position` the next byte to read. Inside the window this only moves a pointer; outside,
  /// the stream is sought when the next read needs it, and a failure shows there. Who seeks back
  /// before such a read finds the window as it was.
  void seek(int64 position);

  /// Sets the end-of-file indicator when no byte follows. Consumes nothing.
  void peek() {
    if (m_next == m_end) peekPastWindow();
  }

  /// Bytes from the position to the end of the stream, none when that cannot be told.
  uint64 bytesLeft();

 private:
  std::size_t readPastWindow(void* destination, std::size_t count);
  void peekPastWindow();
  bool moveStream();
  std::size_t readStream(char* destination, std::size_t count);
  void fill(std::size_t count);

  const ExceptionMaskGuard m_maskGuard;
  std::istream& m_stream;
  const std::unique_ptr<char[]> m_buffer;
  std::size_t m_capacity;
  const char* m_next;  // [m_next, m_end) is read ahead; m_end stands at m_streamPosition
  const char* m_end;
  int64 m_streamPosition;
  int64 m_keptStart = 0;  // [m_keptStart, m_keptEnd) is in the buffer though the window was left
  int64 m_keptEnd = 0;
  bool m_isFar = false;  // from what was read before, so that little of what is here may be wanted
  bool m_mustMove;       // the stream does not stand at m_streamPosition yet
  int64 m_limit = std::numeric_limits<int64>::max();
  std::ios::iostate m_state;
};

}  // namespace ZRKMetaData
