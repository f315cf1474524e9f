#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>
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
#include "tools/voxa/GuessedType.h"
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

// The type of each stream that must be moved; nothing for one without records.
using Types = std::vector<std::optional<series::RecordType>>;

Types typesOf(const GraftOptions& options, const StreamSource& source,
              const series::NamedTypes& named) {
  const QuietModule quiet;
  Types types;
  std::vector<std::pair<std::string, series::Guess>> doubts;
  for (const SourceStream& stream : source.streams()) {
    const auto header = ZRKMetaData::readHeaderAt(stream.parser->stream(), stream.extent.offset);
    if (!isReadableVersion(header)) {
      throw Failure(Status::Failed, stream.file + ": stream " + stream.name + " has version " +
                                        std::to_string(header.version) +
                                        ", whose records cannot be moved; graft without cuts");
    }
    const auto found = named.find(stream.id);
    if (found != named.end()) {
      types.emplace_back(found->second);
      continue;
    }
    const series::Guess guess = series::guessRecordType(*stream.parser, stream.id);
    types.push_back(guess.isEmpty ? std::nullopt : guess.certainType());
    if (types.back()) {
      note(options.original + ": " + guessedText(stream.name, *types.back()));
    } else if (!guess.isEmpty) {
      doubts.emplace_back(stream.name, guess);
    }
  }
  if (!doubts.empty()) {
    throw Failure(Status::WrongUse, options.original + ": " + doubtText(doubts));
  }
  return types;
}

// Moves the records of streams to where an edit put them.
class Cutter {
 public:
  // Adds what cannot be read to `damages`. Both must outlive the object.
  Cutter(const std::vector<keep::Segment>& segments, Damages& damages)
      : m_segments(segments), m_damages(damages) {}

  StreamedEntry entryOf(const SourceStream& stream, series::RecordType type) {
    return series::visitRecordType(type, [&](const auto& row) {
      return entryOf<typename std::decay_t<decltype(row)>::type>(stream);
    });
  }

  // The latest time of a record of these streams, in seconds.
  double latest() const { return m_latest; }

 private:
  template <class Record>
  StreamedEntry entryOf(const SourceStream& stream) {
    const QuietModule quiet;
    try {
      const auto cut =
          std::make_shared<keep::CutStream<Record>>(*stream.parser, stream.id, m_segments);
      m_latest = std::max(m_latest, cut->latest());
      if (cut->damage()) m_damages.add(cut->damage()->message(stream.file));
      if (cut->leftOutCount() != 0) {
        say(stream.file + ": stream " + stream.name + ": " +
            text::counted(cut->leftOutCount(), "record") + " without a time left out");
      }
      return {stream.name, cut->byteCount(), [cut](const Write& write) { cut->write(write); }};
    } catch (const std::runtime_error& error) {
      throw Failure(Status::Failed, stream.file + ": stream " + stream.name + ": " + error.what());
    }
  }

  const std::vector<keep::Segment>& m_segments;
  Damages& m_damages;
  double m_latest = -std::numeric_limits<double>::infinity();
};

// A part behind all records is legal, but rarely what was meant.
void nameLateParts(const GraftOptions& options, const std::vector<keep::Segment>& segments,
                   double latest) {
  const auto isLate = [latest](const keep::Segment& part) { return part.range.from() > latest; };
  const auto first = std::find_if(segments.begin(), segments.end(), isLate);
  if (first == segments.end() || !std::isfinite(latest)) return;
  constexpr double kHour = 3600;
  const bool isHourOff = !options.editList.empty() && first->range.from() >= kHour;
  say(fmt::format("{}: the part from {:.10g} s begins after the last record at {:.10g} s{}",
                  options.original, first->range.from(), latest,
                  isHourOff ? "; does the list count from 01:00:00:00?" : ""));
}

std::vector<StreamedEntry> cutEntries(const GraftOptions& options, const StreamSource& source,
                                      const Types& types,
                                      const std::vector<keep::Segment>& segments,
                                      Damages& damages) {
  Cutter cutter(segments, damages);
  std::vector<StreamedEntry> entries;
  for (std::size_t index = 0; index < types.size(); ++index) {
    const SourceStream& stream = source.streams()[index];
    entries.push_back(types[index] ? cutter.entryOf(stream, *types[index]) : copiedEntry(stream));
  }
  nameLateParts(options, segments, cutter.latest());
  return entries;
}

std::vector<StreamedEntry> copiedEntries(const StreamSource& source) {
  std::vector<StreamedEntry> entries;
  for (const SourceStream& stream : source.streams()) entries.push_back(copiedEntry(stream));
  return entries;
}

Layout layoutOf(const GraftOptions& options) {
  const auto kindOf = [&options](const std::string& file) {
    return kindOfOther(file, options.container)
        .value_or(ZRKMetaData::containerKindOfFileName(file));
  };
  const auto kind = kindOf(options.out);
  const auto editedKind = kindOf(options.edited);
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
  const StreamSource source(options.original, kindOfOther(options.original, options.container));
  requireOpens(options.edited);
  requireOtherFile(options.out, options.edited);
  source.requireOther(options.out);
  const auto named = source.namedTypes(options.types);
  Damages damages = source.damages();
  const std::vector<StreamedEntry> entries =
      segments ? cutEntries(options, source, typesOf(options, source, named), *segments, damages)
               : copiedEntries(source);
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
