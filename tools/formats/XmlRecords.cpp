#include "tools/formats/XmlRecords.h"

namespace formats {

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// The attributes of the label, each with a space before it.
std::string labelAttributes(const StreamLabel& stream) {
  std::string attributes;
  std::size_t column = 0;
  for (const std::string& value : labelValues(stream)) {
    attributes += " " + std::string(kLabelColumns[column++]) + "=\"" + text::xmlText(value) + "\"";
  }
  return attributes;
}

}  // namespace

void XmlRecords::begin() {
  m_out.write(kDeclaration);
  if (m_layout == Layout::Long) m_out.write("<export>\n");
}

void XmlRecords::beginStream(const StreamLabel& stream) {
  m_before = "  <record";
  if (m_layout == Layout::Long) {
    m_before += labelAttributes(stream);
  } else {
    m_out.write("<export" + labelAttributes(stream) + ">\n");
  }
}

void XmlRecords::finish(const std::vector<StreamError>& errors) {
  for (const StreamError& error : errors) {
    m_out.write("  <error" + labelAttributes(error.stream) + " message=\"" +
                text::xmlText(error.message) + "\"/>\n");
  }
  m_out.write("</export>\n");
}

}  // namespace formats
