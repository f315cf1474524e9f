// Where the host keeps the names of a recording's metadata streams until it loads them.
#pragma once

#include <string>

#include "host/Kestova/Export.h"
#include "host/Kestova/KvObject.h"

namespace Kestova {

/// One slot a kind of stream, named for the short key of the stream's identifier. The virtual
/// operations stand in this order for the modules that call them.
class KESTOVA_API ScreenMetaData : public KvObject {
 public:
  ~ScreenMetaData() override;

  /// True when no slot is filled.
  virtual bool isEmpty() const = 0;

  /// Empties all slots.
  virtual void clear() = 0;

  /// True when `filename` stands in one of the slots.
  virtual bool holds(const std::string& filename) const = 0;

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
