#include "host/Kestova/MetaDatable.h"

#include "host/Kestova/AttributeInterface.h"
#include "host/Kestova/Json.h"
#include "host/Kestova/ReadWriteMutex.h"
#include "host/Kestova/SubProject.h"
#include "host/Kestova/XMLable.h"

namespace Kestova {

MetaDatable::~MetaDatable() = default;

boost::shared_ptr<AttributeInterface> MetaDatable::addMetaData(
    const std::string& key, const AttributeInterface& attribute) {
  return attribute.addToMetaData(key, *this);
}

boost::shared_ptr<AttributeInterface> MetaDatable::addMetaData(
    const std::string& key, const boost::shared_ptr<AttributeInterface>& attribute) {
  const ReadWriteMutex::ScopedWriteLock lock(metaDataMutex());
  return metaDataAccessor(*this, key) = attribute;
}

boost::shared_ptr<AttributeInterface> MetaDatable::removeMetaData(const std::string& key) {
  const ReadWriteMutex::ScopedWriteLock lock(metaDataMutex());
  boost::shared_ptr<AttributeInterface> removed;
  if (MetaDataMap* const map = metaDataMap()) {
    const auto found = map->find(key);
    if (found != map->end()) {
      removed = found->second;
      map->erase(found);
    }
  }
  return removed;
}

// An object with metadata is a SubProject or has no lock. The casts keep overriders of these two
// operations out of the vtables of the classes that have metadata.
boost::shared_ptr<ReadWriteMutex> MetaDatable::metaDataMutex() const {
  const auto* const object = dynamic_cast<const SubProject*>(this);
  return object != nullptr ? object->mutex() : boost::shared_ptr<ReadWriteMutex>();
}

boost::weak_ptr<const ThreadSafe> MetaDatable::metaDataProjectMutex() const {
  const auto* const object = dynamic_cast<const SubProject*>(this);
  return object != nullptr ? object->projectMutex() : boost::weak_ptr<const ThreadSafe>();
}

boost::shared_ptr<AttributeInterface>& MetaDatable::metaDataAccessor(MetaDatable& target,
                                                                     const std::string& key) {
  MetaDataMap* map = target.metaDataMap();
  if (map == nullptr) map = target.createMetaDataMap();
  return (*map)[key];
}

void MetaDatable::toJSON(const MetaDatable& object, const JSONOptions& options, int level,
                         const std::string& prefix) {
  const MetaDataMap* const map = object.metaDataMap();
  if (map == nullptr) return;
  for (const auto& [key, attribute] : *map) {
    options.outStream() << ",\n"
                        << json_indent(level) << json_keyname(prefix + key)
                        << attribute->jsonValue();
  }
}

void MetaDatable::metaDataXML(XMLOptions& options, int indent) const {
  const MetaDataMap* const map = metaDataMap();
  if (map == nullptr) return;
  for (const auto& [key, attribute] : *map) {
    options.outStream() << XMLable::genIndent(indent) << "<MetaData key=\""
                        << xml_representation(key) << "\" value=\""
                        << xml_representation(attribute->valueString()) << "\"/>\n";
  }
}

std::unique_ptr<MetaDataMap> MetaDatable::cloneMetaData(const MetaDataMap* map) {
  if (map == nullptr) return nullptr;
  auto copy = std::make_unique<MetaDataMap>();
  for (const auto& [key, attribute] : *map) {
    boost::shared_ptr<AttributeInterface>& copied = (*copy)[key];
    copied.reset(attribute->clone());
    attribute->setupSharedClone(copied);
  }
  return copy;
}

}  // namespace Kestova
