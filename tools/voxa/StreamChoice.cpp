#include "tools/voxa/StreamChoice.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <optional>
#include <stdexcept>

#include "tools/series/Guess.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/NamedTypes.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/StreamNames.h"

namespace voxa {

using ZRKMetaData::MetaDataParser;

namespace {

std::string candidatesOf(const series::Guess& guess) {
  std::string text;
  const std::size_t count = std::max<std::size_t>(2, guess.tieCount);
  for (std::size_t index = 0; index < std::min(count, guess.candidates.size()); ++index) {
    const auto& candidate = guess.candidates[index];
    text += std::string("; ") + series::infoOf(candidate.type).name;
    if (!candidate.reasons.empty()) text += " (" + candidate.reasons.back() + ")";
  }
  return text;
}

}  // namespace

std::vector<ChosenStream> chooseStreams(MetaDataParser& parser, const std::string& file,
                                        const std::vector<std::string>& names,
                                        const std::vector<std::string>& types) {
  const series::NamedTypes named = namedTypes(parser, file, types);
  const auto ids = streamsNamed(parser, file, names);
  if (ids.empty()) throw Failure(Status::NoSuchStream, file + ": no metadata streams");

  StreamNames streamNames;
  for (const auto& location : parser.locations()) streamNames.add(location.first);
  std::vector<ChosenStream> chosen;
  for (const auto& id : ids) {
    const std::string name = streamNames.of(id);
    if (const auto type = named.find(id); type != named.end()) {
      chosen.push_back({id, name, type->second});
      continue;
    }
    const series::Guess guess = [&] {
      const QuietModule quiet;
      return series::guessRecordType(parser, id);
    }();
    if (const auto type = guess.certainType()) {
      note(fmt::format("{}: {} read as {} (guessed; override with --as)", file, name,
                       series::infoOf(*type).name));
      chosen.push_back({id, name, *type});
      continue;
    }
    const std::string doubt =
        fmt::format("{}: the record type of {} is not certain{}; use --as {}=TYPE", file, name,
                    candidatesOf(guess), name);
    if (ids.size() == 1) throw Failure(Status::WrongUse, doubt);
    say(doubt);
  }
  if (chosen.empty()) {
    throw Failure(Status::WrongUse, file + ": no stream has a certain type; use --as");
  }
  return chosen;
}

ChosenStream chooseStream(MetaDataParser& parser, const std::string& file, const std::string& name,
                          const std::string& type) {
  std::vector<std::string> types;
  if (!type.empty()) types.push_back(type);
  return chooseStreams(parser, file, {name}, types).front();
}

std::optional<ChosenStream> onlyOfType(const std::string& file,
                                       const std::vector<ChosenStream>& streams,
                                       series::RecordType type) {
  std::optional<ChosenStream> found;
  std::string keys;
  for (const ChosenStream& stream : streams) {
    if (stream.type != type) continue;
    keys += " " + stream.name;
    found = stream;
  }
  if (found && keys != " " + found->name) {
    throw Failure(Status::WrongUse, fmt::format("{}: several streams hold {}; name one of{}", file,
                                                series::infoOf(type).name, keys));
  }
  return found;
}

ChosenStream chooseOfType(MetaDataParser& parser, const std::string& file, const std::string& name,
                          const std::vector<std::string>& types, series::RecordType type) {
  std::vector<std::string> names;
  if (!name.empty()) names.push_back(name);
  auto found = onlyOfType(file, chooseStreams(parser, file, names, types), type);
  if (found) return *found;
  const char* const typeName = series::infoOf(type).name;
  throw Failure(Status::WrongUse,
                fmt::format("{}: {} holds no {}; name a stream and use --as {}", file,
                            name.empty() ? "no stream" : name, typeName, typeName));
}

series::TimeRange timeRangeOf(const TimeOptions& options) {
  std::optional<series::FrameRate> rate;
  if (!options.rate.empty()) rate = parseRate(options.rate);
  const auto bound = [&rate](const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(series::parseTime(text, rate));
  };
  try {
    return series::TimeRange(bound(options.from), bound(options.to));
  } catch (const std::invalid_argument& error) {
    throw Failure(Status::WrongUse, error.what());
  }
}

}  // namespace voxa
