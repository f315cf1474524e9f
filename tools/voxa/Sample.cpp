#include <filesystem>
#include <fstream>
#include <iostream>

#include "tools/recording/Movie.h"
#include "tools/recording/Sample.h"
#include "tools/recording/TopLevel.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using recording::Bytes;
using recording::Entry;
using ZRKMetaData::ContainerKind;

namespace {

std::vector<Entry> entriesOf(const SampleOptions& options, ContainerKind kind) {
  if (!options.stream.empty()) {
    return {recording::sampleEntry(options.stream, options.seconds, options.seed)};
  }
  if (kind == ZRKMetaData::Raw) {
    return {recording::sampleEntry("points", options.seconds, options.seed)};
  }
  return recording::sampleEntries(options.seconds, options.seed);
}

Bytes blockOf(const std::vector<Entry>& entries, ContainerKind kind) {
  if (kind == ZRKMetaData::Riff) return recording::chunkBlock(entries);
  if (kind == ZRKMetaData::Raw) return recording::entryBytes(entries.front());
  return recording::atomBlock(entries);
}

void writeFile(const std::string& name, const Bytes& bytes) {
  std::ofstream file(std::filesystem::u8path(name), std::ios::binary | std::ios::trunc);
  if (!file) throw Failure(Status::Failed, name + ": cannot be written");
  if (!(file << bytes).flush()) throw Failure(Status::Failed, name + ": cannot be written whole");
}

}  // namespace

void writeSample(const SampleOptions& options) {
  const ContainerKind kind = ZRKMetaData::containerKindOfFileName(options.out);
  if (kind == ZRKMetaData::None) {
    throw Failure(Status::WrongUse,
                  options.out + ": the name must end in .voxa, .mp4, .mov, .avi, .wav or .dat");
  }
  if (kind == ZRKMetaData::Raw && !options.onto.empty()) {
    throw Failure(Status::WrongUse, options.out + ": a .dat file holds one stream and no media");
  }
  if (!options.onto.empty()) requireOpens(options.onto);
  const Bytes block = blockOf(entriesOf(options, kind), kind);
  if (options.onto.empty()) {
    const bool hasTracks = kind == ZRKMetaData::Atoms;
    writeFile(options.out, (hasTracks ? recording::sampleMovie(options.seconds) : Bytes()) + block);
    return;
  }
  const std::string whyUntagged = recording::writeOnto(
      options.onto, options.out,
      kind == ZRKMetaData::Riff ? recording::Layout::Chunks : recording::Layout::Atoms, block);
  if (!whyUntagged.empty()) {
    std::cerr << "voxa: " << options.out << ": the tracks are not tagged: " << whyUntagged << "\n";
  }
}

}  // namespace voxa
