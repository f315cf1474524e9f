#include "tools/series/Salvage.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMInputFile.h"
#include "text/Counted.h"
#include "tools/files/OutputFile.h"
#include "tools/recording/Block.h"
#include "tools/recording/Container.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Extension.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"

namespace voxa {

using series::SalvagedStream;
using series::SalvageState;
using ZRKMetaData::int64;
using ZRKMetaData::MetaDataHeader;
using ZRKMetaData::MetaDataUUID;

namespace {

using Streams = std::vector<SalvagedStream>;

constexpr const char* kExtension = ".voxa";

// The recording OUT.doubtful.voxa beside OUT.voxa.
std::string doubtfulName(const std::string& out) {
  return out.substr(0, out.size() - std::string_view(kExtension).size()) + ".doubtful" + kExtension;
}

Streams chosen(const Streams& streams, SalvageState state) {
  Streams result;
  std::copy_if(streams.begin(), streams.end(), std::back_inserter(result),
               [state](const SalvagedStream& stream) { return stream.state == state; });
  return result;
}

const char* nameOf(SalvageState state) {
  switch (state) {
    case SalvageState::Certain:
      return "certain";
    case SalvageState::Doubtful:
    case SalvageState::Superseded:
      return "doubtful";
    case SalvageState::Old:
      return "old";
  }
  return "";
}

// Throws std::runtime_error when the file has become shorter.
void copyRecords(std::istream& file, const SalvagedStream& stream, const recording::Write& write) {
  constexpr int64 kPieceBytes = 1 << 16;
  std::string piece;
  int64 left = stream.size - MetaDataHeader::kByteCount;
  file.clear();
  file.seekg(stream.offset + MetaDataHeader::kByteCount);
  while (left > 0) {
    piece.resize(static_cast<std::size_t>(std::min(left, kPieceBytes)));
    if (!file.read(piece.data(), static_cast<std::streamsize>(piece.size()))) {
      throw std::runtime_error("the file became shorter while it was read");
    }
    write(piece);
    left -= static_cast<int64>(piece.size());
  }
}

void writeBlock(std::istream& file, const Streams& streams, files::OutputFile& out) {
  std::vector<recording::StreamedEntry> entries;
  for (const SalvagedStream& stream : streams) {
    entries.push_back(
        {boost::uuids::to_string(stream.header.uuid), static_cast<std::uint64_t>(stream.size),
         [&file, &stream](const recording::Write& write) {
           const MetaDataHeader& header = stream.header;
           write(recording::entryBytes(
               {header.uuid, "", series::readableVersion(header.uuid), header.reserved}));
           copyRecords(file, stream, write);
         }});
  }
  recording::writeBlock(recording::Layout::Atoms, entries,
                        [&out](std::string_view bytes) { out.write(bytes); });
}

void describeCount(JsonRow& row, const SalvagedStream& stream) {
  if (stream.recordCount) {
    row.field("records", *stream.recordCount);
  } else {
    row.null("records");
  }
}

template <class Row>
void describeCount(Row& row, const SalvagedStream& stream) {
  row.field("records", stream.recordCount ? std::to_string(*stream.recordCount) : "-");
}

template <class Row>
void describeStream(Row& row, const SalvagedStream& stream) {
  row.field("id", boost::uuids::to_string(stream.header.uuid));
  row.field("key", MetaDataUUID::shortKey(stream.header.uuid));
  row.field("offset", stream.offset);
  row.field("size", stream.size);
  describeCount(row, stream);
  row.field("cut", stream.isCut);
  row.field("state", std::string(nameOf(stream.state)));
  row.field("reason", stream.state == SalvageState::Superseded
                          ? stream.reason + "; another doubtful stream is written instead"
                          : stream.reason);
}

// The files that are written; empty names for none.
struct Written {
  std::string certain;
  std::string doubtful;
};

void writeJson(Output& out, const std::string& file, const Written& written,
               const Streams& streams) {
  JsonRow document(out);
  document.field("file", file);
  const auto name = [&document](const char* key, const std::string& value) {
    if (value.empty()) {
      document.null(key);
    } else {
      document.field(key, value);
    }
  };
  name("out", written.certain);
  name("doubtful", written.doubtful);
  document.array("ranges", streams, [&out](const SalvagedStream& stream) {
    JsonRow row(out);
    describeStream(row, stream);
    row.end();
  });
  document.end();
  out.write("\n");
}

void writeTable(Output& out, const std::string& file, const Written& written,
                const Streams& streams) {
  out.writePrintable(file);
  out.write(": " + text::counted(streams.size(), "stream"));
  for (const std::string& name : {written.certain, written.doubtful}) {
    if (!name.empty()) out.write(" -> ");
    out.writePrintable(name);
  }
  out.write("\n");
  RowWriter rows(out, Format::Table, {-36, -3, 14, 14, -9, -4, -8});
  rows.header([](auto& row) { describeStream(row, {}); });
  for (const SalvagedStream& stream : streams) {
    rows.write([&stream](auto& row) { describeStream(row, stream); });
  }
}

// So that a file of an earlier run is not taken for one of this run.
void sayLeft(const std::string& name, const char* state) {
  std::error_code absent;
  if (std::filesystem::exists(std::filesystem::u8path(name), absent)) {
    say(fmt::format("{}: was there before and is left as it is; no stream is {}", name, state));
  }
}

Streams readStreams(const SalvageOptions& options, std::istream& file) {
  if (!options.container) requireContainer(options.file);
  const auto kind = options.container.value_or(ZRKMetaData::containerKindOfFileName(options.file));
  try {
    return series::salvageStreams(file, kind);
  } catch (const std::runtime_error& error) {
    throw Failure(Status::Failed, options.file + ": " + error.what());
  }
}

}  // namespace

void salvageRecording(const SalvageOptions& options) {
  if (extensionOf(options.out) != kExtension) {
    throw Failure(Status::WrongUse, options.out + ": the name must end in " + kExtension);
  }
  const std::string doubtfulOut = doubtfulName(options.out);
  requireOpens(options.file);
  requireOtherFile(options.out, options.file);
  requireOtherFile(doubtfulOut, options.file);
  ZRKMetaData::InputFile file(options.file);
  const Streams streams = [&] {
    const Progress progress(options.file, static_cast<double>(series::sizeOfSource(file)));
    return readStreams(options, file);
  }();
  if (streams.empty()) {
    throw Failure(Status::Failed, options.file + ": no stream was found");
  }
  // Both files are opened before one is written, so that one that exists refuses both.
  struct Part {
    std::string name;
    SalvageState state;
    Streams streams;
    std::unique_ptr<files::OutputFile> file;
  };
  Part parts[] = {
      {options.out, SalvageState::Certain, chosen(streams, SalvageState::Certain), nullptr},
      {doubtfulOut, SalvageState::Doubtful, chosen(streams, SalvageState::Doubtful), nullptr}};
  for (Part& part : parts) {
    if (part.streams.empty()) {
      sayLeft(part.name, nameOf(part.state));
      part.name.clear();
      continue;
    }
    part.file = std::make_unique<files::OutputFile>(
        part.name, options.force ? files::Existing::Replace : files::Existing::Refuse);
  }
  for (const Part& part : parts) {
    if (!part.file) continue;
    try {
      writeBlock(file, part.streams, *part.file);
    } catch (const std::runtime_error& error) {
      throw Failure(Status::Failed, options.file + ": " + error.what());
    }
  }
  for (const Part& part : parts) {
    if (part.file) part.file->commit();
  }
  const Written written = {parts[0].name, parts[1].name};
  Output out;
  if (options.format == Format::Json) {
    writeJson(out, options.file, written, streams);
  } else {
    writeTable(out, options.file, written, streams);
  }
  out.flush();
  const auto doubtful =
      std::count_if(streams.begin(), streams.end(), [](const SalvagedStream& stream) {
        return stream.state == SalvageState::Doubtful || stream.state == SalvageState::Superseded;
      });
  if (doubtful != 0) {
    throw Failure(Status::DamagedData,
                  fmt::format("{}: {} of {} doubtful, written to {}", options.file, doubtful,
                              text::counted(streams.size(), "stream"), doubtfulOut));
  }
}

}  // namespace voxa
