#include "host/Kestova/XMLable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <sstream>
#include <streambuf>
#include <string_view>

#include "text/XmlText.h"

namespace Kestova {

std::string xml_representation(const std::string& text) {
  return text::xmlText(text);
}

std::string xml_representation(const std::list<Rect<float>>& rects) {
  std::ostringstream text;
  text.exceptions(std::ios::badbit);  // else a failed allocation would truncate the text
  const char* separator = "";
  for (const Rect<float>& rect : rects) {
    text << separator << rect;
    separator = " ";
  }
  return text.str();
}

// Buffers the text of an outermost element. The end of a start tag depends on what follows it, so
// the last text can be held: it is removed again if nothing follows it.
class XMLOptions::Sink final : public std::streambuf {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): only what was written is read
  explicit Sink(std::ostream& out) : m_out(out) { clear(); }
  ~Sink() override {
    try {
      takeBack();
      flush();
    } catch (...) {  // the state of the stream shows the failure
    }
  }
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  void write(std::string_view text) {
    if (text.size() > room()) {
      writeLarge(text);
    } else {
      text.copy(pptr(), text.size());
      pbump(static_cast<int>(text.size()));
    }
  }

  void indent(int level) {
    for (; level > 0; --level) write("  ");
  }

  void hold(std::string_view text) {
    write(text);
    m_held = static_cast<int>(text.size());
    m_heldEnd = count();
  }

  /// Ends the hold. Returns true if nothing followed the held text, which is removed then.
  bool takeBack() {
    const bool isLast = m_held != 0 && m_heldEnd == count();
    if (isLast) pbump(-m_held);
    m_held = 0;
    return isLast;
  }

  void flush() {
    const std::size_t used = this->used();
    clear();
    m_flushed += used;
    if (used != 0) m_out.write(m_text.data(), static_cast<std::streamsize>(used));
  }

  int depth = 0;  // of the elements being written

 protected:
  int_type overflow(int_type character) override {
    const char text = traits_type::to_char_type(character);
    write({&text, 1});
    return character;
  }

  std::streamsize xsputn(const char* text, std::streamsize count) override {
    write({text, static_cast<std::size_t>(count)});
    return count;
  }

 private:
  void writeLarge(std::string_view text) {
    flush();
    if (text.size() <= room()) return write(text);
    m_out.write(text.data(), static_cast<std::streamsize>(text.size()));
    m_flushed += text.size();
  }

  void clear() { setp(m_text.data(), m_text.data() + m_text.size()); }
  std::size_t used() const { return static_cast<std::size_t>(pptr() - pbase()); }
  std::size_t room() const { return static_cast<std::size_t>(epptr() - pptr()); }
  std::size_t count() const { return m_flushed + used(); }

  std::ostream& m_out;
  std::array<char, std::size_t{32} << 10U> m_text;
  std::size_t m_flushed = 0;
  std::size_t m_heldEnd = 0;
  int m_held = 0;
};

XMLOptions::XMLOptions(std::ostream& out)
    : m_sink(std::make_unique<Sink>(out)), m_out(m_sink.get()) {}

XMLOptions::~XMLOptions() = default;

std::ostream& XMLOptions::outStream() {
  return m_out;
}

XMLIdentified::~XMLIdentified() = default;

XMLable::~XMLable() = default;

namespace {

class Nesting {
 public:
  explicit Nesting(int& depth) : m_depth(depth) { ++m_depth; }
  ~Nesting() { --m_depth; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  int& m_depth;
};

}  // namespace

void XMLable::toXML(XMLOptions& options, int indent, const std::string& prefix) const {
  XMLOptions::Sink& sink = *options.m_sink;
  const Nesting nesting(sink.depth);
  sink.indent(indent);
  sink.write("<");
  sink.write(prefix);
  xmlElementName(options);
  sink.hold(" ");
  xmlAttributes(options);
  sink.takeBack();
  sink.hold(">\n");
  xmlBody(options, indent + 1);
  if (sink.takeBack()) {
    sink.write("/>\n");
  } else {
    sink.indent(indent);
    sink.write("</");
    sink.write(prefix);
    xmlElementName(options);
    sink.write(">\n");
  }
  if (sink.depth == 1) sink.flush();
}

void XMLable::xmlElementName(XMLOptions& /*options*/) const {}
void XMLable::xmlAttributes(XMLOptions& /*options*/) const {}
void XMLable::xmlBody(XMLOptions& /*options*/, int /*indent*/) const {}

std::string XMLable::genIndent(int indent) {
  return std::string(2 * static_cast<std::size_t>(std::max(indent, 0)), ' ');
}

}  // namespace Kestova
