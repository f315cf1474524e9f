#include "ZRKMetaData/src/ZRKMStreamWindow.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace ZRKMetaData {

namespace {

// In bytes. Enough for the headers of one structure. After a long jump no more is read ahead. As
// much is kept in front of the bytes that follow, for a step back to inside the structure before.
constexpr std::size_t kStructureSize = 64;

// In bytes. Reading so much costs less than a call of the system.
constexpr int64 kShortStep = 1024;

}  // namespace

StreamWindow::StreamWindow(std::istream& stream, int64 position, std::size_t readAhead,
                           std::size_t capacity)
    : m_maskGuard(stream),
      m_stream(stream),
      m_buffer(capacity != 0 ? new char[kStructureSize + capacity] : nullptr),
      m_capacity(capacity),
      m_readAhead(readAhead),
      m_next(m_buffer.get()),
      m_end(m_buffer.get()),
      m_streamPosition(position),
      m_stepStart(position),
      m_stepEnd(position),
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
  if (this->position() != m_stepEnd) {
    endStep();
    m_stepStart = this->position();
  }
  m_stepEnd = position;
  m_isLongJump = position < m_stepStart - kShortStep || position - m_stepStart > kShortStep;

  const int64 windowStart = m_streamPosition - (m_end - m_buffer.get());
  if (position >= windowStart && position <= m_streamPosition) {
    m_next = m_end - (m_streamPosition - position);
    return;
  }
  if (m_end != m_buffer.get()) {
    m_keptStart = windowStart;
    m_keptEnd = m_streamPosition;
  }
  m_next = m_end = m_buffer.get();
  m_streamPosition = position;
  if (m_keptStart != m_keptEnd && position >= m_keptStart && position <= m_keptEnd) {
    m_next += position - m_keptStart;
    m_end += m_keptEnd - m_keptStart;
    m_streamPosition = m_keptEnd;
  } else if (position < m_stepStart) {
    m_isLongJump = true;
  }
  m_mustSeek = true;
}

// Called when the bytes are needed to which the last seeks led. Seeks without a read between them
// are one step: a scan that skips to the end of an entry and returns to that of its block has not
// jumped.
void StreamWindow::endStep() {
  if (m_isLongJump) m_readAhead = std::min(kStructureSize, m_capacity);
  m_isLongJump = false;
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
  endStep();
  const int64 room = m_limit > m_streamPosition ? m_limit - m_streamPosition : 0;
  const auto want =
      static_cast<std::size_t>(std::min<uint64>(static_cast<uint64>(room), m_readAhead));
  if (count > want || count == m_capacity || !seekStream()) return;
  m_keptStart = m_keptEnd = 0;
  const auto before = std::min<std::ptrdiff_t>(m_end - m_buffer.get(), kStructureSize);
  std::memmove(m_buffer.get(), m_end - before, static_cast<std::size_t>(before));
  m_next = m_end = m_buffer.get() + before;
  m_stream.read(m_end, static_cast<std::streamsize>(want));
  const auto got = m_stream.gcount();
  m_end += got;
  m_streamPosition += got;
  m_readAhead = std::min(2 * m_readAhead, m_capacity);
  if (m_stream.bad()) {
    // The device failed in a large read. Smaller reads may still deliver the bytes in front of the
    // failure, so return to where this read began and stop reading ahead.
    m_streamPosition -= got;
    m_end -= got;
    m_mustSeek = true;
    m_capacity = m_readAhead = 0;
  }
}

}  // namespace ZRKMetaData
