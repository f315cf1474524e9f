// What the host writes as an XML element. docs/serialisation.md fixes the text.
#pragma once

#include <list>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "host/Kestova/Export.h"
#include "host/Kestova/Rect.h"
#include "host/Kestova/XMLSink.h"

namespace Kestova {

/// `text` for the content of an element or attribute of XML 1.0: markup and line ends as
/// references, characters that XML forbids left out, what is no UTF-8 as U+FFFD.
KESTOVA_API std::string xml_representation(const std::string& text);

/// The rectangles as "(x,y,width,height)" with spaces between.
KESTOVA_API std::string xml_representation(const std::list<Rect<float>>& rects);

/// Where XML goes, by one thread. What is written reaches the stream at the end of each outermost
/// element; the stream must outlive the options. Failures of the stream show in its state.
class KESTOVA_API XMLOptions {
 public:
  explicit XMLOptions(std::ostream& out);
  ~XMLOptions();
  XMLOptions(const XMLOptions&) = delete;
  XMLOptions& operator=(const XMLOptions&) = delete;

  std::ostream& outStream();

  /// What `outStream` does, for what a TextBlock writes, without asking a stream for each word.
  template <class... Parts>
  void write(const Parts&... parts) {
    m_sink->text().write(parts...);
  }

 private:
  friend class XMLable;

  const std::unique_ptr<XMLSink> m_sink;
  std::ostream m_out;
  int m_depth = 0;
};

/// What elements may refer to. Shared by all XML-able parts of one object.
class KESTOVA_API XMLIdentified {
 public:
  virtual ~XMLIdentified();
};

/// An object that writes itself as one element. The virtual operations stand in this order for
/// classes that are compiled elsewhere.
class KESTOVA_API XMLable : public virtual XMLIdentified {
 public:
  ~XMLable() override;

  /// Writes the element at a level of indentation, `prefix` in front of its name. The caller holds
  /// the lock of what is written.
  virtual void toXML(XMLOptions& options, int indent, const std::string& prefix) const;

  // The parts of the element, each written to the options' stream. `indent` is the level inside.
  virtual void xmlElementName(XMLOptions& options) const;
  virtual void xmlAttributes(XMLOptions& options) const;
  virtual void xmlBody(XMLOptions& options, int indent) const;

  /// The white space in front of a line at a level of indentation: two spaces each.
  static std::string genIndent(int indent);
};

}  // namespace Kestova
