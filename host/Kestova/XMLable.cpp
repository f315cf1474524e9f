#include "host/Kestova/XMLable.h"

#include <sstream>

#include "text/Utf8.h"

namespace Kestova {

namespace {

// One more element around what is written, as long as it lives.
class Level {
 public:
  explicit Level(int& depth) : m_depth(depth) { ++m_depth; }
  ~Level() { --m_depth; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;

  bool isOutermost() const { return m_depth == 1; }

 private:
  int& m_depth;
};

bool isForbidden(char32_t character) {
  const bool isControl =
      character < 0x20 && character != '\t' && character != '\n' && character != '\r';
  return isControl || character == 0xFFFE || character == 0xFFFF;
}

}  // namespace

std::string xml_representation(const std::string& value) {
  const std::string wellFormed = text::wellFormedUtf8(value);
  std::string_view rest = wellFormed;
  std::string xml;
  xml.reserve(wellFormed.size());
  while (!rest.empty()) {
    const text::Utf8Character character = text::firstCharacter(rest);
    switch (character.codePoint) {
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
        if (!isForbidden(character.codePoint)) xml += rest.substr(0, character.length);
    }
    rest.remove_prefix(character.length);
  }
  return xml;
}

std::string xml_representation(const std::list<Rect<float>>& rects) {
  std::ostringstream text;
  text.exceptions(std::ios::badbit);  // else a text without memory would end early
  const char* separator = "";
  for (const Rect<float>& rect : rects) {
    text << separator << rect;
    separator = " ";
  }
  return text.str();
}

XMLOptions::XMLOptions(std::ostream& out)
    : m_sink(std::make_unique<XMLSink>(out)), m_out(m_sink.get()) {}

XMLOptions::~XMLOptions() = default;

std::ostream& XMLOptions::outStream() {
  return m_out;
}

XMLIdentified::~XMLIdentified() = default;

XMLable::~XMLable() = default;

void XMLable::toXML(XMLOptions& options, int indent, const std::string& prefix) const {
  const Level level(options.m_depth);
  XMLSink& sink = *options.m_sink;
  options.write(Indent{indent}, "<", prefix);
  xmlElementName(options);
  sink.hold(" ");
  xmlAttributes(options);
  sink.takeBack();
  sink.hold(">\n");
  xmlBody(options, indent + 1);
  if (sink.takeBack()) {
    options.write("/>\n");
  } else {
    options.write(Indent{indent}, "</", prefix);
    xmlElementName(options);
    options.write(">\n");
  }
  if (level.isOutermost()) sink.text().flush();
}

void XMLable::xmlElementName(XMLOptions& /*options*/) const {}
void XMLable::xmlAttributes(XMLOptions& /*options*/) const {}
void XMLable::xmlBody(XMLOptions& /*options*/, int /*indent*/) const {}

std::string XMLable::genIndent(int indent) {
  return std::string(2 * static_cast<std::size_t>(indent), ' ');
}

}  // namespace Kestova
