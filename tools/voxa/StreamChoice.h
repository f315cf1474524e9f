// Which streams of a recording a command reads, and as which record types.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/series/RecordTypes.h"
#include "tools/series/TimeRange.h"

namespace voxa {

struct ChosenStream {
  boost::uuids::uuid id;
  std::string name;  ///< its short key, or the whole identifier where keys collide
  series::RecordType type;
};

/// The streams that `names` means (as in `streamsNamed`). `types` are
/// "TYPE" for all of them or "STREAM=TYPE". The type of a stream without one is guessed: a certain
/// guess is said on standard error, and a stream with an uncertain one is named there and left out.
/// Throws Failure: as `findStream` does; WrongUse for an unknown type, when the only stream asked
/// for has no certain type (with the candidates), or when none is left; NoSuchStream when the
/// recording has no streams.
std::vector<ChosenStream> chooseStreams(ZRKMetaData::MetaDataParser& parser,
                                        const std::string& file,
                                        const std::vector<std::string>& names,
                                        const std::vector<std::string>& types);

/// The stream `name` of a command that reads one, as the record type `type`, or with the guessed
/// type where that is empty. Throws Failure as `chooseStreams` does.
ChosenStream chooseStream(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                          const std::string& name, const std::string& type);

/// The only one of `streams` with this type; nothing where there is none. Throws Failure (WrongUse)
/// when there are several, and names them.
std::optional<ChosenStream> onlyOfType(const std::string& file,
                                       const std::vector<ChosenStream>& streams,
                                       series::RecordType type);

/// The stream `name`, or where that is empty the only stream with this type. `types` are as in
/// `chooseStreams`. Throws Failure as `chooseStreams` and `onlyOfType` do; WrongUse where no stream
/// has the type.
ChosenStream chooseOfType(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                          const std::string& name, const std::vector<std::string>& types,
                          series::RecordType type);

/// Options --from, --to and --rate, each empty where it was not given.
struct TimeOptions {
  std::string from;
  std::string to;
  std::string rate;
};

/// Throws Failure (WrongUse) for what is no time, rate or range.
series::TimeRange timeRangeOf(const TimeOptions& options);

}  // namespace voxa
