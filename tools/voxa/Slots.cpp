#include <boost/uuid/uuid_io.hpp>
#include <memory>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "host/Kestova/ScreenMetaData.h"
#include "loader/VOXAScreenMetaDataFilenameSetter.h"
#include "names/StreamFileName.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"

namespace voxa {

using ZRKMetaData::MetaDataLocations;

namespace {

// Remembers which slot was filled last.
class LastSlot final : public Kestova::ScreenMetaData {
 public:
  bool isEmpty() const override { return m_slot.empty(); }
  void clear() override { m_slot.clear(); }
  bool holds(const std::string& filename) const override { return filename == m_filename; }
  void setF0Filename(const std::string& filename) override { fill("F0", filename); }
  void setF1Filename(const std::string& filename) override { fill("F1", filename); }
  void setF2Filename(const std::string& filename) override { fill("F2", filename); }
  void setF3Filename(const std::string& filename) override { fill("F3", filename); }
  void setF4Filename(const std::string& filename) override { fill("F4", filename); }
  void setF5Filename(const std::string& filename) override { fill("F5", filename); }
  void setF6Filename(const std::string& filename) override { fill("F6", filename); }
  void setFBFilename(const std::string& filename) override { fill("FB", filename); }
  void setF7Filename(const std::string& filename) override { fill("F7", filename); }
  void setF8Filename(const std::string& filename) override { fill("F8", filename); }
  void setF9Filename(const std::string& filename) override { fill("F9", filename); }
  void setFAFilename(const std::string& filename) override { fill("FA", filename); }
  void set01Filename(const std::string& filename) override { fill("01", filename); }

  /// The short key of the slot, empty for none.
  const std::string& slot() const { return m_slot; }

 private:
  void fill(const char* slot, const std::string& filename) {
    m_slot = slot;
    m_filename = filename;
  }

  std::string m_slot;
  std::string m_filename;
};

std::string slotOf(Kestova::ScreenMetaDataFilenameSetter& setter, const std::string& name) {
  LastSlot metaData;
  setter.initScreenMetaData(&metaData);
  setter.setScreenMetaData(&metaData, name);
  return metaData.slot();
}

void writeJson(Output& out, const std::string& file, const MetaDataLocations& streams,
               Kestova::ScreenMetaDataFilenameSetter& setter) {
  JsonRow document(out);
  document.field("file", file);
  document.array("streams", streams, [&](const auto& stream) {
    const std::string slot = slotOf(setter, names::streamFileName(file, stream.first));
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
                Kestova::ScreenMetaDataFilenameSetter& setter) {
  for (const auto& [id, location] : streams) {
    const std::string slot = slotOf(setter, names::streamFileName(file, id));
    out.write(fmt::format("{}  {}\n", boost::uuids::to_string(id),
                          slot.empty() ? "ignored" : "slot " + slot));
  }
}

}  // namespace

void showSlots(const FileOptions& options) {
  const auto parser = openForModule(options.file);
  const std::unique_ptr<Kestova::ScreenMetaDataFilenameSetter> setter(
      VOXAScreenMetaDataFilenameSetter::create());
  Output out;
  const auto write = options.format == Format::Json ? writeJson : writeTable;
  write(out, options.file, parser->locations(), *setter);
  out.flush();
}

}  // namespace voxa
