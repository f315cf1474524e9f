#include "tools/series/PrivacyScan.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <string>
#include <type_traits>
#include <vector>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/Sources.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

using series::PasswordWindows;
using series::Secret;
using series::SecretKind;
using series::StreamPrivacy;

namespace {

struct TextStream {
  ChosenStream stream;
  StreamPrivacy privacy;
};

struct FilePrivacy {
  std::vector<TextStream> streams;
  std::string damage;  // empty for none

  bool hasSecrets() const {
    return std::any_of(streams.begin(), streams.end(),
                       [](const TextStream& text) { return text.privacy.secretCount() != 0; });
  }
};

template <class Visitor>
void forEach(ZRKMetaData::MetaDataParser& parser, const ChosenStream& stream, Visitor visitor) {
  if (stream.type == series::recordTypeOf<std::string>()) {
    series::forEachRecord<std::string>(parser, stream.id, {}, visitor);
  } else {
    series::forEachRecord<ZRKMetaData::KeyStroke>(parser, stream.id, {}, visitor);
  }
}

// Each stream as often as it is read: texts twice.
std::vector<ChosenStream> readings(const Source& source) {
  std::vector<ChosenStream> streams;
  for (const ChosenStream& stream : source.streams) {
    const bool isStrings = stream.type == series::recordTypeOf<std::string>();
    const bool isKeys = stream.type == series::recordTypeOf<ZRKMetaData::KeyStroke>();
    if (isStrings) streams.push_back(stream);
    if (isStrings || isKeys) streams.push_back(stream);
  }
  return streams;
}

FilePrivacy privacyOf(const Source& source) {
  FilePrivacy result;
  PasswordWindows windows;
  const Progress progress(source.file, bytesOf(source.parser, readings(source)));
  for (const ChosenStream& stream : source.streams) {
    const bool isStrings = stream.type == series::recordTypeOf<std::string>();
    if (!isStrings && stream.type != series::recordTypeOf<ZRKMetaData::KeyStroke>()) continue;
    const QuietModule quiet;
    try {
      if (isStrings) {
        series::forEachRecord<std::string>(
            source.parser, stream.id, {},
            [&windows](double seconds, const std::string& title) { windows.add(seconds, title); });
      }
    } catch (const series::DamagedStream&) {  // reported below
    }
    windows.finishStream();
    result.streams.push_back({stream, {}});
  }
  for (TextStream& text : result.streams) {
    series::PrivacyScan scan(windows);
    const QuietModule quiet;
    try {
      forEach(source.parser, text.stream,
              [&scan](double seconds, const auto& record) { scan.add(seconds, record); });
    } catch (const series::DamagedStream& damage) {
      if (result.damage.empty()) result.damage = damage.message(source.file);
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
  constexpr auto kStream = "  {:<6}  {:<10}  {:>10}  {:>10}  {:>10}\n";
  constexpr auto kSecret = "  {:<6}  {:>12.3f}  {:>10}  {}\n";
  out.writePrintable(file);
  if (privacy.streams.empty()) {
    out.write("\n  no stream of keystrokes or strings\n");
    return;
  }
  out.write("\n" + fmt::format(kStream, "stream", "type", "records", "characters", "secrets"));
  for (const TextStream& text : privacy.streams) {
    out.write(fmt::format(kStream, text.stream.name, series::infoOf(text.stream.type).name,
                          text.privacy.recordCount, text.privacy.characterCount,
                          text.privacy.secretCount()));
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
  const Status worst = forEachSource(options.sources, [&](const Source& source) {
    const FilePrivacy privacy = privacyOf(source);
    out.write(before);
    if (isJson) {
      writeJson(out, source.file, privacy);
    } else {
      writeTable(out, source.file, privacy);
    }
    before = isJson ? "," : "\n";
    if (!privacy.damage.empty()) {
      throw Failure(Status::DamagedData, privacy.damage + "; the records before were searched");
    }
    if (privacy.hasSecrets()) throw Failure(Status::SecretsFound, "");
  });
  if (isJson) out.write(*before == ',' ? "]}\n" : "{\"files\":[]}\n");
  out.flush();
  endWith(worst);
}

}  // namespace voxa
