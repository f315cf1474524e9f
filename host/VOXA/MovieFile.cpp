#include "host/VOXA/MovieFile.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <ios>
#include <string>
#include <system_error>

namespace VOXA {

namespace {

constexpr std::size_t kWindowSize = 4096;
constexpr std::uint64_t kHeaderSize = 8;
constexpr std::uint64_t kWideHeaderSize = 16;

}  // namespace

MovieFile::MovieFile(const std::string& filename) {
  const auto path = std::filesystem::u8path(filename);
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) throw Malformed("not a regular file");
  m_size = std::filesystem::file_size(path, error);
  m_file.rdbuf()->pubsetbuf(nullptr, 0);  // the window below is the buffer
  m_file.open(path, std::ios::binary);
  if (error || !m_file) throw Malformed("cannot be opened");
}

std::uint16_t MovieFile::big16(const Atom& atom, std::uint64_t offset) {
  return boost::endian::load_big_u16(bytes(atom, offset, 2));
}

std::uint32_t MovieFile::big32(const Atom& atom, std::uint64_t offset) {
  return boost::endian::load_big_u32(bytes(atom, offset, 4));
}

std::uint64_t MovieFile::big64(const Atom& atom, std::uint64_t offset) {
  return boost::endian::load_big_u64(bytes(atom, offset, 8));
}

bool MovieFile::take(Atom& rest, Atom& next) {
  const std::uint64_t room = rest.end - rest.begin;
  if (room < kHeaderSize) return false;  // QuickTime also ends a list with four zero bytes
  std::uint64_t size = big32(rest, 0);
  std::uint64_t headerSize = kHeaderSize;
  next.type = big32(rest, 4);
  if (size == 1) {
    size = big64(rest, kHeaderSize);
    headerSize = kWideHeaderSize;
  } else if (size == 0) {
    size = room;
  }
  if (size < headerSize || size > room) throw Malformed("atom exceeds the enclosing one");
  next.begin = rest.begin + headerSize;
  next.end = rest.begin + size;
  rest.begin = next.end;
  return true;
}

bool MovieFile::find(const Atom& parent, std::uint32_t type, Atom& found) {
  Atom rest = parent;
  while (take(rest, found)) {
    if (found.type == type) return true;
  }
  return false;
}

Atom MovieFile::require(const Atom& parent, std::uint32_t type) {
  Atom found;
  if (!find(parent, type, found)) throw Malformed("missing atom");
  return found;
}

// Returns a pointer to `count` bytes, at most a window, which is valid until the next call.
const unsigned char* MovieFile::bytes(const Atom& atom, std::uint64_t offset, std::size_t count) {
  const std::uint64_t room = atom.end - atom.begin;
  if (offset > room || count > room - offset) throw Malformed("field exceeds its atom");
  const std::uint64_t position = atom.begin + offset;
  const bool isBuffered = position >= m_windowBegin &&
                          position - m_windowBegin <= m_window.size() &&
                          count <= m_window.size() - (position - m_windowBegin);
  if (!isBuffered) {
    m_window.resize(
        static_cast<std::size_t>(std::min<std::uint64_t>(kWindowSize, m_size - position)));
    m_windowBegin = position;
    m_file.seekg(static_cast<std::streamoff>(position));
    m_file.read(reinterpret_cast<char*>(m_window.data()),
                static_cast<std::streamsize>(m_window.size()));
    if (!m_file) throw Malformed("unexpected end of file");
  }
  return m_window.data() + (position - m_windowBegin);
}

}  // namespace VOXA
