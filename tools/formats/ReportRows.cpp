#include "tools/formats/ReportRows.h"

#include <utility>

#include "text/Utf8.h"

namespace formats {

namespace {

// The leading bytes of `text`, at most `limit`, that end where a character ends.
std::string_view leadingCharacters(std::string_view text, std::size_t limit) {
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t length = text::firstCharacter(text.substr(end)).length;
    if (length > limit - end) break;
    end += length;
  }
  return text.substr(0, end);
}

}  // namespace

std::uint32_t ReportRows::indexOf(const std::string& text) {
  std::string shown;
  if (text.size() <= kMaxTextBytes) {
    shown = text::wellFormedUtf8(text);
  } else {
    shown = text::wellFormedUtf8(leadingCharacters(text, kMaxTextBytes));
    shown += "\xE2\x80\xA6 (" + std::to_string(text.size()) + " bytes)";
  }
  const auto [entry, isNew] =
      m_textIndexes.try_emplace(std::move(shown), static_cast<std::uint32_t>(m_texts.size()));
  if (isNew) m_texts.push_back(entry->first);
  return entry->second;
}

void ReportRows::keepImage(const ZRKMetaData::CursorImage& image) {
  if (image.imageByteCount() == 0) return;
  std::int32_t index = -1;
  if (image.imageByteCount() <= kMaxImageBytes) {
    const std::string_view bytes(reinterpret_cast<const char*>(image.m_data.get()),
                                 image.imageByteCount());
    const auto known = m_imageIndexes.find(bytes);
    if (known != m_imageIndexes.end()) {
      index = known->second;
    } else if (bytes.size() <= kMaxImageBytes - m_imageBytes) {
      index = static_cast<std::int32_t>(m_images.size());
      m_images.emplace_back(bytes);
      m_imageIndexes.emplace(bytes, index);
      m_imageBytes += bytes.size();
    }
  }
  if (m_shownImages.size() < kMaxIdentifiers || m_shownImages.count(image.m_imageId) != 0) {
    m_shownImages[image.m_imageId] = index;
  }
}

void ReportRows::image(const char* /*name*/, const ZRKMetaData::CursorImage& image) {
  const auto shown = m_shownImages.find(image.m_imageId);
  field("image", shown == m_shownImages.end() ? std::int32_t{-1} : shown->second);
}

}  // namespace formats
