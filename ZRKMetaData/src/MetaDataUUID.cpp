#include "ZRKMetaData/src/MetaDataUUID.h"

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <iostream>

#include "ZRKMetaData/src/ZRKMLittleEndian.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

namespace {

constexpr int kCurrentVersion = 1;

// F4 is missing on purpose: no format of this family uses it.
constexpr std::array<unsigned char, MetaDataUUID::kKnownCount> kKnownKeys = {
    0xEF, 0xF0, 0xF1, 0xF2, 0xF3, 0xF5, 0xF6, 0xF7, 0xF8,
    0xF9, 0xFA, 0xFB, 0xFC, 0x00, 0x01, 0x02, 0x03, 0x04};

std::array<boost::uuids::uuid, MetaDataUUID::kKnownCount> makeKnownIdentifiers() {
  std::array<boost::uuids::uuid, MetaDataUUID::kKnownCount> identifiers{};
  std::transform(kKnownKeys.begin(), kKnownKeys.end(), identifiers.begin(),
                 &MetaDataUUID::identifierWithKey);
  return identifiers;
}

}  // namespace

MetaDataHeader readHeader(StreamWindow& in) {
  MetaDataHeader header;
  in.read(header.uuid.data, sizeof header.uuid.data);
  readLittleEndian(in, header.version);
  readLittleEndian(in, header.reserved);
  return header;
}

MetaDataHeader readHeaderAt(std::istream& stream, int64 offset) {
  stream.clear();
  StreamWindow in(stream, offset, 0);
  return readHeader(in);
}

int MetaDataUUID::currentVersionForUUID(const boost::uuids::uuid& id) {
  if (isKnown(id)) return kCurrentVersion;
  std::cout << "MetaDataUUID::currentVersionForUUID - unsupported UUID = " << id << std::endl;
  return kUnknownVersion;
}

bool MetaDataUUID::isKnown(const boost::uuids::uuid& id) {
  const auto& known = knownIdentifiers();
  return std::find(known.begin(), known.end(), id) != known.end();
}

const std::array<boost::uuids::uuid, MetaDataUUID::kKnownCount>& MetaDataUUID::knownIdentifiers() {
  static const auto identifiers = makeKnownIdentifiers();
  return identifiers;
}

std::string MetaDataUUID::shortKey(const boost::uuids::uuid& id) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const unsigned key = id.data[3];
  return {kDigits[key >> 4U], kDigits[key & 0xFU]};
}

boost::uuids::uuid MetaDataUUID::identifierWithKey(unsigned char key) {
  return {{0x2B, 0x7B, 0x6A, key, 0x7A, 0x1F, 0x11, 0xE2, 0x83, 0xD0, 0x00, 0x17, 0xF2, 0x00, 0xBE,
           0x7F}};
}

bool isReadableVersion(const MetaDataHeader& header) {
  return header.version == MetaDataUUID::currentVersionForUUID(header.uuid);
}

}  // namespace ZRKMetaData
