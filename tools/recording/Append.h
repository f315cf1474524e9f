// Appends a metadata block to a media file.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/recording/Bytes.h"
#include "tools/recording/TopLevel.h"

namespace recording {

/// Takes the next bytes of a file.
using Write = std::function<void(std::string_view)>;

/// Writes a copy of the file with the UTF-8 name `media`, byte for byte, that a block can follow: a
/// file of chunks whose last one lacks its pad byte gets it. Throws as `writeOnto` does, and when
/// the entries of a block that the file has do not fill it, because a reader would not find another
/// one behind it.
void copyForBlock(const std::string& media, Layout layout, const Write& write);

/// Writes a copy of the file with the UTF-8 name `media`, with `block` appended at the top level.
/// In a file of atoms, a movie header of at most 8 MiB is also appended with its video tracks
/// tagged (TrackTags.h), and the old header becomes free space, so that no media moves. Returns why
/// the tracks are not tagged, or an empty string when they are.
///
/// Throws std::runtime_error, which names the file and the byte offset, when the file cannot be
/// read, and, before anything is written, when nothing can follow its last structure. Exceptions of
/// `write` pass through.
std::string writeOnto(const std::string& media, Layout layout, const Bytes& block,
                      const Write& write);

}  // namespace recording
