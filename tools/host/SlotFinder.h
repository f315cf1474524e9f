// Asks the module under which slot of the host a stream is filed.
#pragma once

#include <memory>
#include <string>

#include "host/Kestova/ScreenMetaDataFilenameSetter.h"

namespace hosting {

/// Used by one thread.
class SlotFinder {
 public:
  SlotFinder();

  /// The short key of the slot for this stream file name, empty for none.
  std::string slotOf(const std::string& streamFileName) const;

 private:
  std::unique_ptr<Kestova::ScreenMetaDataFilenameSetter> m_setter;
};

}  // namespace hosting
