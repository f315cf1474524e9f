#include "loader/VOXAScreenMetaDataFilenameSetter.h"

#include <boost/uuid/uuid_io.hpp>
#include <cstddef>
#include <string>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "host/Kestova/ScreenMetaData.h"
#include "names/WindowsPath.h"

using Kestova::ScreenMetaData;

namespace {

struct Slot {
  unsigned char key;  // the short key of the stream
  void (ScreenMetaData::*setFilename)(const std::string&);
};

// The host has no slots for the other registered identifiers (EF, FC, 00, 02, 03, 04).
constexpr Slot kSlots[] = {
    {0xF7, &ScreenMetaData::setF7Filename}, {0xF8, &ScreenMetaData::setF8Filename},
    {0xF9, &ScreenMetaData::setF9Filename}, {0xFA, &ScreenMetaData::setFAFilename},
    {0xF1, &ScreenMetaData::setF1Filename}, {0xF3, &ScreenMetaData::setF3Filename},
    {0xF2, &ScreenMetaData::setF2Filename}, {0xF0, &ScreenMetaData::setF0Filename},
    {0xFB, &ScreenMetaData::setFBFilename}, {0xF6, &ScreenMetaData::setF6Filename},
    {0xF5, &ScreenMetaData::setF5Filename}, {0x01, &ScreenMetaData::set01Filename},
};

// The offset of the two hexadecimal digits of the key in the text of an identifier. The other
// characters are the same in all identifiers that have slots.
constexpr std::size_t kKeyOffset = 6;

void setKey(std::string& text, unsigned char key) {
  static constexpr char kDigits[] = "0123456789abcdef";
  text[kKeyOffset] = kDigits[key >> 4U];
  text[kKeyOffset + 1] = kDigits[key & 0xFU];
}

}  // namespace

VOXAScreenMetaDataFilenameSetter::VOXAScreenMetaDataFilenameSetter() = default;
VOXAScreenMetaDataFilenameSetter::~VOXAScreenMetaDataFilenameSetter() = default;

Kestova::ScreenMetaDataFilenameSetter* VOXAScreenMetaDataFilenameSetter::create() {
  return new VOXAScreenMetaDataFilenameSetter;
}

void VOXAScreenMetaDataFilenameSetter::initScreenMetaData(ScreenMetaData* /*metaData*/) {}

void VOXAScreenMetaDataFilenameSetter::setScreenMetaData(ScreenMetaData* metaData,
                                                         const std::string& filename) {
  const std::string leaf = names::WindowsPath(filename).filename();
  std::string slotLeaf = boost::uuids::to_string(ZRKMetaData::MetaDataUUID::identifierWithKey(0));
  for (const Slot& slot : kSlots) {
    setKey(slotLeaf, slot.key);
    if (leaf == slotLeaf) {
      (metaData->*slot.setFilename)(filename);
      return;
    }
  }
}
