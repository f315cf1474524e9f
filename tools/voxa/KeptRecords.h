// Reads the records of a stream with options --from, --to, --simplify and --redact.
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <string>

#include "tools/series/RecordStream.h"
#include "tools/series/Redact.h"
#include "tools/series/Simplify.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

/// Whether the times of the records in `range` never fall. Messages of the parser are dropped,
/// because the reading that follows writes the same ones.
template <class Record>
bool timesNeverFall(ZRKMetaData::MetaDataParser& parser, const ChosenStream& stream,
                    const series::TimeRange& range) {
  const SilentScan silent;
  const QuietModule quiet;
  return series::timesNeverFall<Record>(parser, stream.id, range);
}

/// Which records a command reads, and how.
struct ReadOptions {
  series::TimeRange range;
  std::optional<double> tolerance;  ///< --simplify
  series::Redaction redaction = series::Redaction::None;
};

/// Calls `visitor(seconds, record)` for each record of `stream` in the range, and with a tolerance
/// only for those that series::Simplifier keeps. How many it drops is said on standard error; it
/// drops nothing, and says so, where the times fall, because a later record may then change what
/// holds at an earlier time. What changes is decided before texts are masked. Throws as
/// series::forEachRecord does, after the records before the damage.
template <class Record, class Visitor>
void forEachKept(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                 const ChosenStream& stream, const ReadOptions& options, Visitor&& visitor) {
  auto masking = series::redacting(options.redaction, visitor);
  const auto readAll = [&](auto&& each) {
    const QuietModule quiet;
    series::forEachRecord<Record>(parser, stream.id, options.range, each);
  };
  if (!options.tolerance || !series::kIsHeld<Record>) return readAll(masking);
  if (!timesNeverFall<Record>(parser, stream, options.range)) {
    say(fmt::format("{}: {}: the times fall; --simplify drops nothing", file, stream.name));
    return readAll(masking);
  }
  series::Simplifier<Record> simplifier(*options.tolerance);
  std::uint64_t count = 0;
  const auto finish = [&] {
    simplifier.finish(masking);
    note(fmt::format("{}: {}: {} of {} records dropped", file, stream.name,
                     simplifier.droppedCount(), count));
  };
  try {
    readAll([&](double seconds, const Record& record) {
      ++count;
      simplifier.add(seconds, record, masking);
    });
  } catch (const series::DamagedStream&) {
    finish();
    throw;
  }
  finish();
}

}  // namespace voxa
