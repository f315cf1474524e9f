// An observable value: the name of a parameter, or an item of metadata.
#pragma once

#include <boost/smart_ptr/weak_ptr.hpp>
#include <memory>
#include <string>

#include "host/Kestova/AttributeInterface.h"
#include "host/Kestova/SubProject.h"
#include "host/Kestova/Subject.h"

namespace Kestova {

/// Instantiated for std::string. `value` and `clone` lock the owner's mutex. `setValue` does not:
/// the caller holds the owner's write lock.
template <class T>
class Attribute : public SubProject, public AttributeInterface, public Subject {
 public:
  Attribute(const T& value, const boost::weak_ptr<const ThreadSafe>& owner);

  /// A copy has the value, the owner, copies of the metadata and no observers.
  Attribute(const Attribute& other);
  Attribute& operator=(const Attribute&) = delete;
  ~Attribute() override;

  // SubProject
  boost::weak_ptr<const ThreadSafe> projectMutex() const override;
  void interfaceHook() override;
  bool interfaceQuery() const override;

  /// A copy of the value, read under the lock.
  virtual T value() const;

  /// Sets the value, notifies the observers even when it is the same, and returns the old value.
  virtual T setValue(const T& newValue);

  /// A hook for hosts; does nothing.
  virtual void attributeHook();

  // AttributeInterface
  /// Copies under the lock. The caller owns the copy. The return type is AttributeInterface because
  /// Attribute has two Cloneable bases.
  AttributeInterface* clone() const override;
  /// A copy of the value, without a lock.
  std::string valueString() const override;
  boost::shared_ptr<AttributeInterface> addToMetaData(const std::string& key,
                                                      MetaDatable& target) const override;
  std::string jsonValue() const override;

  // XMLable: the element "Attribute" with its value
  void xmlElementName(XMLOptions& options) const override;
  void xmlAttributes(XMLOptions& options) const override;

  // MetaDatable
  MetaDataMap* createMetaDataMap() override;
  MetaDataMap* metaDataMap() const override;

 private:
  T m_value;
  const boost::weak_ptr<const ThreadSafe> m_owner;
  std::unique_ptr<MetaDataMap> m_metaData;
};

}  // namespace Kestova
