#include "tools/recording/Sample.h"

#include <filesystem>
#include <vector>

#include "tools/files/OutputFile.h"
#include "tools/recording/Append.h"
#include "tools/recording/Container.h"
#include "tools/recording/Movie.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using recording::Bytes;
using recording::Entry;
using ZRKMetaData::ContainerKind;

namespace {

std::vector<Entry> entriesOf(const SampleOptions& options, ContainerKind kind) {
  if (!options.type.empty()) {
    return {recording::sampleEntry(options.type, options.seconds, options.seed)};
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

}  // namespace

void writeSample(const SampleOptions& options) {
  const ContainerKind kind = ZRKMetaData::containerKindOfFileName(options.out);
  if (kind == ZRKMetaData::None) {
    throw Failure(Status::WrongUse,
                  options.out + ": unknown extension; use .voxa, .mp4, .mov, .avi, .wav or .dat");
  }
  if (kind == ZRKMetaData::Raw && !options.onto.empty()) {
    throw Failure(Status::WrongUse,
                  options.out + ": a .dat file holds one stream and no media; omit --onto");
  }
  if (!options.onto.empty()) {
    requireOpens(options.onto);
    requireOtherFile(options.out, options.onto);
  }
  files::OutputFile out(options.out,
                        options.force ? files::Existing::Replace : files::Existing::Refuse);
  const Bytes block = blockOf(entriesOf(options, kind), kind);
  std::string whyUntagged;
  if (options.onto.empty()) {
    if (kind == ZRKMetaData::Atoms) out.write(recording::sampleMovie(options.seconds));
    out.write(block);
  } else {
    std::error_code unknown;
    Progress progress(options.onto, static_cast<double>(std::filesystem::file_size(
                                        std::filesystem::u8path(options.onto), unknown)));
    whyUntagged = recording::writeOnto(
        options.onto,
        kind == ZRKMetaData::Riff ? recording::Layout::Chunks : recording::Layout::Atoms, block,
        [&](std::string_view bytes) {
          out.write(bytes);
          progress.add(static_cast<ZRKMetaData::int64>(bytes.size()));
        });
  }
  out.commit();
  if (!whyUntagged.empty()) say(options.out + ": the tracks are not tagged: " + whyUntagged);
}

}  // namespace voxa
