// What carries metadata: named attributes under string keys.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <map>
#include <memory>
#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

class AttributeInterface;
class JSONOptions;
class ReadWriteMutex;
class ThreadSafe;
class XMLOptions;

using MetaDataMap = std::map<std::string, boost::shared_ptr<AttributeInterface>>;

class KESTOVA_API MetaDatable {
 public:
  virtual ~MetaDatable();

  /// Stores a copy of `attribute`, or the attribute that the pointer shares, under `key` in the
  /// place of what stood there, and returns what is stored now. Takes the write lock of
  /// `metaDataMutex`.
  virtual boost::shared_ptr<AttributeInterface> addMetaData(const std::string& key,
                                                            const AttributeInterface& attribute);
  virtual boost::shared_ptr<AttributeInterface> addMetaData(
      const std::string& key, const boost::shared_ptr<AttributeInterface>& attribute);

  /// Removes what stands under `key` and returns it, null when there is nothing. Takes the write
  /// lock of `metaDataMutex`.
  virtual boost::shared_ptr<AttributeInterface> removeMetaData(const std::string& key);

  /// Makes an empty map in the place of the present one, which is freed. The object owns it.
  virtual MetaDataMap* createMetaDataMap() = 0;

  /// The map, null until first use. The object owns it.
  virtual MetaDataMap* metaDataMap() const = 0;

  /// The lock that guards the map: the object's own. Null when the object belongs to no project.
  virtual boost::shared_ptr<ReadWriteMutex> metaDataMutex() const;

  /// The project of the object, which attributes stored here get as their owner.
  virtual boost::weak_ptr<const ThreadSafe> metaDataProjectMutex() const;

  /// The place of `key` in the metadata of `target`; an empty one is made when there is none. The
  /// caller holds the write lock of the target's `metaDataMutex`.
  static boost::shared_ptr<AttributeInterface>& metaDataAccessor(MetaDatable& target,
                                                                 const std::string& key);

  /// Writes the metadata of `object` as members of the JSON object around it, in the order of the
  /// keys, each behind ",\n" at the given level, `prefix` in front of its key. The caller holds the
  /// lock.
  static void toJSON(const MetaDatable& object, const JSONOptions& options, int level,
                     const std::string& prefix);

  /// Writes the metadata as elements, one a key. The caller holds the lock.
  void metaDataXML(XMLOptions& options, int indent) const;

  /// A deep copy, or null for null.
  static std::unique_ptr<MetaDataMap> cloneMetaData(const MetaDataMap* map);
};

}  // namespace Kestova
