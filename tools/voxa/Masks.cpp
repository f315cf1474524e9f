#include "tools/voxa/Masks.h"

#include <fmt/format.h>

#include "tools/series/Guess.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/QuietModule.h"

namespace voxa {

bool isText(series::RecordType type) {
  return type == series::recordTypeOf<ZRKMetaData::KeyStroke>() ||
         type == series::recordTypeOf<std::string>();
}

void requireMasks(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                  const std::vector<ChosenStream>& streams, series::Redaction redaction) {
  if (redaction == series::Redaction::None) return;
  for (const ChosenStream& stream : streams) {
    if (isText(stream.type)) continue;
    const QuietModule quiet;
    for (const series::RecordType type : series::possibleRecordTypes(parser, stream.id).types) {
      if (!isText(type)) continue;
      throw Failure(Status::WrongUse,
                    fmt::format("{0}: {1} may hold {2}, which --redact masks only when read as "
                                "such; use --as {1}={2} or leave it out",
                                file, stream.name, series::infoOf(type).name));
    }
  }
}

}  // namespace voxa
