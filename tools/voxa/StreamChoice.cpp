#include "tools/voxa/StreamChoice.h"

#include <fmt/format.h>

#include <boost/uuid/uuid_io.hpp>
#include <optional>
#include <stdexcept>

#include "tools/series/Guess.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/GuessedType.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/NamedTypes.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/StreamNames.h"

namespace voxa {

using ZRKMetaData::MetaDataParser;

namespace {

std::string refusalOf(const std::string& file, const std::string& name, int version) {
  return fmt::format("{}: {}: version {} is not supported; no records are read", file, name,
                     version);
}

}  // namespace

StreamChoice::StreamChoice(MetaDataParser& parser, const std::string& file,
                           const std::vector<std::string>& names,
                           const std::vector<std::string>& types)
    : m_file(file) {
  const series::NamedTypes named = namedTypes(parser, file, types);
  const auto ids = streamsNamed(parser, file, names);
  if (ids.empty()) throw Failure(Status::NoSuchStream, file + ": no metadata streams");
  StreamNames streamNames;
  for (const auto& location : parser.locations()) streamNames.add(location.first);
  m_entries.reserve(ids.size());
  for (const auto& id : ids) {
    const auto type = named.find(id);
    m_entries.push_back(examine(parser, {id, streamNames.of(id), {}},
                                type == named.end() ? std::nullopt : std::optional(type->second)));
  }
  if (ids.size() == 1 && m_entries.front().kind == Kind::Doubt) {
    throw Failure(Status::WrongUse, m_entries.front().message);
  }
}

StreamChoice::Entry StreamChoice::examine(MetaDataParser& parser, const ChosenStream& stream,
                                          const std::optional<series::RecordType>& named) const {
  Entry entry{stream, {}};
  const auto version = series::refusedVersion(parser, stream.id);
  if (version) {
    entry.message = refusalOf(m_file, stream.name, *version);
    entry.kind = Kind::Warning;
  }
  if (named) {
    entry.stream.type = *named;
    return entry;
  }
  const series::Guess guess = [&] {
    const QuietModule quiet;
    return series::guessRecordType(parser, stream.id);
  }();
  entry.stream.type = guess.candidates.front().type;
  const bool isCertain = guess.isCertain && !guess.isEmpty;
  entry.stream.isEmpty = guess.isEmpty || (version && !isCertain);
  if (version) return entry;
  if (guess.isEmpty) {
    entry.message = fmt::format("{}: {} has no records", m_file, stream.name);
  } else if (isCertain) {
    entry.message = m_file + ": " + guessedText(stream.name, entry.stream.type);
  } else {
    entry.message = m_file + ": " + doubtText({{stream.name, guess}});
    entry.kind = Kind::Doubt;
  }
  return entry;
}

void StreamChoice::sayOf(const Entry& entry) {
  if (entry.message.empty()) return;
  entry.kind == Kind::Note ? note(entry.message) : say(entry.message);
}

std::vector<ChosenStream> StreamChoice::all() const {
  std::vector<ChosenStream> chosen;
  for (const Entry& entry : m_entries) {
    sayOf(entry);
    if (entry.kind != Kind::Doubt) chosen.push_back(entry.stream);
  }
  if (chosen.empty()) {
    throw Failure(Status::WrongUse, m_file + ": no stream has a certain type; use --as");
  }
  return chosen;
}

std::optional<ChosenStream> StreamChoice::only(series::RecordType type) const {
  const Entry* found = nullptr;
  const Entry* empty = nullptr;
  std::string keys;
  for (const Entry& entry : m_entries) {
    if (entry.kind == Kind::Doubt) continue;
    if (entry.stream.isEmpty) {
      if (empty == nullptr) empty = &entry;
    } else if (entry.stream.type == type) {
      keys += " " + entry.stream.name;
      found = &entry;
    }
  }
  const char* const typeName = series::infoOf(type).name;
  if (found != nullptr) {
    if (keys != " " + found->stream.name) {
      throw Failure(Status::WrongUse, fmt::format("{}: several streams hold {}; name one of{}",
                                                  m_file, typeName, keys));
    }
    sayOf(*found);
    return found->stream;
  }
  if (empty == nullptr) return std::nullopt;
  if (m_entries.size() == 1) {
    sayOf(*empty);
  } else {
    note(fmt::format("{}: no stream of {} has records", m_file, typeName));
  }
  ChosenStream stream = empty->stream;
  stream.type = type;
  return stream;
}

void StreamChoice::sayDoubts() const {
  for (const Entry& entry : m_entries) {
    if (entry.kind == Kind::Doubt) sayOf(entry);
  }
}

std::vector<ChosenStream> chooseStreams(MetaDataParser& parser, const std::string& file,
                                        const std::vector<std::string>& names,
                                        const std::vector<std::string>& types) {
  return StreamChoice(parser, file, names, types).all();
}

ChosenStream chooseStream(MetaDataParser& parser, const std::string& file, const std::string& name,
                          const std::string& type) {
  std::vector<std::string> types;
  if (!type.empty()) types.push_back(type);
  return chooseStreams(parser, file, {name}, types).front();
}

ChosenStream chooseOfType(MetaDataParser& parser, const std::string& file, const std::string& name,
                          const std::vector<std::string>& types, series::RecordType type) {
  std::vector<std::string> names;
  if (!name.empty()) names.push_back(name);
  const StreamChoice choice(parser, file, names, types);
  const auto found = choice.only(type);
  if (!found || found->isEmpty) choice.sayDoubts();
  if (found) return *found;
  const char* const typeName = series::infoOf(type).name;
  throw Failure(
      Status::WrongUse,
      fmt::format("{0}: {1} {2}; name a stream and use --as {2}", file,
                  name.empty() ? "no stream is certain to hold" : name + " holds no", typeName));
}

bool sayRefusedVersion(MetaDataParser& parser, const std::string& file,
                       const boost::uuids::uuid& id, const std::string& name) {
  const auto version = series::refusedVersion(parser, id);
  if (version) say(refusalOf(file, name, *version));
  return version.has_value();
}

series::TimeRange timeRangeOf(const TimeOptions& options) {
  std::optional<series::FrameRate> rate;
  if (!options.rate.empty()) rate = parseRate(options.rate);
  const auto from = parseBound("--from", options.from, rate);
  const auto to = parseBound("--to", options.to, rate);
  try {
    return series::TimeRange(from, to);
  } catch (const std::invalid_argument& error) {
    throw Failure(Status::WrongUse, std::string("--to: ") + error.what());
  }
}

}  // namespace voxa
