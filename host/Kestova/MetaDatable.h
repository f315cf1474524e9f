// An object with metadata: attributes under string keys.
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

  /// Stores a copy of `attribute`, or the attribute that the pointer shares, under `key` and
  /// returns the stored one. Replaces an attribute that is already there. Takes the write lock of
  /// `metaDataMutex`.
  virtual boost::shared_ptr<AttributeInterface> addMetaData(const std::string& key,
                                                            const AttributeInterface& attribute);
  virtual boost::shared_ptr<AttributeInterface> addMetaData(
      const std::string& key, const boost::shared_ptr<AttributeInterface>& attribute);

  /// Removes the attribute under `key` and returns it, or null if there is none. Takes the write
  /// lock of `metaDataMutex`.
  virtual boost::shared_ptr<AttributeInterface> removeMetaData(const std::string& key);

  /// Creates an empty map and frees the previous one. The object owns the map.
  virtual MetaDataMap* createMetaDataMap() = 0;

  /// Returns the map, or null before the first use. The object owns the map.
  virtual MetaDataMap* metaDataMap() const = 0;

  /// Returns the lock that guards the map, which is the lock of the object. Null if the object
  /// belongs to no project.
  virtual boost::shared_ptr<ReadWriteMutex> metaDataMutex() const;

  /// Returns the project of the object, which becomes the owner of stored attributes.
  virtual boost::weak_ptr<const ThreadSafe> metaDataProjectMutex() const;

  /// Returns the entry of `key` in the metadata of `target` and creates an empty one if there is
  /// none. The caller holds the write lock of the target's `metaDataMutex`.
  static boost::shared_ptr<AttributeInterface>& metaDataAccessor(MetaDatable& target,
                                                                 const std::string& key);

  /// Writes the metadata of `object` as members of the enclosing JSON object, in the order of the
  /// keys. Each member follows ",\n" and the indentation of `level`; `prefix` precedes its key. The
  /// caller holds the lock.
  static void toJSON(const MetaDatable& object, const JSONOptions& options, int level,
                     const std::string& prefix);

  /// Writes the metadata as elements, one per key. The caller holds the lock.
  void metaDataXML(XMLOptions& options, int indent) const;

  /// Returns a deep copy, or null for null.
  static std::unique_ptr<MetaDataMap> cloneMetaData(const MetaDataMap* map);
};

}  // namespace Kestova
