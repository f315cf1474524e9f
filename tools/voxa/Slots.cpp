#include <fmt/format.h>

#include <boost/uuid/uuid_io.hpp>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "names/StreamFileName.h"
#include "tools/host/SlotFinder.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"

namespace voxa {

using ZRKMetaData::MetaDataLocations;

namespace {

void writeJson(Output& out, const std::string& file, const MetaDataLocations& streams,
               const hosting::SlotFinder& finder) {
  JsonRow document(out);
  document.field("file", file);
  document.array("streams", streams, [&](const auto& stream) {
    const std::string slot = finder.slotOf(names::streamFileName(file, stream.first));
    JsonRow row(out);
    row.field("id", boost::uuids::to_string(stream.first));
    if (slot.empty()) {
      row.null("slot");
    } else {
      row.field("slot", slot);
    }
    row.end();
  });
  document.end();
  out.write("\n");
}

void writeTable(Output& out, const std::string& file, const MetaDataLocations& streams,
                const hosting::SlotFinder& finder) {
  for (const auto& [id, location] : streams) {
    const std::string slot = finder.slotOf(names::streamFileName(file, id));
    out.write(fmt::format("{}  {}\n", boost::uuids::to_string(id),
                          slot.empty() ? "ignored" : "slot " + slot));
  }
}

}  // namespace

void showSlots(const FileOptions& options) {
  const auto parser = openForModule(options.file, ScanMessages::Printed);
  Output out;
  const auto write = options.format == Format::Json ? writeJson : writeTable;
  write(out, options.file, parser->locations(), hosting::SlotFinder());
  out.flush();
}

}  // namespace voxa
