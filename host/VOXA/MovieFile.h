// Reads the atoms of an MP4 or QuickTime file (ISO/IEC 14496-12, "boxes"), one header at a time.
// Each offset and size is checked against the enclosing atom.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace VOXA {

/// Thrown for an atom that exceeds the enclosing one, for one that is missing, and for a file that
/// cannot be read.
class Malformed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Returns the four characters of a type as the number that the file stores.
constexpr std::uint32_t atomType(const char (&text)[5]) {
  std::uint32_t type = 0;
  for (int index = 0; index < 4; ++index) {
    type = type << 8U | static_cast<unsigned char>(text[index]);
  }
  return type;
}

/// The payload of an atom: bytes [begin, end) of the file.
struct Atom {
  std::uint32_t type = 0;
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

/// An open file. Not synchronised.
class MovieFile {
 public:
  /// Opens the regular file with this UTF-8 name. Throws Malformed when it cannot be opened.
  explicit MovieFile(const std::string& filename);

  /// Returns the whole file as one atom.
  Atom whole() const { return {0, 0, m_size}; }

  // Return the big-endian number `offset` bytes into the payload of `atom`. They throw Malformed
  // when it is not inside the payload.
  std::uint16_t big16(const Atom& atom, std::uint64_t offset);
  std::uint32_t big32(const Atom& atom, std::uint64_t offset);
  std::uint64_t big64(const Atom& atom, std::uint64_t offset);

  /// Removes the first atom from `rest` and stores it in `next`. Returns false when `rest` is
  /// shorter than a header. Throws Malformed when the atom exceeds `rest`.
  bool take(Atom& rest, Atom& next);

  /// Stores the first atom of `type` in `parent` in `found`. Returns false when there is none.
  bool find(const Atom& parent, std::uint32_t type, Atom& found);

  /// Returns the first atom of `type` in `parent`. Throws Malformed when there is none.
  Atom require(const Atom& parent, std::uint32_t type);

 private:
  const unsigned char* bytes(const Atom& atom, std::uint64_t offset, std::size_t count);

  std::ifstream m_file;
  std::uint64_t m_size = 0;
  std::vector<unsigned char> m_window;  // a buffer of the file from m_windowBegin on
  std::uint64_t m_windowBegin = 0;
};

}  // namespace VOXA
