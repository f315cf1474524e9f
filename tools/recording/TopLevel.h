// Walks the atoms or chunks of a media file that stand on one level.
#pragma once

#include <cstdint>
#include <functional>
#include <istream>
#include <string>
#include <string_view>

namespace recording {

enum class Layout { Atoms, Chunks };

/// One atom or chunk. Offsets are bytes from the start of the file.
struct Structure {
  std::string type;
  std::uint64_t start = 0;    ///< of the header
  std::uint64_t payload = 0;  ///< end of the header
  std::uint64_t end = 0;      ///< end of the payload, pad byte excluded
};

using Visit = std::function<void(const Structure&)>;

/// Calls `visit` for each structure at the top level of `media`, in file order. Throws
/// std::runtime_error, which names the structure and its byte offset, when nothing can follow it:
/// its size is zero, less than its header, or more than the file holds. Where that is the first one
/// and of no type that media begin with, the text says that the file is none of the layout.
void eachStructure(std::istream& media, Layout layout, const Visit& visit);

/// The same for the structures in `parent`, which must fill its payload.
void eachStructureIn(std::istream& media, Layout layout, const Structure& parent,
                     const Visit& visit);

/// The same for the atoms in `bytes`; offsets are those in `bytes`.
void eachAtom(std::string_view bytes, const Visit& visit);

}  // namespace recording
