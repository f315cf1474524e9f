#include "tools/formats/JsonRecords.h"

namespace formats {

namespace {

// The members of the label, each followed by a comma.
std::string labelMembers(const StreamLabel& stream) {
  std::string members;
  std::size_t column = 0;
  for (const std::string& value : labelValues(stream)) {
    members += "\"" + std::string(kLabelColumns[column++]) + "\":" + text::jsonString(value) + ",";
  }
  return members;
}

}  // namespace

void JsonRecords::begin() {
  if (m_form == Form::Document && m_layout == Layout::Long) m_out.write("{\"records\":[");
}

void JsonRecords::beginStream(const StreamLabel& stream) {
  const std::string time = "\"" + std::string(series::kTimeField.name) + "\":";
  if (m_layout == Layout::Long) {
    m_before = "{" + labelMembers(stream) + time;
    return;
  }
  m_before = "{" + time;
  if (m_form == Form::Document) m_out.write("{" + labelMembers(stream) + "\"records\":[");
}

void JsonRecords::finish(const std::vector<StreamError>& errors) {
  if (m_form == Form::Lines) return;
  m_out.write("],\"errors\":[");
  const char* before = "";
  for (const StreamError& error : errors) {
    m_out.write(before + ("{" + labelMembers(error.stream)) +
                "\"message\":" + text::jsonString(error.message) + "}");
    before = ",";
  }
  m_out.write("]}\n");
}

}  // namespace formats
