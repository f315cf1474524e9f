#include <boost/uuid/uuid_io.hpp>

#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Describe.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"

namespace voxa {

namespace {

template <class Record>
class RecordPrinter final : public ZRKMetaData::DataStreamObserver<Record> {
 public:
  explicit RecordPrinter(RowWriter& rows) : m_rows(rows) {
    m_rows.header([](auto& row) { describeRecord(row, 0, Record()); });
  }

  bool onData(double seconds, const Record& record) override {
    m_rows.write([&](auto& row) { describeRecord(row, seconds, record); });
    return true;
  }

 private:
  template <class Row>
  static void describeRecord(Row& row, double seconds, const Record& record) {
    row.field("time", seconds);
    describe(row, record);
  }

  RowWriter& m_rows;
};

// Prints the stream; what its reader throws is returned as its text, empty for none.
template <class Record>
std::string print(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                  RowWriter& rows) {
  RecordPrinter<Record> printer(rows);
  const auto location = parser.locationOf(id);
  const QuietModule quiet;
  try {
    ZRKMetaData::MetaDataReader<Record>().parseFile(printer, parser.stream(), location.offset,
                                                    location.size);
  } catch (const Failure&) {
    throw;  // ours: the output, not the recording
  } catch (const std::exception& error) {
    return error.what();
  }
  return {};
}

using Print = std::string (*)(ZRKMetaData::MetaDataParser&, const boost::uuids::uuid&, RowWriter&);

Print printerOf(const std::string& type) {
  if (type == "ints") return print<int>;
  if (type == "doubles") return print<double>;
  if (type == "int64s") return print<ZRKMetaData::int64>;
  if (type == "strings") return print<std::string>;
  if (type == "keystrokes") return print<ZRKMetaData::KeyStroke>;
  if (type == "points") return print<ZRKMetaData::Point>;
  if (type == "rects") return print<ZRKMetaData::Rect>;
  if (type == "cursor-images") return print<ZRKMetaData::CursorImage>;
  throw Failure(Status::WrongUse, "no records of type " + type);
}

}  // namespace

void printRecords(const RecordsOptions& options) {
  const Print printStream = printerOf(options.type);
  const auto parser = openRecording(options.file, options.container);
  const auto id = findStream(*parser, options.file, options.stream);
  Output out;
  RowWriter rows(out, options.format);
  if (options.format == Format::Json) out.write("{\"records\":[");
  const std::string error = printStream(*parser, id, rows);
  if (options.format == Format::Json) {
    out.write("]");
    if (!error.empty()) {
      out.write(",\"error\":");
      out.writeJsonString(error);
    }
    out.write("}\n");
  }
  out.flush();
  if (!error.empty()) {
    throw Failure(Status::DamagedData,
                  options.file + ": stream " + boost::uuids::to_string(id) + ": " + error);
  }
}

}  // namespace voxa
