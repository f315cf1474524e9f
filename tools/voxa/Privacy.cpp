#include "tools/series/PrivacyScan.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <string>
#include <type_traits>
#include <vector>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/Guess.h"
#include "tools/series/Overrun.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/Masks.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/NamedTypes.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/Sources.h"
#include "tools/voxa/StreamChoice.h"
#include "tools/voxa/StreamNames.h"

namespace voxa {

using series::PasswordWindows;
using series::Secret;
using series::SecretKind;
using series::StreamPrivacy;

namespace {

struct TextStream {
  ChosenStream stream;
  bool isCertain = false;  // its type
  StreamPrivacy privacy;
};

struct FilePrivacy {
  std::vector<TextStream> streams;
  std::vector<std::string> failures;  // why streams, or parts of them, were not searched
  Status status = Status::Done;       // of the failures

  bool hasSecrets() const {
    return std::any_of(streams.begin(), streams.end(),
                       [](const TextStream& text) { return text.privacy.secretCount() != 0; });
  }

  void fail(Status failed, const std::string& message) {
    failures.push_back(message);
    status = worse(status, failed);
  }
};

bool isStrings(const TextStream& text) {
  return text.stream.type == series::recordTypeOf<std::string>();
}

// Which streams are searched: those that may hold text by their bytes, whatever else they may hold.
// A stream that may be both keystrokes and strings is searched as both.
class TextStreams {
 public:
  TextStreams(const IndexedSource& source, FilePrivacy& privacy)
      : m_source(source),
        m_named(namedTypes(source.parser, source.file, source.types)),
        m_privacy(privacy) {}

  void find() {
    const auto ids = streamsNamed(m_source.parser, m_source.file, m_source.streams);
    if (ids.empty()) throw Failure(Status::NoSuchStream, m_source.file + ": no metadata streams");
    StreamNames names;
    for (const auto& location : m_source.parser.locations()) names.add(location.first);
    for (const auto& id : ids) add({id, names.of(id), {}});
  }

 private:
  void add(ChosenStream stream) {
    const QuietModule quiet;
    const auto named = m_named.find(stream.id);
    if (named != m_named.end() && !isText(named->second)) return;
    if (const auto version = series::refusedVersion(m_source.parser, stream.id)) {
      m_privacy.fail(Status::Failed,
                     fmt::format("{}: {}: version {} is not supported; the stream was not searched",
                                 m_source.file, stream.name, *version));
    } else if (named != m_named.end()) {
      add(stream, named->second, true);
    } else {
      addGuessed(stream);
    }
  }

  void addGuessed(const ChosenStream& stream) {
    const auto extent = series::entryExtent(m_source.parser, m_source.parser.locationOf(stream.id));
    const series::Guess guess = series::guessRecordType(m_source.parser, stream.id);
    if (guess.isEmpty && !extent.isCut()) {
      note(fmt::format("{}: {} has no records", m_source.file, stream.name));
      return;
    }
    if (const auto certain = guess.certainType()) {
      if (!isText(*certain)) return;
      note(fmt::format("{}: {} read as {} (guessed; override with --as)", m_source.file,
                       stream.name, series::infoOf(*certain).name));
      add(stream, *certain, true);
      return;
    }
    const auto possible = series::possibleRecordTypes(m_source.parser, stream.id);
    bool isSearched = false;
    for (const series::RecordType type : possible.types) {
      if (!isText(type)) continue;
      add(stream, type, false);
      isSearched = true;
    }
    if (isSearched) return;
    if (extent.isCut()) {
      // A text that is longer than what is left of it explains nothing: any other type may win.
      m_privacy.fail(Status::Failed,
                     fmt::format("{0}: {1}: {2} and its type is not certain; the stream was not "
                                 "searched; use --as {1}=TYPE",
                                 m_source.file, stream.name, extent.cutText()));
    } else if (!possible.isExplained) {
      m_privacy.fail(Status::Failed, fmt::format("{0}: no record type fits {1}, which was not "
                                                 "searched; use --as {1}=TYPE",
                                                 m_source.file, stream.name));
    }
  }

  void add(ChosenStream stream, series::RecordType type, bool isCertain) {
    stream.type = type;
    m_privacy.streams.push_back({stream, isCertain, {}});
  }

