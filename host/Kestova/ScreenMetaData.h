// Stores the names of a recording's metadata streams until the host loads them.
#pragma once

#include <string>

#include "host/Kestova/Export.h"
#include "host/Kestova/KvObject.h"

namespace Kestova {

/// Has one slot per kind of stream, named after the short key of the stream's identifier. The order
/// of the virtual operations is part of the interface.
class KESTOVA_API ScreenMetaData : public KvObject {
 public:
  ~ScreenMetaData() override;

  /// Returns true if all slots are empty.
  virtual bool isEmpty() const = 0;

  /// Empties all slots.
  virtual void clear() = 0;

  /// Returns true if one of the slots holds `filename`.
  virtual bool holds(const std::string& filename) const = 0;

  // Each stores a copy of a stream file name in its slot.
  virtual void setF0Filename(const std::string& filename) = 0;
  virtual void setF1Filename(const std::string& filename) = 0;
  virtual void setF2Filename(const std::string& filename) = 0;
  virtual void setF3Filename(const std::string& filename) = 0;
  virtual void setF4Filename(const std::string& filename) = 0;
  virtual void setF5Filename(const std::string& filename) = 0;
  virtual void setF6Filename(const std::string& filename) = 0;
  virtual void setFBFilename(const std::string& filename) = 0;
  virtual void setF7Filename(const std::string& filename) = 0;
  virtual void setF8Filename(const std::string& filename) = 0;
  virtual void setF9Filename(const std::string& filename) = 0;
  virtual void setFAFilename(const std::string& filename) = 0;
  virtual void set01Filename(const std::string& filename) = 0;
};

}  // namespace Kestova
