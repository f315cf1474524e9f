#include "ZRKMetaData/src/ZRKMStreamWindow.h"

#include <algorithm>

namespace ZRKMetaData {

namespace {

// What is read ahead behind a long jump: the headers of one structure, a line of the cache.
constexpr std::size_t kReadAheadAfterJump = 64;

}  // namespace

StreamWindow::StreamWindow(std::istream& stream, int64 position, std::size_t capacity)
    : m_maskGuard(stream),
      m_stream(stream),
      m_buffer(capacity != 0 ? new char[capacity] : nullptr),
      m_capacity(capacity),
      m_next(m_buffer.get()),
      m_end(m_buffer.get()),
      m_streamPosition(position),
      m_mustMove(true),
      m_state(stream.rdstate()) {}

StreamWindow::StreamWindow(std::istream& stream) : StreamWindow(stream, 0, 0) {
  m_mustMove = false;
}

StreamWindow::~StreamWindow() {
  if (!good()) {
    m_stream.clear(m_state);
  } else if (m_next != m_end || m_mustMove || !m_stream.good()) {
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
  m_isFar = position < windowStart || position - m_streamPosition > static_cast<int64>(m_capacity);
  m_next = m_end = m_buffer.get();
  m_streamPosition = position;
  if (m_keptStart != m_keptEnd && position >= m_keptStart && position <= m_keptEnd) {
    m_next += position - m_keptStart;
    m_end += m_keptEnd - m_keptStart;
    m_streamPosition = m_keptEnd;
  }
  m_mustMove = true;
}

uint64 StreamWindow::bytesLeft() {
  const auto ahead = static_cast<uint64>(m_end - m_next);
  const bool hasEnded = !m_mustMove && !m_stream.good();  // while reading ahead
  if (hasEnded || !moveStream()) return ahead;
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
  if (moveStream()) m_stream.peek();
  m_state |= m_stream.rdstate() & (std::ios::eofbit | std::ios::badbit);
}

bool StreamWindow::moveStream() {
  if (m_mustMove) {
    m_stream.clear();
    m_stream.seekg(m_streamPosition);
    m_mustMove = false;
    if (!m_stream.good()) m_state |= std::ios::failbit;
  }
  return m_stream.good();
}

// Straight into the caller's memory; the window is empty.
std::size_t StreamWindow::readStream(char* destination, std::size_t count) {
  if (!moveStream() && !m_stream.eof()) {
    m_state |= std::ios::failbit;
    return 0;
  }
  m_stream.read(destination, static_cast<std::streamsize>(count));
  const auto got = m_stream.gcount();
  m_next = m_end = m_buffer.get();  // what is left there ends at an earlier position
  m_streamPosition += got;
  m_state |= m_stream.rdstate();
  return static_cast<std::size_t>(got);
}

// Refills the empty window where read-ahead pays: up to the limit, and only for less than a
// windowful. Reaching the end of the file while reading ahead is no news for the caller yet.
void StreamWindow::fill(std::size_t count) {
  const int64 room = m_limit > m_streamPosition ? m_limit - m_streamPosition : 0;
  const bool hasJumped = m_mustMove && m_isFar;
  const std::size_t most = hasJumped ? std::min(m_capacity, kReadAheadAfterJump) : m_capacity;
  const auto want = static_cast<std::size_t>(std::min(room, static_cast<int64>(most)));
  if (count > want || count == m_capacity || !moveStream()) return;
  m_keptStart = m_keptEnd = 0;
  m_stream.read(m_buffer.get(), static_cast<std::streamsize>(want));
  const auto got = m_stream.gcount();
  m_next = m_buffer.get();
  m_end = m_next + got;
  m_streamPosition += got;
  if (m_stream.bad()) {
    // A failing device: what plain small reads would still have delivered must not be lost in a
    // large one, so go back to where this one began and read no further ahead.
    m_streamPosition -= got;
    m_end = m_next;
    m_mustMove = true;
    m_capacity = 0;
  }
}

}  // namespace ZRKMetaData
