// Files stream file names under the host's slots.
#pragma once

#include "host/Kestova/ScreenMetaDataFilenameSetter.h"
#include "module/Export.h"

/// There is no state: one object serves any number of threads.
class KESTOVA_VOXA_SUPPORT_API VOXAScreenMetaDataFilenameSetter
    : public Kestova::ScreenMetaDataFilenameSetter {
 public:
  VOXAScreenMetaDataFilenameSetter();
  ~VOXAScreenMetaDataFilenameSetter() override;

  /// A new setter. The caller owns it.
  static Kestova::ScreenMetaDataFilenameSetter* create();

  /// Does nothing; the argument may be null.
  void initScreenMetaData(Kestova::ScreenMetaData* metaData) override;

  /// Hands the whole of `filename` to the slot of `metaData` whose stream its last component names,
  /// in exactly the lower-case text of the identifier. Names of other streams, of no stream or in
  /// another spelling are left alone. `metaData` is not null when there is a slot. Throws
  /// boost::system::system_error for a name that is not UTF-8, having called no slot, and what the
  /// slot throws.
  void setScreenMetaData(Kestova::ScreenMetaData* metaData, const std::string& filename) override;
};
