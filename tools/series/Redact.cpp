#include "tools/series/Redact.h"

#include <algorithm>
#include <iterator>

#include "text/Utf8.h"
#include "tools/series/AsciiCharacters.h"

namespace series {

namespace {

constexpr std::int64_t kDigitsPerScript = 10;

// The zeros of the decimal digits (general category Nd) of Unicode 15. ASCII first.
constexpr char32_t kZeros[] = {
    0x30,    0x660,   0x6F0,   0x7C0,   0x966,   0x9E6,   0xA66,   0xAE6,   0xB66,   0xBE6,
    0xC66,   0xCE6,   0xD66,   0xDE6,   0xE50,   0xED0,   0xF20,   0x1040,  0x1090,  0x17E0,
    0x1810,  0x1946,  0x19D0,  0x1A80,  0x1A90,  0x1B50,  0x1BB0,  0x1C40,  0x1C50,  0xA620,
    0xA8D0,  0xA900,  0xA9D0,  0xA9F0,  0xAA50,  0xABF0,  0xFF10,  0x104A0, 0x10D30, 0x11066,
    0x110F0, 0x11136, 0x111D0, 0x112F0, 0x11450, 0x114D0, 0x11650, 0x116C0, 0x11730, 0x118E0,
    0x11950, 0x11C50, 0x11D50, 0x11DA0, 0x11F50, 0x16A60, 0x16AC0, 0x16B50, 0x1D7CE, 0x1D7D8,
    0x1D7E2, 0x1D7EC, 0x1D7F6, 0x1E140, 0x1E2F0, 0x1E4F0, 0x1E950, 0x1FBF0};

bool isDigitOfAnyScript(std::int64_t code) {
  return std::any_of(std::begin(kZeros), std::end(kZeros), [code](std::int64_t zero) {
    return code >= zero && code < zero + kDigitsPerScript;
  });
}

bool isLetterOfAnyScript(std::int64_t code) {
  constexpr std::int64_t kFirstBehindControls = 0xA0;
  if (code >= 0 && code < kFirstBehindControls) {
    return isAsciiLetter(static_cast<char32_t>(code));
  }
  const bool isPrivateUse = code >= 0xE000 && code <= 0xF8FF;
  return !isPrivateUse && !isDigitOfAnyScript(code);
}

}  // namespace

std::optional<Redaction> redactionNamed(std::string_view name) {
  if (name == "letters") return Redaction::Letters;
  if (name == "digits") return Redaction::Digits;
  if (name == "all") return Redaction::All;
  return std::nullopt;
}

ZRKMetaData::int32 redactedCharacter(ZRKMetaData::int32 character, Redaction redaction) {
  const bool isAll = redaction == Redaction::All;
  if ((isAll || redaction == Redaction::Letters) && isLetterOfAnyScript(character)) return 'x';
  if ((isAll || redaction == Redaction::Digits) && isDigitOfAnyScript(character)) return '0';
  return isAll ? '*' : character;
}

std::string redactedText(std::string_view text, Redaction redaction) {
  std::string masked;
  masked.reserve(text.size());
  while (!text.empty()) {
    const text::Utf8Character character = text::firstCharacter(text);
    const auto code = static_cast<ZRKMetaData::int32>(character.codePoint);
    const auto shown = redactedCharacter(code, redaction);
    if (shown == code) {
      masked.append(text.substr(0, character.length));
    } else {
      masked.push_back(static_cast<char>(shown));  // ASCII
    }
    text.remove_prefix(character.length);
  }
  return masked;
}

}  // namespace series
