#include "tools/keep/StoredImages.h"

#include <algorithm>

namespace keep {

void StoredImages::add(std::uint64_t position, const ZRKMetaData::CursorImage& image) {
  if (image.m_data) m_positions[image.m_imageId].push_back(position);
}

std::optional<std::uint64_t> StoredImages::missingWith(std::uint64_t position,
                                                       const ZRKMetaData::CursorImage& image) {
  if (image.m_data) {
    m_written[image.m_imageId] = position;
    return std::nullopt;
  }
  const auto stored = m_positions.find(image.m_imageId);
  if (stored == m_positions.end()) return std::nullopt;
  const auto after = std::lower_bound(stored->second.begin(), stored->second.end(), position);
  if (after == stored->second.begin()) return std::nullopt;
  const std::uint64_t meant = *(after - 1);
  const auto [written, isFirst] = m_written.try_emplace(image.m_imageId, meant);
  if (!isFirst && written->second == meant) return std::nullopt;
  written->second = meant;
  return meant;
}

}  // namespace keep
