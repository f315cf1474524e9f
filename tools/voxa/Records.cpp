#include <boost/uuid/uuid.hpp>
#include <optional>
#include <type_traits>

#include "tools/series/RecordStream.h"
#include "tools/series/RecordTypes.h"
#include "tools/series/TimeRange.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/Masks.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

namespace {

// Prints the records of the stream. Returns why they end early, nothing when they do not.
template <class Record>
std::optional<series::DamagedStream> print(ZRKMetaData::MetaDataParser& parser,
                                           const boost::uuids::uuid& id,
                                           const series::TimeRange& range,
                                           series::Redaction redaction, RowWriter& rows) {
  rows.header([](auto& row) { series::describeTimed(row, 0, Record()); });
  const QuietModule quiet;
  try {
    series::forEachRecord<Record>(
        parser, id, range,
        series::redacting(redaction, [&rows](double seconds, const Record& record) {
          rows.write([&](auto& row) { series::describeTimed(row, seconds, record); });
        }));
  } catch (const series::DamagedStream& damage) {
    return damage;
  }
  return std::nullopt;
}

}  // namespace

void printRecords(const RecordsOptions& options) {
  const series::TimeRange range = timeRangeOf(options.times);
  const auto parser = openRecording(options.file, options.container);
  requireOtherFile(options.out.file, options.file);
  const ChosenStream stream = chooseStream(*parser, options.file, options.stream, options.type);
  requireMasks(*parser, options.file, {stream}, options.redaction);
  const Progress progress(options.file, bytesOf(*parser, {stream}));
  Output out(options.out);
  RowWriter rows(out, options.format);
  if (options.format == Format::Json) out.write("{\"records\":[");
  const auto damage = series::visitRecordType(stream.type, [&](const auto& row) {
    return print<typename std::decay_t<decltype(row)>::type>(*parser, stream.id, range,
                                                             options.redaction, rows);
  });
  if (options.format == Format::Json) {
    out.write("]");
    if (damage) {
      out.write(",\"error\":");
      out.writeJsonString(damage->reason());
    }
    out.write("}\n");
  }
  out.finish();
  if (damage) {
    throw Failure(Status::DamagedData,
                  damage->message(options.file) + "; the records before are printed");
  }
}

}  // namespace voxa
