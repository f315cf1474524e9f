#include "tools/host/SlotFinder.h"

#include "host/Kestova/ScreenMetaData.h"
#include "loader/VOXAScreenMetaDataFilenameSetter.h"

namespace hosting {

namespace {

// Records the slot that was filled last.
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

}  // namespace

SlotFinder::SlotFinder() : m_setter(VOXAScreenMetaDataFilenameSetter::create()) {}

std::string SlotFinder::slotOf(const std::string& streamFileName) const {
  LastSlot metaData;
  m_setter->initScreenMetaData(&metaData);
  m_setter->setScreenMetaData(&metaData, streamFileName);
  return metaData.slot();
}

}  // namespace hosting
