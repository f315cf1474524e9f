#include "host/Kestova/XMLable.h"

#include "host/Kestova/Utf8.h"

namespace Kestova {

namespace {

bool isForbidden(char32_t character) {
  const bool isControl =
      character < 0x20 && character != '\t' && character != '\n' && character != '\r';
  return isControl || character == 0xFFFE || character == 0xFFFF;
}

}  // namespace

std::string xml_representation(const std::string& text) {
  const std::string wellFormed = wellFormedUtf8(text);
  std::string_view rest = wellFormed;
  std::string xml;
  xml.reserve(wellFormed.size());
  while (!rest.empty()) {
    const std::string_view before = rest;
    const char32_t character = takeCharacter(rest);
    switch (character) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '"':
        xml += "&quot;";
        break;
      case '\'':
        xml += "&apos;";
        break;
      case '\t':  // a reader would turn these three into spaces inside an attribute
        xml += "&#9;";
        break;
      case '\n':
        xml += "&#10;";
        break;
      case '\r':
        xml += "&#13;";
        break;
      default:
        if (!isForbidden(character)) xml += before.substr(0, before.size() - rest.size());
    }
  }
  return xml;
}

XMLIdentified::~XMLIdentified() = default;
XMLable::~XMLable() = default;

}  // namespace Kestova
