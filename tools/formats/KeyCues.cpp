#include "tools/formats/KeyCues.h"

#include <algorithm>
#include <utility>

#include "tools/formats/KeyText.h"

namespace formats {

namespace {

constexpr std::size_t kMaxCharacters = 42;    // usual for a line of captions
constexpr std::size_t kEarlyCharacters = 32;  // from here on, a cue ends between words

bool isBackspace(const ZRKMetaData::KeyStroke& key) {
  return key.character == '\b' || key.character == 0x7F;
}

// Whether the key writes a character into a text.
bool isTyped(ZRKMetaData::int32 character) {
  const bool isControl =
      character < ' ' && character != '\t' && character != '\n' && character != '\r';
  return !isControl && character != 0x7F && !keySymbol(character).empty();
}

std::size_t characterCount(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
  }));
}

}  // namespace

void KeyCues::add(double seconds, const ZRKMetaData::KeyStroke& key) {
  ++m_keyCount;
  if (!CueClock::isInRange(seconds) || seconds < m_previousSeconds) {
    ++m_leftOutCount;
    return;
  }
  m_previousSeconds = seconds;
  const std::string flags = m_options.labels.flagsText(key.eventFlags);
  if (flags.empty() && m_options.onlyShortcuts) return;
  std::string text = m_options.labels.keyText(key.character);
  if (text.empty() && flags.empty()) return;

  const bool continues = !m_pieces.empty() && !m_isFull && seconds - m_lastSeconds <= m_options.gap;
  if (m_options.appliesBackspace && flags.empty() && isBackspace(key) && continues &&
      m_pieces.back().isTyped) {
    m_length -= m_pieces.back().length;
    m_pieces.pop_back();
    m_lastSeconds = seconds;
    return;
  }
  Piece piece;
  piece.isTyped = flags.empty() && isTyped(key.character);
  if (key.character == ' ' && flags.empty() && text == keySymbol(' ')) piece.kind = Kind::Space;
  piece.endsWord = piece.kind == Kind::Space || flags + text == keySymbol('\n');
  piece.text = flags + shownText(key.character, text);
  piece.length = characterCount(flags + text);
  if (piece.length > 1) {
    piece.kind = Kind::Word;
    ++piece.length;  // the space beside it
  }
  if (!continues || m_length + piece.length > kMaxCharacters) end(m_clock.tickAt(seconds));
  addPiece(seconds, std::move(piece));
}

// The text of a key, or of what it is masked by.
std::string KeyCues::shownText(ZRKMetaData::int32 character, const std::string& text) const {
  if (m_options.redaction == series::Redaction::None) return text;
  const auto mask = series::redactedCharacter(character, m_options.redaction);
  const std::string shown = m_options.labels.keyText(mask);
  return shown.empty() ? keySymbol(mask) : shown;  // labels may leave out the mask
}

void KeyCues::addPiece(double seconds, Piece piece) {
  if (m_pieces.empty()) m_firstSeconds = seconds;
  m_lastSeconds = seconds;
  m_length += piece.length;
  m_isFull = m_length >= kEarlyCharacters && piece.endsWord;
  m_pieces.push_back(std::move(piece));
}

// A space is written as such only between two characters: readers of captions drop others.
std::string KeyCues::text() const {
  std::string text;
  for (std::size_t index = 0; index < m_pieces.size(); ++index) {
    const Piece& piece = m_pieces[index];
    const bool isInside = index > 0 && index + 1 < m_pieces.size();
    if (index > 0 && (piece.kind == Kind::Word || m_pieces[index - 1].kind == Kind::Word)) {
      text += ' ';
    }
    const bool isPlainSpace = piece.kind == Kind::Space && piece.text == keySymbol(' ') &&
                              isInside && m_pieces[index - 1].kind == Kind::Character &&
                              m_pieces[index + 1].kind == Kind::Character;
    text += isPlainSpace ? " " : piece.text;
  }
  return text;
}

// Writes the cue that is being filled. At least one tick long, it may push the next ones back.
void KeyCues::end(std::int64_t nextStart) {
  if (!m_pieces.empty()) {
    Cue cue;
    cue.start = std::max(m_clock.tickAt(m_firstSeconds), m_lastEnd);
    const double held = m_lastSeconds + m_options.hold;
    cue.end = CueClock::isInRange(held) ? m_clock.tickAt(held) : m_clock.maxTick();
    cue.end = std::max(std::min(cue.end, nextStart), cue.start + 1);
    cue.text = text();
    m_write(cue);
    m_lastEnd = cue.end;
  }
  m_pieces.clear();
  m_length = 0;
  m_isFull = false;
}

void KeyCues::finish() {
  end(m_clock.maxTick());
}

}  // namespace formats
