// Assigns stream file names to the slots of the host's screen metadata.
#pragma once

#include <string>

#include "host/Kestova/ScreenMetaDataFilenameSetter.h"
#include "module/Export.h"

/// Stateless: several threads may use one object.
class KESTOVA_VOXA_SUPPORT_API VOXAScreenMetaDataFilenameSetter
    : public Kestova::ScreenMetaDataFilenameSetter {
 public:
  VOXAScreenMetaDataFilenameSetter();
  ~VOXAScreenMetaDataFilenameSetter() override;

  /// Returns a new setter, which the caller owns.
  static Kestova::ScreenMetaDataFilenameSetter* create();

  /// Does nothing; the argument may be null.
  void initScreenMetaData(Kestova::ScreenMetaData* metaData) override;

  /// Calls the slot of `metaData` for the stream that the last component of `filename` names, with
  /// the whole of `filename`. The last component must be the identifier in exactly its lower-case
  /// text form. For any other name, and for a stream without a slot, this does nothing. Requires:
  /// `metaData` is not null when there is a slot. Throws boost::system::system_error, before any
  /// slot is called, when `filename` is not UTF-8. Exceptions of the slot pass through.
  void setScreenMetaData(Kestova::ScreenMetaData* metaData, const std::string& filename) override;
};
