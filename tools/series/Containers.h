// The kinds of containers and their names.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

namespace series {

/// The kinds that can be read: all but None.
inline constexpr std::array kContainerKinds = {ZRKMetaData::Riff, ZRKMetaData::Atoms,
                                               ZRKMetaData::Raw};

/// "Riff", "Atoms" or "Raw"; "None" for any other value. The text is a literal.
const char* containerName(ZRKMetaData::ContainerKind kind);

/// The kind with exactly this name, of those that can be read.
std::optional<ZRKMetaData::ContainerKind> containerKindNamed(std::string_view name);

}  // namespace series
