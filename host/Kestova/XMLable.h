// An object that writes itself as an XML element. docs/serialisation.md specifies the text.
#pragma once

#include <list>
#include <memory>
#include <ostream>
#include <string>

#include "host/Kestova/Export.h"
#include "host/Kestova/Rect.h"

namespace Kestova {

/// Returns `text` for the content of an element or attribute of XML 1.0: markup and line ends as
/// references, without the characters that XML forbids, with U+FFFD in place of malformed UTF-8.
KESTOVA_API std::string xml_representation(const std::string& text);

/// Returns the rectangles as "(x,y,width,height)", separated by spaces.
KESTOVA_API std::string xml_representation(const std::list<Rect<float>>& rects);

/// The destination of XML. Used by one thread. The stream must outlive the options and receives the
/// text at the end of each outermost element. Failures of the stream show in its state.
class KESTOVA_API XMLOptions {
 public:
  explicit XMLOptions(std::ostream& out);
  ~XMLOptions();
  XMLOptions(const XMLOptions&) = delete;
  XMLOptions& operator=(const XMLOptions&) = delete;

  /// The stream that elements write to. The options own it.
  std::ostream& outStream();

 private:
  friend class XMLable;
  class Sink;

  const std::unique_ptr<Sink> m_sink;
  std::ostream m_out;
};

/// The part of an object that elements may refer to. All XML-able bases of one object share it.
class KESTOVA_API XMLIdentified {
 public:
  virtual ~XMLIdentified();
};

/// Writes itself as one element. The order of the virtual operations is part of the interface for
/// classes that are compiled elsewhere.
class KESTOVA_API XMLable : public virtual XMLIdentified {
 public:
  ~XMLable() override;

  /// Writes the element at a level of indentation, with `prefix` before its name. The caller holds
  /// the lock of the object.
  virtual void toXML(XMLOptions& options, int indent, const std::string& prefix) const;

  // The parts of the element, each written to the stream of the options. `indent` is the level of
  // the body.
  virtual void xmlElementName(XMLOptions& options) const;
  virtual void xmlAttributes(XMLOptions& options) const;
  virtual void xmlBody(XMLOptions& options, int indent) const;

  /// Returns the white space at the start of a line: two spaces per level of indentation.
  static std::string genIndent(int indent);
};

}  // namespace Kestova
