#include "tools/formats/Report.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "text/Base64.h"
#include "text/XmlText.h"
#include "tools/formats/Column.h"
#include "tools/formats/ReportPage.h"
#include "tools/formats/SummaryJson.h"

namespace formats {

namespace {

using Json = nlohmann::ordered_json;
using series::RecordingSummary;
using Write = std::function<void(std::string_view)>;

// For the data of all streams. The page without a recording has about 220 kB.
constexpr std::size_t kMaxDataBytes = 58'000'000;

// Streams that the page describes; a browser cannot show more in a useful way. The index of a
// hostile file may hold millions.
constexpr std::size_t kMaxStreams = 256;

// Texts in one element, as report/columns.js knows it: about kElementCharacters of short ones.
constexpr std::size_t kTextsPerElement = 2048;

// A browser reads large elements slower than small ones of the same total size: Chromium takes
// twice as long for 51 MB in elements of 1 MiB as for elements of 64 KiB. A multiple of 4, so that
// each element is Base64 of its own.
constexpr std::size_t kElementCharacters = 64U << 10U;

// JSON inside an HTML element: without "<" it can neither end the element nor begin a comment.
std::string embedded(const Json& json) {
  std::string text;
  for (const char character : jsonText(json)) {
    if (character == '<') {
      text += "\\u003c";
    } else {
      text += character;
    }
  }
  return text;
}

// A bound that is absent is null, as JSON has no infinite numbers.
Json rangeJson(const series::TimeRange& range) {
  return range.isUnbounded() ? Json() : Json{{"from", range.from()}, {"to", range.to()}};
}

// The rows of a stream: data elements, and the members of its description that name them.
class RowsText {
 public:
  RowsText(std::size_t index, const series::RecordTypeInfo& type, const ReportRows& rows)
      : m_prefix("d" + std::to_string(index) + "-") {
    m_members["rows"] = rows.rowCount();
    m_members["stride"] = rows.stride();
    Json columns = Json::array();
    for (const ReportRows::Column& column : rows.columns()) {
      const char* const unit =
          columns.empty() ? series::kTimeField.unit : type.fields[columns.size() - 1].unit;
      columns.push_back(addColumn(column, unit));
    }
    m_members["columns"] = std::move(columns);
    m_members["texts"] = addTexts(rows.texts());
    Json images = Json::array();
    for (const std::string& image : rows.images()) images.push_back(text::base64(image));
    m_members["images"] = std::move(images);
  }

  const std::string& elements() const { return m_elements; }
  const Json& members() const { return m_members; }
  std::size_t size() const { return m_elements.size() + m_members.dump().size(); }

 private:
  Json addColumn(const ReportRows::Column& column, const char* unit) {
    const ColumnText text =
        std::visit([](const auto& words) { return columnText(words); }, column.words);
    return {{"name", column.name},
            {"unit", unit},
            {"type", column.type},
            {"order", text.order == ColumnText::kPlain ? Json("plain") : Json(text.order)},
            {"ids", addPieces(text.base64)}};
  }

  Json addPieces(std::string_view base64) {
    Json ids = Json::array();
    for (; !base64.empty(); base64.remove_prefix(std::min(kElementCharacters, base64.size()))) {
      ids.push_back(addElement("text/plain", base64.substr(0, kElementCharacters)));
    }
    return ids;
  }

  // Several elements, because a page that opens needs few of the texts and reads one element for
  // each.
  Json addTexts(const std::vector<std::string>& texts) {
    Json ids = Json::array();
    for (std::size_t first = 0; first < texts.size(); first += kTextsPerElement) {
      Json part = Json::array();
      const std::size_t end = std::min(texts.size(), first + kTextsPerElement);
      for (std::size_t index = first; index < end; ++index) part.push_back(texts[index]);
      ids.push_back(addElement("application/json", embedded(part)));
    }
    return ids;
  }

  // The type keeps the browser from running the element.
  std::string addElement(const char* type, std::string_view content) {
    std::string id = m_prefix + std::to_string(m_elementCount++);
    m_elements += std::string("<script type=\"") + type + "\" id=\"" + id + "\">";
    m_elements += content;
    m_elements += "</script>\n";
    return id;
  }

  std::string m_prefix;
  std::string m_elements;
  std::size_t m_elementCount = 0;
  Json m_members;
};

// As many rows of the stream as fit into `allowance` bytes, evenly spread.
RowsText fittingRows(const ReportSource& source, std::size_t index, std::size_t allowance) {
  const series::StreamSummary& stream = source.recording.streams[index];
  std::uint64_t stride = stream.recordCount / kMaxReportRows + 1;
  while (true) {
    ReportRows rows(stride);
    source.addRecords(index, rows);
    RowsText text(index, infoOf(*stream.type), rows);
    if (text.size() <= allowance || rows.rowCount() <= 1) return text;
    stride *= text.size() / std::max(allowance, std::size_t{1}) + 1;
  }
}

// The streams with records that the page shows, the small ones first, so that what they leave over
// goes to the large ones.
std::vector<std::size_t> streamsBySize(const RecordingSummary& recording) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < std::min(recording.streams.size(), kMaxStreams); ++i) {
    if (recording.streams[i].type) order.push_back(i);
  }
  std::sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
    return recording.streams[left].location.size < recording.streams[right].location.size;
  });
  return order;
}

void writeData(const ReportSource& source, const Write& write) {
  RecordingSummary shown = source.recording;
  shown.file = series::titleOf(shown.file);
  shown.streams.resize(std::min(shown.streams.size(), kMaxStreams));
  Json document = summaryJson(shown);
  document["generator"] = source.generator;
  document["range"] = rangeJson(source.range);
  document["otherStreams"] = source.otherStreamCount;
  document["moreStreams"] = source.recording.streams.size() - shown.streams.size();

  const std::vector<std::size_t> order = streamsBySize(source.recording);
  std::size_t left = kMaxDataBytes;
  for (std::size_t i = 0; i < order.size(); ++i) {
    const RowsText rows = fittingRows(source, order[i], left / (order.size() - i));
    left -= std::min(left, rows.size());
    write(rows.elements());
    document["streams"][order[i]].update(rows.members());
  }
  write("<script type=\"application/json\" id=\"recording\">" + embedded(document) + "</script>");
}

}  // namespace

void writeReport(const ReportSource& source, const Write& write) {
  constexpr std::string_view kTitle = "@TITLE@";
  constexpr std::string_view kData = "@DATA@";
  std::string_view page = reportPage();
  while (true) {
    const std::size_t at = std::min(page.find(kTitle), page.find(kData));
    write(page.substr(0, at));
    if (at == std::string_view::npos) return;
    page.remove_prefix(at);
    if (page.substr(0, kTitle.size()) == kTitle) {
      write(text::xmlText(series::titleOf(source.recording.file)));
      page.remove_prefix(kTitle.size());
    } else {
      writeData(source, write);
      page.remove_prefix(kData.size());
    }
  }
}

}  // namespace formats
