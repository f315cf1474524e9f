// Reads a std::istream through a read-ahead buffer and tracks the position itself, so that small
// reads and short skips need no system call and no call of the stream.
//
// A read behaves like std::istream::read: it delivers the bytes that exist, leaves the rest of the
// destination unchanged, and sets the end-of-file and failure indicators when it comes up short.
// The window has its own indicators and position. They are those of reading the same bytes without
// read-ahead. The destructor sets both on the stream.
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
  /// Reads `stream` from byte `position` on, up to `capacity` bytes ahead. With capacity 0 nothing
  /// is read ahead. The stream must outlive the window.
  StreamWindow(std::istream& stream, int64 position, std::size_t capacity)
      : StreamWindow(stream, position, capacity, capacity) {}

  /// Reads `readAhead` bytes ahead at first, and twice as many after each read that follows the one
  /// before, up to `capacity`. A long jump takes the read-ahead back to the size of one structure.
  StreamWindow(std::istream& stream, int64 position, std::size_t readAhead, std::size_t capacity);

  /// Reads `stream` from its current position, without read-ahead. Positions count from there.
  explicit StreamWindow(std::istream& stream);

  /// Sets the stream to the window's position and indicators.
  ~StreamWindow();

  StreamWindow(const StreamWindow&) = delete;
  StreamWindow& operator=(const StreamWindow&) = delete;

  /// The position in bytes of the next read.
  int64 position() const { return m_streamPosition - (m_end - m_next); }

  bool good() const { return m_state == std::ios::goodbit; }
  bool eof() const { return (m_state & std::ios::eofbit) != 0; }
  bool bad() const { return (m_state & std::ios::badbit) != 0; }

  /// Ends read-ahead at byte `limit`. A read beyond it fetches only the bytes asked for.
  void limitReadAhead(int64 limit) { m_limit = limit; }

  /// Reads up to `count` bytes and returns how many it read.
  std::size_t read(void* destination, std::size_t count) {
    if (count > ahead()) return readPastWindow(destination, count);
    std::copy_n(m_next, count, static_cast<char*>(destination));
    m_next += count;
    return count;
  }

  /// Consumes the next `count` bytes and returns a pointer to them in the buffer, or returns null
  /// and consumes nothing when they are not all there. The next operation invalidates the pointer.
  const char* take(std::size_t count) {
    if (count > ahead()) return nullptr;
    return std::exchange(m_next, m_next + count);
  }

  /// The bytes that are read ahead start at `next()`; there are `ahead()` of them. `consumeTo`
  /// makes the read position that of one of them, or their end. Other operations invalidate the
  /// pointers.
  const char* next() const { return m_next; }
  std::size_t ahead() const { return static_cast<std::size_t>(m_end - m_next); }
  void consumeTo(const char* next) { m_next = next; }

  /// Makes `position` the position of the next read. Inside the buffer this only moves a pointer.
  /// Outside, the next read seeks the stream, and fails if that fails. The buffer keeps its bytes
  /// until then, so seeking back costs nothing.
  void seek(int64 position);

  /// Sets the end-of-file indicator when no byte follows. Consumes nothing.
  void peek() {
    if (m_next == m_end) peekPastWindow();
  }

  /// The bytes from the position to the end of the stream, 0 if the stream does not report them.
  uint64 bytesLeft();

 private:
  std::size_t readPastWindow(void* destination, std::size_t count);
  void peekPastWindow();
  bool seekStream();
  std::size_t readStream(char* destination, std::size_t count);
  void fill(std::size_t count);
  void endStep();

  const ExceptionMaskGuard m_maskGuard;
  std::istream& m_stream;
  const std::unique_ptr<char[]> m_buffer;
  std::size_t m_capacity;
  std::size_t m_readAhead;  // of the next read
  const char* m_next;       // [m_next, m_end) is read ahead; m_end is at m_streamPosition
  char* m_end;
  int64 m_streamPosition;
  int64 m_keptStart = 0;  // [m_keptStart, m_keptEnd) is still in the buffer after a seek
  int64 m_keptEnd = 0;
  int64 m_stepStart;          // where the last read before the last seeks ended
  int64 m_stepEnd;            // where the last seek led
  bool m_isLongJump = false;  // from m_stepStart to m_stepEnd
  bool m_mustSeek;            // the stream is not at m_streamPosition yet
  int64 m_limit = std::numeric_limits<int64>::max();
  std::ios::iostate m_state;
};

}  // namespace ZRKMetaData
