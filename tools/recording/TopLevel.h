// The top-level structures of a media file, and the metadata block appended behind them.
#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "tools/recording/Bytes.h"

namespace recording {

enum class Layout { Atoms, Chunks };

/// One atom or chunk, header included, pad byte excluded. Positions are bytes of the file.
struct Structure {
  std::string type;
  std::uint64_t start = 0;
  std::uint64_t payload = 0;  ///< behind the header
  std::uint64_t end = 0;
};

/// Walks the top level of `media`. Throws std::runtime_error that names the structure and its place
/// when a scan could not get past it: a size of zero, or more than the file holds.
std::vector<Structure> topLevel(std::istream& media, Layout layout);

/// Copies the file `media` to `out` and appends `block` to the copy at top level. Names are UTF-8.
/// Among atoms the movie header is appended as well, with its video tracks tagged (Movie.h), and
/// the old one becomes free space, so that no media moves. Returns why the tracks were left
/// untagged, empty when they were not. Throws std::runtime_error, naming the file and the place,
/// when nothing can stand behind the last structure or a file cannot be read or written; `out` is
/// not made in the first case.
std::string writeOnto(const std::string& media, const std::string& out, Layout layout,
                      const Bytes& block);

}  // namespace recording
