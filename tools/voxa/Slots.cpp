#include <boost/uuid/uuid_io.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "host/Kestova/ScreenMetaData.h"
#include "host/Kestova/Utf8.h"
#include "loader/VOXAScreenMetaDataFilenameSetter.h"
#include "names/StreamFileName.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Recording.h"

namespace voxa {

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

}  // namespace

void showSlots(const FileOptions& options) {
  const auto parser = openRecording(options.file, std::nullopt);
  const std::unique_ptr<Kestova::ScreenMetaDataFilenameSetter> setter(
      VOXAScreenMetaDataFilenameSetter::create());
  Output out;
  nlohmann::ordered_json document;
  document["file"] = Kestova::wellFormedUtf8(options.file);
  auto& streams = document["streams"] = nlohmann::ordered_json::array();
  for (const auto& [id, location] : parser->locations()) {
    const std::string text = boost::uuids::to_string(id);
    const std::string slot = slotOf(*setter, names::streamFileName(options.file, id));
    if (options.format == Format::Json) {
      streams.push_back({{"id", text}, {"slot", slot.empty() ? nullptr : nlohmann::json(slot)}});
    } else {
      out.write(fmt::format("{}  {}\n", text, slot.empty() ? "ignored" : "slot " + slot));
    }
  }
  if (options.format == Format::Json) out.write(document.dump() + "\n");
  out.flush();
}

}  // namespace voxa
