#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <type_traits>
#include <vector>

#include "ZRKMetaData/src/ZRKMInputFile.h"
#include "text/Counted.h"
#include "tools/files/OutputFile.h"
#include "tools/keep/CutStream.h"
#include "tools/keep/EditList.h"
#include "tools/keep/EditListFile.h"
#include "tools/recording/Block.h"
#include "tools/series/Guess.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/StreamSource.h"

namespace voxa {

using recording::Layout;
using recording::StreamedEntry;
using recording::Write;
using series::ExactSeconds;

namespace {

using Pieces = std::vector<keep::Piece>;

std::optional<series::FrameRate> rateOf(const GraftOptions& options) {
  return options.rate.empty() ? std::nullopt : std::optional(parseRate(options.rate));
}

// "FROM-TO", or "FROM-" for all that follows. Either may be negative.
keep::Piece parseCut(const std::string& text, const std::optional<series::FrameRate>& rate) {
  const std::size_t dash = text.find('-', 1);
  if (text.empty() || dash == std::string::npos) {
    throw std::invalid_argument("--cut " + text + ": use FROM-TO, or FROM- for the rest");
  }
  keep::Piece piece;
  piece.from = series::parseTime(text.substr(0, dash), rate);
  const std::string to = text.substr(dash + 1);
  if (to.empty()) return piece;
  piece.to = series::parseTime(to, rate);
  if (series::minus(*piece.to, piece.from).numerator <= 0) {
    throw std::invalid_argument("--cut " + text + ": keeps nothing; TO must be after FROM");
  }
  return piece;
}

Pieces piecesOf(const GraftOptions& options, const std::optional<series::FrameRate>& rate) {
  Pieces pieces;
  ExactSeconds at;
  for (const std::string& cut : options.cuts) {
    if (!pieces.empty() && !pieces.back().to) {
      throw std::invalid_argument("--cut " + options.cuts[pieces.size() - 1] +
                                  ": nothing can follow the rest of the recording");
    }
    keep::Piece piece = parseCut(cut, rate);
    piece.at = at;
    if (piece.to) at = series::plus(at, series::minus(*piece.to, piece.from));
    pieces.push_back(piece);
  }
  return pieces;
}

Pieces piecesOfList(const GraftOptions& options, const std::optional<series::FrameRate>& rate) {
  requireOpens(options.editList);
  ZRKMetaData::InputFile file(options.editList);
  constexpr ZRKMetaData::int64 kMaxBytes = 64 << 20;
  const auto size = series::sizeOfSource(file);
  if (size > kMaxBytes) throw std::invalid_argument(options.editList + ": is larger than 64 MiB");
  std::string text(static_cast<std::size_t>(size), '\0');
  file.seekg(0);
  file.read(text.data(), size);
  try {
    return keep::readEditList(text, options.original, rate);
  } catch (const std::invalid_argument& error) {
    throw std::invalid_argument(options.editList + ": " + error.what());
  }
}

// `editList` is empty where the pieces are from the command line.
std::vector<keep::Segment> segmentsOf(const std::string& editList, const Pieces& pieces,
                                      const ExactSeconds& shift) {
  try {
    return keep::segmentsOf(pieces, shift);
  } catch (const std::invalid_argument& error) {
    throw std::invalid_argument((editList.empty() ? "" : editList + ": ") + error.what());
  }
}

// None where nothing moves, so that bytes can be copied.
std::optional<std::vector<keep::Segment>> segmentsOf(const GraftOptions& options) {
  try {
    const auto rate = rateOf(options);
    const Pieces pieces =
        options.editList.empty() ? piecesOf(options, rate) : piecesOfList(options, rate);
    const ExactSeconds shift =
        options.shift.empty() ? ExactSeconds() : series::parseTime(options.shift, rate);
    if (pieces.empty() && shift.numerator == 0) return std::nullopt;
    auto segments = segmentsOf(options.editList, pieces, shift);
    if (segments.empty()) {
      throw std::invalid_argument(options.editList + ": keeps nothing of the recording");
    }
    return segments;
  } catch (const std::invalid_argument& error) {
    throw Failure(Status::WrongUse, error.what());
  }
}

StreamedEntry copiedEntry(const SourceStream& stream) {
  return {
      stream.name, static_cast<std::uint64_t>(stream.extent.present),
      [&stream](const Write& write) { series::readEntry(*stream.parser, stream.extent, write); }};
}

// The records of `stream` as an edit left them. Adds what cannot be read to `damages`.
template <class Record>
StreamedEntry cutEntry(const SourceStream& stream, const std::vector<keep::Segment>& segments,
                       Damages& damages) {
  const QuietModule quiet;
  try {
    const auto cut = std::make_shared<keep::CutStream<Record>>(*stream.parser, stream.id, segments);
    if (cut->damage()) damages.add(cut->damage()->message(stream.file));
    if (cut->leftOutCount() != 0) {
      say(stream.file + ": stream " + stream.name + ": " +
          text::counted(cut->leftOutCount(), "record") + " without a time left out");
    }
    return {stream.name, cut->byteCount(), [cut](const Write& write) { cut->write(write); }};
  } catch (const std::runtime_error& error) {
    throw Failure(Status::Failed, stream.file + ": stream " + stream.name + ": " + error.what());
  }
}

StreamedEntry cutEntry(const SourceStream& stream, const series::NamedTypes& named,
                       const std::vector<keep::Segment>& segments, Damages& damages) {
  const auto header = ZRKMetaData::readHeaderAt(stream.parser->stream(), stream.extent.offset);
  const QuietModule quiet;
  if (!isReadableVersion(header)) {
    throw Failure(Status::Failed, stream.file + ": stream " + stream.name + " has version " +
                                      std::to_string(header.version) +
                                      ", whose records cannot be moved; graft without cuts");
  }
  auto type = named.find(stream.id) == named.end() ? std::nullopt
                                                   : std::optional(named.find(stream.id)->second);
  if (!type) {
    const series::Guess guess = series::guessRecordType(*stream.parser, stream.id);
    if (guess.isEmpty) return copiedEntry(stream);
    type = guess.certainType();
  }
  if (!type) {
    throw Failure(Status::WrongUse, stream.file + ": the record type of " + stream.name +
                                        " is not certain; use --as " + stream.name + "=TYPE");
  }
  return series::visitRecordType(*type, [&](const auto& row) {
    return cutEntry<typename std::decay_t<decltype(row)>::type>(stream, segments, damages);
  });
}

Layout layoutOf(const GraftOptions& options) {
  const auto kind = ZRKMetaData::containerKindOfFileName(options.out);
  const auto editedKind = ZRKMetaData::containerKindOfFileName(options.edited);
  if (kind == ZRKMetaData::None || kind == ZRKMetaData::Raw) {
    throw Failure(Status::WrongUse,
                  options.out +
                      ": no metadata can be appended to media with this extension; use "
                      ".voxa, .mp4, .mov, .avi or .wav");
  }
  if (editedKind != ZRKMetaData::None && editedKind != kind) {
    throw Failure(Status::WrongUse, options.out + ": has another container than " + options.edited +
                                        "; use its extension");
  }
  return kind == ZRKMetaData::Riff ? Layout::Chunks : Layout::Atoms;
}

// Of several entries with one identifier the last one counts, so that ours replace those of the
// edited file. Its others stay.
void nameOthers(const GraftOptions& options, Layout layout, const StreamSource& source) {
  const auto parser = openRecording(
      options.edited, layout == Layout::Chunks ? ZRKMetaData::Riff : ZRKMetaData::Atoms);
  std::string others;
  for (const auto& location : parser->locations()) {
    const auto& streams = source.streams();
    const auto found =
        std::lower_bound(streams.begin(), streams.end(), location.first,
                         [](const SourceStream& stream, const auto& id) { return stream.id < id; });
    const bool isReplaced = found != streams.end() && found->id == location.first;
    if (!isReplaced) others += " " + boost::uuids::to_string(location.first);
  }
  if (!others.empty()) say(options.edited + ": has streams of its own, which stay:" + others);
}

}  // namespace

void graftStreams(const GraftOptions& options) {
  const Layout layout = layoutOf(options);
  const auto segments = segmentsOf(options);
  const StreamSource source(options.original);
  requireOpens(options.edited);
  requireOtherFile(options.out, options.edited);
  source.requireOther(options.out);
  const auto named = source.namedTypes(options.types);
  Damages damages = source.damages();
  std::vector<StreamedEntry> entries;
  for (const SourceStream& stream : source.streams()) {
    entries.push_back(segments ? cutEntry(stream, named, *segments, damages) : copiedEntry(stream));
  }
  try {
    recording::requireFits(layout, entries);
  } catch (const std::runtime_error& error) {
    throw Failure(Status::Failed, options.out + ": " + error.what());
  }
  nameOthers(options, layout, source);

  files::OutputFile out(options.out,
                        options.force ? files::Existing::Replace : files::Existing::Refuse);
  std::error_code error;
  const auto mediaBytes =
      std::filesystem::file_size(std::filesystem::u8path(options.edited), error);
  Progress progress(options.edited,
                    source.byteCount() + (error ? 0.0 : static_cast<double>(mediaBytes)));
  recording::copyForBlock(options.edited, layout, [&](std::string_view bytes) {
    out.write(bytes);
    progress.add(static_cast<ZRKMetaData::int64>(bytes.size()));
  });
  {
    const QuietModule quiet;
    recording::writeBlock(layout, entries, [&out](std::string_view bytes) { out.write(bytes); });
  }
  out.commit();
  damages.throwIfAny();
}

}  // namespace voxa
