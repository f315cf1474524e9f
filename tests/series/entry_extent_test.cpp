// The bytes of an entry, whatever header its container gives it.
#include "tools/series/EntryExtent.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <string>

#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace {

using recording::Bytes;
using series::EntryExtent;
using ZRKMetaData::MetaDataParser;

struct Row {
  const char* name;
  ZRKMetaData::ContainerKind kind;
  Bytes before;
  Bytes after;
};

const recording::Entry kEntry = {recording::streamId(0xF9), recording::stringRecord(1, "odd")};

std::vector<Row> rows() {
  using recording::atom;
  using recording::wideAtom;
  const Bytes payload = recording::entryBytes(kEntry);
  const auto around = [&payload](const Bytes& whole) {
    const std::size_t at = whole.find(payload);
    return std::pair(whole.substr(0, at), whole.substr(at + payload.size()));
  };
  const auto row = [&](const char* name, ZRKMetaData::ContainerKind kind, const Bytes& whole) {
    const auto [before, after] = around(whole);
    return Row{name, kind, before, after};
  };
  return {row("ordinary", ZRKMetaData::Atoms, atom("ZRKM", atom("DATA", payload))),
          row("followed", ZRKMetaData::Atoms,
              atom("ZRKM", atom("DATA", payload)) + atom("free", "data")),
          row("wide", ZRKMetaData::Atoms, atom("ZRKM", wideAtom("DATA", payload))),
          row("chunk", ZRKMetaData::Riff, recording::chunkBlock({kEntry})),
          row("raw", ZRKMetaData::Raw, payload)};
}

TEST(EntryExtent, HasTheHeaderAndTheRecordsInEveryContainer) {
  const Bytes payload = recording::entryBytes(kEntry);
  for (const Row& row : rows()) {
    for (const std::size_t kept : {payload.size(), payload.size() - 1, std::size_t{24}}) {
      const bool isWhole = kept == payload.size();
      std::istringstream file(row.before + payload.substr(0, kept) +
                              (isWhole ? row.after : Bytes()));
      const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForStream(file, row.kind));
      const EntryExtent extent = series::entryExtent(*parser, parser->locationOf(kEntry.id));
      EXPECT_EQ(extent.offset, static_cast<std::streamoff>(row.before.size())) << row.name;
      EXPECT_EQ(extent.present, static_cast<std::streamoff>(kept)) << row.name;
      EXPECT_EQ(extent.isCut(), !isWhole && row.kind != ZRKMetaData::Raw) << row.name;
      Bytes read;
      series::readEntry(*parser, extent, [&read](std::string_view piece) { read += piece; });
      EXPECT_EQ(read, payload.substr(0, kept)) << row.name;
    }
  }
}

TEST(EntryExtent, IsBoundedWhateverSizeIsIndexed) {
  std::istringstream file(Bytes(100, '\0'));
  const std::unique_ptr<MetaDataParser> parser(
      MetaDataParser::createForStream(file, ZRKMetaData::Atoms));
  constexpr auto kMax = std::numeric_limits<ZRKMetaData::int64>::max();
  for (const ZRKMetaData::MetaDataLocation location :
       {ZRKMetaData::MetaDataLocation{40, kMax}, {40, -kMax - 1}, {kMax, kMax}, {kMax, 5}}) {
    const EntryExtent extent = series::entryExtent(*parser, location);
    EXPECT_GE(extent.announced, extent.present);
    EXPECT_EQ(extent.present, location.offset == 40 && location.size > 0 ? 60 : 0);
  }
}

}  // namespace
