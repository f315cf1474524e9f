// Refuses --redact for streams whose text it cannot mask.
#pragma once

#include <string>
#include <vector>

#include "tools/series/Redact.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

/// Whether records of this type hold text.
bool isText(series::RecordType type);

/// Masks go by the record type. Throws Failure (WrongUse) for a stream that is read as another type
/// than keystrokes or strings although it may hold them (series::possibleRecordTypes), because its
/// text would be printed as numbers. Without a redaction it does nothing.
void requireMasks(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                  const std::vector<ChosenStream>& streams, series::Redaction redaction);

}  // namespace voxa
