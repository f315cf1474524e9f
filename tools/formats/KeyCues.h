// Groups keystrokes into cues.
//
// Keys that follow each other within the gap share a cue, which is on screen from its first key
// until the hold time after its last one, or until the next cue begins. A cue of 42 characters, a
// line of captions, is ended; from 32 characters on, a space or Enter ends it. A redaction changes
// texts, and no times. Memory does not grow with the number of keys.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/formats/Cue.h"
#include "tools/formats/CueClock.h"
#include "tools/formats/KeyLabels.h"
#include "tools/series/Redact.h"

namespace formats {

struct KeyCueOptions {
  double gap = 0.7;               ///< seconds
  double hold = 1.5;              ///< seconds
  bool onlyShortcuts = false;     ///< leave out keys without a flag that is shown
  bool appliesBackspace = false;  ///< Backspace removes a character from its cue
  series::Redaction redaction = series::Redaction::None;  ///< of the text of the cues alone
  KeyLabels labels;
};

/// Used by one thread.
class KeyCues {
 public:
  /// Passes each cue to `write`, in the order of times and without overlap.
  KeyCues(KeyCueOptions options, const CueClock& clock, std::function<void(const Cue&)> write)
      : m_options(std::move(options)), m_clock(clock), m_write(std::move(write)) {}

  /// Keys whose time falls or is not in range of the clock are left out.
  void add(double seconds, const ZRKMetaData::KeyStroke& key);

  /// Call it once, after the last key.
  void finish();

  std::uint64_t keyCount() const { return m_keyCount; }
  std::uint64_t leftOutCount() const { return m_leftOutCount; }

 private:
  enum class Kind { Character, Space, Word };  // a word is set apart by spaces

  struct Piece {
    Kind kind = Kind::Character;
    bool isTyped = false;    // Backspace removes it
    bool endsWord = false;   // a cue may end after it
    std::string text;        // as it is shown
    std::size_t length = 0;  // characters, before they are masked
  };

  std::string shownText(ZRKMetaData::int32 character, const std::string& text) const;
  void addPiece(double seconds, Piece piece);
  std::string text() const;
  void end(std::int64_t nextStart);

  const KeyCueOptions m_options;
  const CueClock m_clock;
  const std::function<void(const Cue&)> m_write;

  // The cue that is being filled; none while there is no piece.
  std::vector<Piece> m_pieces;
  std::size_t m_length = 0;  // characters
  bool m_isFull = false;
  double m_firstSeconds = 0;
  double m_lastSeconds = 0;

  double m_previousSeconds = 0;  // of all keys
  std::int64_t m_lastEnd = 0;
  std::uint64_t m_keyCount = 0;
  std::uint64_t m_leftOutCount = 0;
};

}  // namespace formats
