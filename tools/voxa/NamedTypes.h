// The record types that the user names with --as.
#pragma once

#include <string>
#include <vector>

#include "tools/series/Summary.h"

namespace voxa {

/// The types that `options`, each "TYPE" or "STREAM=TYPE", name for the streams of a recording.
/// STREAM is as in `findStream`; a TYPE alone is that of every stream without one of its own.
/// Throws Failure (WrongUse) for a type that does not exist, and as `findStream` does.
series::NamedTypes namedTypes(const ZRKMetaData::MetaDataParser& parser, const std::string& file,
                              const std::vector<std::string>& options);

}  // namespace voxa
