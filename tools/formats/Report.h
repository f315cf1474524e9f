// Writes a recording as one HTML page that works without a network: facts, timeline, values at a
// time, heat map and tables. The page's own sources are in report/; they and the chart library are
// part of the program.
//
// The page is under 60 MB whatever the recording: a stream of more than kMaxReportRows records, or
// one whose share of the page is used up, is thinned evenly, and the page says so. While it is
// written, memory holds the columns of one stream.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/formats/ReportRows.h"
#include "tools/series/Summary.h"

namespace formats {

struct ReportSource {
  /// What `voxa info` says of the recording.
  const series::RecordingSummary& recording;

  /// What the page leaves out, so that it can say so: times outside of the range, and streams.
  series::TimeRange range;
  std::size_t otherStreamCount = 0;

  /// Adds the records in the range of stream `index` to the rows, in file order. May be called
  /// several times per stream; damage ends the stream without an exception.
  std::function<void(std::size_t index, ReportRows& rows)> addRecords;

  /// The program that writes the page, for people: "voxa 1.1.0".
  std::string generator;
};

/// Passes the page to `write`, piece by piece. Texts of the recording stay texts, whatever markup
/// they hold. Throws what `addRecords` and `write` throw.
void writeReport(const ReportSource& source, const std::function<void(std::string_view)>& write);

}  // namespace formats