  const IndexedSource& m_source;
  const series::NamedTypes m_named;
  FilePrivacy& m_privacy;
};

template <class Visitor>
void forEach(ZRKMetaData::MetaDataParser& parser, const TextStream& text, Visitor visitor) {
  const QuietModule quiet;
  if (isStrings(text)) {
    series::forEachRecord<std::string>(parser, text.stream.id, {}, visitor);
  } else {
    series::forEachRecord<ZRKMetaData::KeyStroke>(parser, text.stream.id, {}, visitor);
  }
}

// Each stream as often as it is read: texts twice.
std::vector<ChosenStream> readings(const FilePrivacy& privacy) {
  std::vector<ChosenStream> streams;
  for (const TextStream& text : privacy.streams) {
    if (isStrings(text)) streams.push_back(text.stream);
    streams.push_back(text.stream);
  }
  return streams;
}

FilePrivacy privacyOf(const IndexedSource& source) {
  FilePrivacy result;
  TextStreams(source, result).find();
  PasswordWindows windows;
  const Progress progress(source.file, bytesOf(source.parser, readings(result)));
  for (const TextStream& text : result.streams) {
    if (!isStrings(text)) continue;
    const QuietModule quiet;
    try {
      series::forEachRecord<std::string>(
          source.parser, text.stream.id, {},
          [&windows](double seconds, const std::string& title) { windows.add(seconds, title); });
    } catch (const series::DamagedStream&) {  // reported below
    }
    windows.finishStream();
  }
  for (TextStream& text : result.streams) {
    series::PrivacyScan scan(windows);
    try {
      forEach(source.parser, text,
              [&scan](double seconds, const auto& record) { scan.add(seconds, record); });
    } catch (const series::DamagedStream& damage) {
      result.fail(Status::DamagedData,
                  damage.message(source.file) + "; the records before were searched");
    }
    text.privacy = scan.finish();
  }
  return result;
}

// "e-mail address" is "email_address" for programs.
std::string labelOf(SecretKind kind) {
  std::string label = nameOf(kind);
  std::replace(label.begin(), label.end(), '_', ' ');
  return label;
}

void writeTable(Output& out, const std::string& file, const FilePrivacy& privacy) {
  constexpr auto kStream = "  {:<6}  {:<10}  {:>10}  {:>10}  {:>10}{}\n";
  constexpr auto kSecret = "  {:<6}  {:>12.3f}  {:>10}  {}\n";
  out.writePrintable(file);
  if (privacy.streams.empty()) {
    out.write("\n  no stream of keystrokes or strings\n");
    return;
  }
  out.write("\n" + fmt::format(kStream, "stream", "type", "records", "characters", "secrets", ""));
  for (const TextStream& text : privacy.streams) {
    out.write(fmt::format(kStream, text.stream.name, series::infoOf(text.stream.type).name,
                          text.privacy.recordCount, text.privacy.characterCount,
                          text.privacy.secretCount(), text.isCertain ? "" : "  type not certain"));
  }
  if (!privacy.hasSecrets()) return;
  out.write(
      fmt::format("\n  {:<6}  {:>12}  {:>10}  {}\n", "stream", "time", "characters", "looks like"));
  for (const TextStream& text : privacy.streams) {
    for (const Secret& secret : text.privacy.secrets) {
      out.write(fmt::format(kSecret, text.stream.name, secret.seconds, secret.characters,
                            labelOf(secret.kind)));
    }
    const auto more = text.privacy.secretCount() - text.privacy.secrets.size();
    if (more != 0) out.write(fmt::format("  {:<6}  and {} more\n", text.stream.name, more));
  }
}

void writeJson(Output& out, const std::string& file, const FilePrivacy& privacy) {
  JsonRow row(out);
  row.field("file", file);
  row.array("streams", privacy.streams, [&out](const TextStream& text) {
    JsonRow stream(out);
    stream.field("id", boost::uuids::to_string(text.stream.id));
    stream.field("key", ZRKMetaData::MetaDataUUID::shortKey(text.stream.id));
    stream.field("type", std::string(series::infoOf(text.stream.type).name));
    stream.field("certain", text.isCertain);
    stream.field("records", text.privacy.recordCount);
    stream.field("characters", text.privacy.characterCount);
    stream.object("secrets", [&text](auto& counts) {
      for (std::size_t kind = 0; kind < series::kSecretKindCount; ++kind) {
        counts.field(nameOf(static_cast<SecretKind>(kind)), text.privacy.secretCounts[kind]);
      }
    });
    stream.array("found", text.privacy.secrets, [&out](const Secret& secret) {
      JsonRow found(out);
      found.field("kind", std::string(nameOf(secret.kind)));
      found.field("time", secret.seconds);
      found.field("characters", secret.characters);
      found.end();
    });
    stream.end();
  });
  row.end();
}

}  // namespace

void showPrivacy(const PrivacyOptions& options) {
  Output out;
  const bool isJson = options.format == Format::Json;
  const char* before = isJson ? "{\"files\":[" : "";
  const Status worst = forEachIndexedSource(options.sources, [&](const IndexedSource& source) {
    const auto overrun = series::findOverrun(source.parser.stream(), source.parser.containerKind(),
                                             source.parser.locations());
    if (overrun) sayError(source.file + ": " + overrun->text());
    FilePrivacy privacy = privacyOf(source);
    if (overrun) privacy.status = worse(privacy.status, Status::DamagedData);
    out.write(before);
    if (isJson) {
      writeJson(out, source.file, privacy);
    } else {
      writeTable(out, source.file, privacy);
    }
    before = isJson ? "," : "\n";
    for (const std::string& failure : privacy.failures) sayError(failure);
    endWith(privacy.hasSecrets() ? worse(privacy.status, Status::SecretsFound) : privacy.status);
  });
  if (isJson) out.write(*before == ',' ? "]}\n" : "{\"files\":[]}\n");
  out.flush();
  endWith(worst);
}

}  // namespace voxa
