// A metadata value of any type.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>

#include "host/Kestova/Cloneable.h"
#include "host/Kestova/Export.h"

namespace Kestova {

class MetaDatable;

class KESTOVA_API AttributeInterface : public Cloneable {
 public:
  ~AttributeInterface() override;

  /// Returns a new copy of the most derived class. The caller owns it.
  AttributeInterface* clone() const override = 0;

  /// Called with a new copy of this attribute once a shared pointer owns it, for attributes that
  /// keep a reference to themselves. Does nothing by default.
  virtual void setupSharedClone(const boost::shared_ptr<AttributeInterface>& sharedClone) const;

  /// Returns the value as plain text.
  virtual std::string valueString() const = 0;

  /// Stores a copy of this attribute, owned by the project of `target`, under `key` in the metadata
  /// of `target` and returns the copy. Takes the write lock of the target's metadata.
  virtual boost::shared_ptr<AttributeInterface> addToMetaData(const std::string& key,
                                                              MetaDatable& target) const = 0;

  /// Returns the value as JSON text.
  virtual std::string jsonValue() const = 0;
};

}  // namespace Kestova
