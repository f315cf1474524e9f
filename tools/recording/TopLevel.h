// The top-level structures of a media file, and the metadata block appended behind them.
#pragma once

#include <cstdint>
#include <functional>
#include <istream>
#include <string>
#include <string_view>

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

using Visit = std::function<void(const Structure&)>;

/// Hands each structure at the top level of `media` to `visit`, in file order. Throws
/// std::runtime_error that names the structure and its place when a scan could not get past it: a
/// size of zero, or more than the file holds.
void eachStructure(std::istream& media, Layout layout, const Visit& visit);

/// The same of the atoms in `bytes`.
void eachAtom(std::string_view bytes, const Visit& visit);

/// Takes the next bytes of a file.
using Write = std::function<void(std::string_view)>;

/// Writes a copy of the file with the UTF-8 name `media`, with `block` appended at top level. In a
/// file of atoms a movie header of at most 8 MiB is appended as well, with its video tracks tagged
/// (Movie.h), and the old one becomes free space, so that no media moves. Returns why the tracks
/// were left untagged, empty when they were tagged. Throws std::runtime_error, naming the file and
/// the place, when nothing can follow the last structure, in which case nothing was written, and
/// when the file cannot be read. What `write` throws passes through.
std::string writeOnto(const std::string& media, Layout layout, const Bytes& block,
                      const Write& write);

}  // namespace recording
