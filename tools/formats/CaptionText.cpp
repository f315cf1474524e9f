#include "tools/formats/CaptionText.h"

#include "text/Escape.h"
#include "text/Printable.h"

namespace formats {

namespace {

using text::Escape;
using text::Utf8Character;

// `Markup` has one function: std::string_view replacement(char32_t), empty for plain characters.
template <class Markup>
struct CaptionRule {
  static bool isPlain(char32_t character) {
    return text::PrintableRule::isPlain(character) && Markup::replacement(character).empty();
  }

  static Escape escape(const Utf8Character& character, std::string_view /*bytes*/) {
    Escape escape;
    if (!character.isWellFormed) {
      escape.append(text::kEncodedReplacementCharacter);
    } else if (const std::string_view text = Markup::replacement(character.codePoint);
               !text.empty()) {
      escape.append(text);
    } else {
      escape.append(" ");
    }
    return escape;
  }
};

struct VttMarkup {
  static std::string_view replacement(char32_t character) {
    switch (character) {
      case '&':
        return "&amp;";
      case '<':
        return "&lt;";
      case '>':
        return "&gt;";
      default:
        return {};
    }
  }
};

// Braces and backslashes: players read overrides of the other format here, too.
struct SrtMarkup {
  static std::string_view replacement(char32_t character) {
    switch (character) {
      case '&':
        return "&\u2060";
      case '<':
        return "\u2039";
      case '>':
        return "\u203A";
      case '{':
        return "{\u2060";
      case '\\':
        return "\\\u2060";
      default:
        return {};
    }
  }
};

struct AssMarkup {
  static std::string_view replacement(char32_t character) {
    switch (character) {
      case '{':
        return "\\{\u2060";  // ffmpeg reads an override from {\ even where it is escaped
      case '}':
        return "\\}";
      case '\\':
        return "\\\u2060";
      default:
        return {};
    }
  }
};

}  // namespace

std::string vttText(std::string_view bytes) {
  return text::escaped<CaptionRule<VttMarkup>>(bytes);
}

std::string srtText(std::string_view bytes) {
  return text::escaped<CaptionRule<SrtMarkup>>(bytes);
}

std::string assText(std::string_view bytes) {
  return text::escaped<CaptionRule<AssMarkup>>(bytes);
}

}  // namespace formats
