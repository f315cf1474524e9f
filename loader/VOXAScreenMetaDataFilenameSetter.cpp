#include "loader/VOXAScreenMetaDataFilenameSetter.h"

#include <boost/uuid/uuid_io.hpp>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "host/Kestova/ScreenMetaData.h"
#include "names/WindowsPath.h"

using Kestova::ScreenMetaData;

namespace {

struct Slot {
  unsigned char key;  // of the stream's identifier
  void (ScreenMetaData::*setFilename)(const std::string&);
};

// The registry's other identifiers (EF, FC, 00, 02, 03, 04) have no slot on purpose.
constexpr Slot kSlots[] = {
    {0xF7, &ScreenMetaData::setF7Filename}, {0xF8, &ScreenMetaData::setF8Filename},
    {0xF9, &ScreenMetaData::setF9Filename}, {0xFA, &ScreenMetaData::setFAFilename},
    {0xF1, &ScreenMetaData::setF1Filename}, {0xF3, &ScreenMetaData::setF3Filename},
    {0xF2, &ScreenMetaData::setF2Filename}, {0xF0, &ScreenMetaData::setF0Filename},
    {0xFB, &ScreenMetaData::setFBFilename}, {0xF6, &ScreenMetaData::setF6Filename},
    {0xF5, &ScreenMetaData::setF5Filename}, {0x01, &ScreenMetaData::set01Filename},
};

std::string textOf(unsigned char key) {
  return boost::uuids::to_string(ZRKMetaData::MetaDataUUID::identifierWithKey(key));
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
  for (const Slot& slot : kSlots) {
    if (leaf == textOf(slot.key)) {
      (metaData->*slot.setFilename)(filename);
      return;
    }
  }
}
