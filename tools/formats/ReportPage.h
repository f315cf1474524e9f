// The report's page without a recording: report/, the chart library and its licence as one HTML
// text, put together at build time (EmbedReport.cmake).
#pragma once

#include <string_view>

namespace formats {

/// "@TITLE@" stands for the name of the recording and "@DATA@" for the data elements.
std::string_view reportPage();

}  // namespace formats
