#include "ZRKMetaData/src/ZRKMStreamWindow.h"

#include <algorithm>

namespace ZRKMetaData {

namespace {

// In bytes. Enough for the headers of one structure. After a long jump no more is read ahead.
constexpr int64 kStructureSize = 64;

}  // namespace

StreamWindow::StreamWindow(std::istream& stream, int64 position, std::size_t capacity)
    : m_maskGuard(stream),
      m_stream(stream),
      m_buffer(capacity != 0 ? new char[capacity] : nullptr),
      m_capacity(capacity),
      m_next(m_buffer.get()),
      m_end(m_buffer.get()),
      m_streamPosition(position),
      m_mustSeek(true),
      m_state(stream.rdstate()) {}

StreamWindow::StreamWindow(std::istream& stream) : StreamWindow(stream, 0, 0) {
  m_mustSeek = false;
}

StreamWindow::~StreamWindow() {
  if (!good()) {
    m_stream.clear(m_state);
  } else if (m_next != m_end || m_mustSeek || !m_stream.good()) {
    m_stream.clear();
    m_stream.seekg(position());
  }
}

void StreamWindow::seek(int64 position) {
  const int64 windowStart = m_streamPosition - (m_end - m_buffer.get());
  if (position >= windowStart && position <= m_streamPosition) {
    m_next = m_end - (m_streamPosition - position);
    return;
  }
  if (m_end != m_buffer.get()) {
    m_keptStart = windowStart;
    m_keptEnd = m_streamPosition;
  }
  // The buffer may begin inside a structure. A return to the start of that structure is no long
  // jump.
  const bool isNearKept =
      m_keptStart != m_keptEnd && position >= m_keptStart - kStructureSize && position <= m_keptEnd;
  m_isFar = !isNearKept && (position < windowStart ||
                            position - m_streamPosition > static_cast<int64>(m_capacity));
  m_next = m_end = m_buffer.get();
  m_streamPosition = position;
  if (isNearKept && position >= m_keptStart) {
    m_next += position - m_keptStart;
    m_end += m_keptEnd - m_keptStart;
    m_streamPosition = m_keptEnd;
  }
  m_mustSeek = true;
}

uint64 StreamWindow::bytesLeft() {
  const auto ahead = static_cast<uint64>(m_end - m_next);
  const bool hasEnded = !m_mustSeek && !m_stream.good();  // read-ahead has met the end
  if (hasEnded || !seekStream()) return ahead;
  const std::streamoff here = m_stream.tellg();
  const std::streamoff end = m_stream.seekg(0, std::ios::end).tellg();
  m_stream.clear();
  if (here >= 0) m_stream.seekg(here);
  return end > here ? ahead + static_cast<uint64>(end - here) : ahead;
}

std::size_t StreamWindow::readPastWindow(void* destination, std::size_t count) {
  if (!good()) {
    m_state |= std::ios::failbit;
    return 0;
  }
  auto* const out = static_cast<char*>(destination);
  std::size_t done = 0;
  while (done < count && good()) {
    if (m_next == m_end) fill(count - done);
    const auto ready = std::min(count - done, static_cast<std::size_t>(m_end - m_next));
    if (ready != 0) {
      std::copy_n(m_next, ready, out + done);
      m_next += ready;
      done += ready;
    } else if (good()) {
      done += readStream(out + done, count - done);
    }
  }
  return done;
}

void StreamWindow::peekPastWindow() {
  if (!good()) {
    m_state |= std::ios::failbit;
    return;
  }
  fill(1);
  if (m_next != m_end || !good()) return;
  if (seekStream()) m_stream.peek();
  m_state |= m_stream.rdstate() & (std::ios::eofbit | std::ios::badbit);
}

bool StreamWindow::seekStream() {
  if (m_mustSeek) {
    m_stream.clear();
    m_stream.seekg(m_streamPosition);
    m_mustSeek = false;
    if (!m_stream.good()) m_state |= std::ios::failbit;
  }
  return m_stream.good();
}

// Reads into the caller's memory. Requires: the window is empty.
std::size_t StreamWindow::readStream(char* destination, std::size_t count) {
  if (!seekStream() && !m_stream.eof()) {
    m_state |= std::ios::failbit;
    return 0;
  }
  m_stream.read(destination, static_cast<std::streamsize>(count));
  const auto got = m_stream.gcount();
  m_next = m_end = m_buffer.get();  // the buffer no longer ends at m_streamPosition
  m_streamPosition += got;
  m_state |= m_stream.rdstate();
  return static_cast<std::size_t>(got);
}

// Refills the empty window, up to the limit, unless the caller wants as much as the window holds.
// Meeting the end of the file while reading ahead does not change the window's indicators.
void StreamWindow::fill(std::size_t count) {
  const int64 room = m_limit > m_streamPosition ? m_limit - m_streamPosition : 0;
  const bool hasJumped = m_mustSeek && m_isFar;
  const auto capacity = static_cast<int64>(m_capacity);
  const int64 maxCount = hasJumped ? std::min(capacity, kStructureSize) : capacity;
  const auto want = static_cast<std::size_t>(std::min(room, maxCount));
  if (count > want || count == m_capacity || !seekStream()) return;
  m_keptStart = m_keptEnd = 0;
  m_stream.read(m_buffer.get(), static_cast<std::streamsize>(want));
  const auto got = m_stream.gcount();
  m_next = m_buffer.get();
  m_end = m_next + got;
  m_streamPosition += got;
  if (m_stream.bad()) {
    // The device failed in a large read. Smaller reads may still deliver the bytes in front of the
    // failure, so return to where this read began and stop reading ahead.
    m_streamPosition -= got;
    m_end = m_next;
    m_mustSeek = true;
    m_capacity = 0;
  }
}

}  // namespace ZRKMetaData
