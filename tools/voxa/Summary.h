// A recording with everything that `voxa info` and `voxa report` say of it.
#pragma once

#include <string>

#include "tools/series/Summary.h"

namespace voxa {

/// Adds the host's view, the tracks and each stream's slot, to `series::summariseStreams`. A file
/// that the module cannot read as media, or whose name the host refuses, becomes a warning.
series::RecordingSummary summarise(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                                   const series::SummaryScope& scope);

}  // namespace voxa
