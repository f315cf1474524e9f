#include "tools/formats/CsvRecords.h"

#include <algorithm>
#include <iterator>

#include "text/CsvText.h"

namespace formats {

namespace {

constexpr std::size_t kLeadingColumns = std::size(kLabelColumns) + 1;  // and the time

}  // namespace

std::vector<std::string> longColumns() {
  std::vector<std::string> columns(std::begin(kLabelColumns), std::end(kLabelColumns));
  columns.emplace_back(series::kTimeField.name);
  for (const auto& info : series::kRecordTypeInfos) {
    for (const series::Field& field : info) {
      if (std::find(columns.begin(), columns.end(), field.name) == columns.end()) {
        columns.emplace_back(field.name);
      }
    }
  }
  return columns;
}

void CsvRecords::begin() {
  if (m_layout == Layout::Wide) return;
  const char* before = "";
  for (const std::string& column : longColumns()) {
    m_out.write(before);
    m_out.write(column);
    before = ",";
  }
  m_out.write("\n");
}

void CsvRecords::beginStream(const StreamLabel& stream) {
  const series::RecordTypeInfo& info = infoOf(stream.type);
  if (m_layout == Layout::Wide) {
    m_after = "\n";
    m_out.write(series::kTimeField.name);
    for (const series::Field& field : info) {
      m_out.write(",");
      m_out.write(field.name);
    }
    m_out.write("\n");
    return;
  }
  m_before.clear();
  TextSink label([this](std::string_view text) { m_before += text; });
  for (const std::string& text : labelValues(stream)) {
    writeText(label, text);
    label.write(",");
  }
  label.flush();
  // The fields of a type are neighbours in the long layout, so the empty cells are the same in all
  // rows of the stream.
  const auto columns = longColumns();
  const auto first = std::find(columns.begin(), columns.end(), info.begin()->name);
  const auto leading = static_cast<std::size_t>(first - columns.begin()) - kLeadingColumns;
  const std::size_t trailing = columns.size() - kLeadingColumns - leading - info.fieldCount;
  m_between = std::string(leading, ',');
  m_after = std::string(trailing, ',') + "\n";
}

void CsvRecords::writeText(TextSink& out, std::string_view text) const {
  const bool isSafe = m_cells == CsvCells::SpreadsheetSafe;
  const bool isQuoted = isSafe || text::needsCsvQuotes(text);
  if (isQuoted) out.write("\"");
  if (isSafe && text::looksLikeFormula(text)) out.write("'");
  out.writeEscaped<text::CsvRule>(text);
  if (isQuoted) out.write("\"");
}

}  // namespace formats
