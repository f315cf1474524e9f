// The atoms of an MP4 or QuickTime file (ISO/IEC 14496-12, "boxes"), read a header at a time. Every
// read and every size is checked against what encloses it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace VOXA {

/// A structure that does not fit into what encloses it, or lacks something it must have.
class Malformed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The four characters of a type as the number that the file stores.
constexpr std::uint32_t atomType(const char (&text)[5]) {
  std::uint32_t type = 0;
  for (int place = 0; place < 4; ++place) {
    type = type << 8U | static_cast<unsigned char>(text[place]);
  }
  return type;
}

/// The payload of an atom: bytes [begin, end) of the file.
struct Atom {
  std::uint32_t type = 0;
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

class MovieFile {
 public:
  /// Throws Malformed when there is no regular file with this UTF-8 name that can be read.
  explicit MovieFile(const std::string& filename);

  /// The file as if it were one atom.
  Atom whole() const { return {0, 0, m_size}; }

  // Big-endian numbers `offset` bytes into the payload of `atom`. Throw Malformed when they do not
  // lie in it.
  std::uint16_t big16(const Atom& atom, std::uint64_t offset);
  std::uint32_t big32(const Atom& atom, std::uint64_t offset);
  std::uint64_t big64(const Atom& atom, std::uint64_t offset);

  /// Takes the next atom off `rest`, which becomes what follows it. False when less than a header
  /// is left. Throws Malformed for a size that does not fit.
  bool take(Atom& rest, Atom& next);

  /// The first atom of `type` in `parent`; false when there is none.
  bool find(const Atom& parent, std::uint32_t type, Atom& found);

  /// The same; Malformed when there is none.
  Atom require(const Atom& parent, std::uint32_t type);

 private:
  const unsigned char* bytes(const Atom& atom, std::uint64_t offset, std::size_t count);

  std::ifstream m_file;
  std::uint64_t m_size = 0;
  std::vector<unsigned char> m_window;  // what was read last, from m_windowBegin on
  std::uint64_t m_windowBegin = 0;
};

}  // namespace VOXA
