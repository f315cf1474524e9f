#include <gtest/gtest.h>

#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <sstream>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tests/support/Captured.h"
#include "tools/recording/Container.h"

namespace ZRKMetaData {
namespace {

using testing_support::Captured;

boost::uuids::uuid identifier(const std::string& text) {
  return boost::uuids::string_generator()(text);
}

TEST(Registry, HasVersionOneForItsEighteenIdentifiers) {
  const std::string keys = "EF F0 F1 F2 F3 F5 F6 F7 F8 F9 FA FB FC 00 01 02 03 04";
  std::istringstream words(keys);
  std::size_t count = 0;
  for (std::string key; words >> key; ++count) {
    const auto id = recording::streamId(static_cast<unsigned char>(std::stoi(key, nullptr, 16)));
    const Captured out(std::cout);
    EXPECT_EQ(MetaDataUUID::currentVersionForUUID(id), 1) << key;
    EXPECT_EQ(out.text(), "") << key;
    EXPECT_EQ(MetaDataUUID::shortKey(id), key);
    EXPECT_EQ(MetaDataUUID::knownIdentifiers().at(count), id) << key;
  }
  EXPECT_EQ(count, MetaDataUUID::knownIdentifiers().size());
}

TEST(Registry, PrintsUnknownIdentifiers) {
  for (const char* const text : {"2b7b6af4-7a1f-11e2-83d0-0017f200be7f",  // never used
                                 "2b7b6af0-7a1f-11e2-83ac-0017f200be7f",  // another byte differs
                                 "00000000-0000-0000-0000-000000000000"}) {
    const Captured out(std::cout);
    EXPECT_EQ(MetaDataUUID::currentVersionForUUID(identifier(text)), -1);
    EXPECT_EQ(out.text(), std::string("MetaDataUUID::currentVersionForUUID - unsupported UUID = ") +
                              text + "\n");
  }
}

TEST(Registry, AcceptsOnlyEqualVersions) {
  const auto known = recording::streamId(0xF0);
  const auto unknown = recording::streamId(0xF4);
  struct Case {
    boost::uuids::uuid id;
    int32 version;
    bool passes;
  };
  for (const Case& c : {Case{known, 1, true}, Case{known, 0, false}, Case{known, 2, false},
                        Case{known, -1, false}, Case{unknown, -1, true}, Case{unknown, 1, false}}) {
    const Captured quiet(std::cout);
    EXPECT_EQ(isReadableVersion({c.id, c.version, 0}), c.passes) << c.id << " " << c.version;
  }
}

TEST(Header, HasDefaultsForMissingBytes) {
  recording::Entry entry{recording::streamId(0xF0), "", 0x01020304, 0x0A0B0C0D};
  const std::string whole = recording::entryBytes(entry);
  struct Case {
    std::size_t size;
    int32 version;
    uint32 reserved;
  };
  for (const Case& c :
       {Case{24, 0x01020304, 0x0A0B0C0D}, Case{22, 0x01020304, 0x00000C0D}, Case{20, 0x01020304, 0},
        Case{18, static_cast<int32>(0xFFFF0304), 0}, Case{16, -1, 0}, Case{0, -1, 0}}) {
    std::istringstream in(whole.substr(0, c.size));
    in.setstate(std::ios::failbit);  // as an earlier read may leave it
    const MetaDataHeader header = readHeaderAt(in, 0);
    EXPECT_EQ(header.version, c.version) << c.size;
    EXPECT_EQ(header.reserved, c.reserved) << c.size;
    EXPECT_EQ(header.uuid, c.size >= 16 ? entry.id : boost::uuids::uuid{}) << c.size;
  }
}

}  // namespace
}  // namespace ZRKMetaData
