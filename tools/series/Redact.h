// Masks typed text, so that a result can be shown without what was typed.
//
// Keystroke characters and strings are masked before a writer sees them; every other record, the
// times and the event flags stay as they are. A masked text has as many characters as the text.
// Every function may be called from any thread; a RedactingVisitor is used by one thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "ZRKMetaData/src/ZRKMRecords.h"

namespace series {

/// Which characters are masked: letters become "x", digits "0", and with All every other character
/// "*", white space included.
///
/// Digits are the decimal digits of all scripts. Outside ASCII every other character counts as a
/// letter, malformed UTF-8 too, except C1 controls and the private use area, where function keys
/// are.
enum class Redaction : std::uint8_t { None, Letters, Digits, All };

/// The redaction that an option calls "letters", "digits" or "all"; none for any other text.
std::optional<Redaction> redactionNamed(std::string_view name);

/// Masks one character, by its code point.
ZRKMetaData::int32 redactedCharacter(ZRKMetaData::int32 character, Redaction redaction);

/// Masks a text in UTF-8.
std::string redactedText(std::string_view text, Redaction redaction);

/// Masks a record. Returns `record` itself where there is nothing to mask.
template <class Record>
const Record& redacted(const Record& record, Redaction /*redaction*/) {
  return record;
}
inline std::string redacted(const std::string& text, Redaction redaction) {
  return redactedText(text, redaction);
}
inline ZRKMetaData::KeyStroke redacted(const ZRKMetaData::KeyStroke& key, Redaction redaction) {
  return {redactedCharacter(key.character, redaction), key.eventFlags};
}

/// A visitor of `forEachRecord` that passes masked records to `visitor`:
///
///   forEachRecord(parser, id, type, range, redacting(redaction, [&](double seconds,
///                                                                   const auto& record) { ... }));
template <class Visitor>
class RedactingVisitor {
 public:
  RedactingVisitor(Redaction redaction, Visitor visitor)
      : m_redaction(redaction), m_visitor(std::move(visitor)) {}

  template <class Record>
  decltype(auto) operator()(double seconds, const Record& record) {
    if (m_redaction == Redaction::None) return m_visitor(seconds, record);
    const Record& masked = redacted(record, m_redaction);  // a temporary lives as long
    return m_visitor(seconds, masked);
  }

 private:
  Redaction m_redaction;
  Visitor m_visitor;
};

template <class Visitor>
RedactingVisitor<std::decay_t<Visitor>> redacting(Redaction redaction, Visitor&& visitor) {
  return {redaction, std::forward<Visitor>(visitor)};
}

}  // namespace series
