#include "params/Attribute.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <utility>

#include "host/Kestova/Json.h"
#include "host/Kestova/ReadWriteMutex.h"

namespace Kestova {

template <class T>
Attribute<T>::Attribute(const T& value, const boost::weak_ptr<const ThreadSafe>& owner)
    : Subject(owner), m_value(value), m_owner(owner) {}

template <class T>
Attribute<T>::Attribute(const Attribute& other)
    : XMLIdentified(other),
      SubProject(other),
      AttributeInterface(other),
      Subject(other),
      m_value(other.m_value),
      m_owner(other.m_owner),
      m_metaData(MetaDatable::cloneMetaData(other.m_metaData.get())) {}

template <class T>
Attribute<T>::~Attribute() = default;

template <class T>
boost::weak_ptr<const ThreadSafe> Attribute<T>::projectMutex() const {
  return m_owner;
}

template <class T>
void Attribute<T>::interfaceHook() {}

template <class T>
bool Attribute<T>::interfaceQuery() const {
  return false;
}

template <class T>
T Attribute<T>::value() const {
  const ReadWriteMutex::ScopedReadLock lock(this->mutex());
  return m_value;
}

template <class T>
T Attribute<T>::setValue(const T& newValue) {
  T old = m_value;
  if (&newValue != &m_value) m_value = newValue;
  this->notify();
  return old;
}

template <class T>
void Attribute<T>::attributeHook() {}

template <class T>
AttributeInterface* Attribute<T>::clone() const {
  const ReadWriteMutex::ScopedReadLock lock(this->mutex());
  return new Attribute(*this);
}

template <class T>
std::string Attribute<T>::valueString() const {
  return m_value;
}

template <class T>
boost::shared_ptr<AttributeInterface> Attribute<T>::addToMetaData(const std::string& key,
                                                                  MetaDatable& target) const {
  const ReadWriteMutex::ScopedWriteLock lock(target.metaDataMutex());
  const auto copy = boost::make_shared<Attribute>(m_value, target.metaDataProjectMutex());
  MetaDatable::metaDataAccessor(target, key) = copy;
  return copy;
}

template <class T>
std::string Attribute<T>::jsonValue() const {
  return json_representation(m_value);
}

template <class T>
void Attribute<T>::xmlElementName(XMLOptions& options) const {
  options.outStream() << "Attribute";
}

template <class T>
void Attribute<T>::xmlAttributes(XMLOptions& options) const {
  options.outStream() << "value=\"" << xml_representation(m_value) << '"';
}

template <class T>
MetaDataMap* Attribute<T>::createMetaDataMap() {
  m_metaData = std::make_unique<MetaDataMap>();
  return m_metaData.get();
}

template <class T>
MetaDataMap* Attribute<T>::metaDataMap() const {
  return m_metaData.get();
}

template class Attribute<std::string>;

}  // namespace Kestova
