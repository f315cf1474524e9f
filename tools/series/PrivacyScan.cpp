#include "tools/series/PrivacyScan.h"

#include <numeric>
#include <string_view>
#include <utility>

#include "text/Utf8.h"

namespace series {

namespace {

bool isText(char32_t character) {
  const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
  const bool isPrivateUse = character >= 0xE000 && character <= 0xF8FF;
  return !isControl && !isPrivateUse;
}

}  // namespace

std::uint64_t StreamPrivacy::secretCount() const {
  return std::accumulate(secretCounts.begin(), secretCounts.end(), std::uint64_t{0});
}

PrivacyScan::PrivacyScan(const PasswordWindows& windows)
    : m_windows(windows),
      m_finder([this](const Secret& secret) { addSecret(secret); }),
      m_typed([this](double seconds, char32_t character) { addTyped(seconds, character); }) {}

void PrivacyScan::add(double seconds, const ZRKMetaData::KeyStroke& key) {
  ++m_privacy.recordCount;
  if (isText(static_cast<char32_t>(key.character))) ++m_privacy.characterCount;
  m_typed.add(seconds, key.character);
}

void PrivacyScan::add(double seconds, const std::string& text) {
  ++m_privacy.recordCount;
  for (std::string_view rest = text; !rest.empty();) {
    const text::Utf8Character character = text::firstCharacter(rest);
    if (isText(character.codePoint)) ++m_privacy.characterCount;
    m_finder.add(seconds, character.codePoint);
    rest.remove_prefix(character.length);
  }
  m_finder.finish();
}

StreamPrivacy PrivacyScan::finish() {
  m_typed.finish();
  endEntry();
  m_finder.finish();
  return std::move(m_privacy);
}

void PrivacyScan::addSecret(const Secret& secret) {
  ++m_privacy.secretCounts[static_cast<std::size_t>(secret.kind)];
  if (m_privacy.secrets.size() < kMaxListedSecrets) m_privacy.secrets.push_back(secret);
}

void PrivacyScan::addTyped(double seconds, char32_t character) {
  if (!m_windows.contains(seconds)) {
    endEntry();
    m_finder.add(seconds, character);
    return;
  }
  m_finder.finish();
  if (!isText(character)) {
    endEntry();
  } else if (m_entry.characters++ == 0) {
    m_entry.seconds = seconds;
  }
}

void PrivacyScan::endEntry() {
  if (m_entry.characters != 0) addSecret(m_entry);
  m_entry.characters = 0;
}

}  // namespace series
