#include "tools/series/Containers.h"

namespace series {

const char* containerName(ZRKMetaData::ContainerKind kind) {
  switch (kind) {
    case ZRKMetaData::Riff:
      return "Riff";
    case ZRKMetaData::Atoms:
      return "Atoms";
    case ZRKMetaData::Raw:
      return "Raw";
    case ZRKMetaData::None:
      break;
  }
  return "None";
}

std::optional<ZRKMetaData::ContainerKind> containerKindNamed(std::string_view name) {
  for (const auto kind : kContainerKinds) {
    if (name == containerName(kind)) return kind;
  }
  return std::nullopt;
}

}  // namespace series
