// The recordings and streams of a command that takes several files.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/series/Redact.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

/// The word of --streams for every stream.
constexpr const char* kAllStreams = "all";

/// FILE…, --streams, --as, --container and --redact.
struct SourceOptions {
  std::vector<std::string> files;  ///< UTF-8
  std::vector<std::string>
      streams;  ///< as in `findStream`; empty, or with `kAllStreams` among them, for all
  std::vector<std::string> types;  ///< "[STREAM=]TYPE"
  std::optional<ZRKMetaData::ContainerKind> container;
  series::Redaction redaction = series::Redaction::None;  ///< see `requireMasks`
};

/// An indexed recording, and what the options mean in it. Valid during the call of a visitor.
struct IndexedSource {
  const std::string& file;
  ZRKMetaData::MetaDataParser& parser;
  const std::vector<std::string>& streams;  ///< those that the recording has; empty for all
  const std::vector<std::string>& types;    ///< those for streams that the recording has
};

/// A recording and the streams of it that were chosen. Valid during the call of a visitor.
struct Source {
  const std::string& file;
  ZRKMetaData::MetaDataParser& parser;
  const std::vector<ChosenStream>& streams;
};

/// Calls `visit` for each recording, in order, and returns the worst status (`worse`). A recording
/// that cannot be opened, or whose visit throws Failure, is reported on standard error, and the
/// next one is visited; any other exception ends the command. A stream of `streams` that a
/// recording lacks is reported, and the others are read; a recording without any of them is not
/// visited. Of several recordings, one may lack the stream of a "STREAM=TYPE"; one that all lack is
/// reported (NoSuchStream).
Status forEachIndexedSource(const SourceOptions& options,
                            const std::function<void(const IndexedSource&)>& visit);

/// The same for a command that reads records: the type of each stream is chosen as in
/// `chooseStreams`, and `requireMasks` is called, whose failures are those of the visit.
Status forEachSource(const SourceOptions& options, const std::function<void(const Source&)>& visit);

/// Ends a command whose messages were said: throws Failure unless the status is Done.
void endWith(Status status);

}  // namespace voxa
