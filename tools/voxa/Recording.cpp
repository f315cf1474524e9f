#include "tools/voxa/Recording.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMInputFile.h"
#include "text/Utf8.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/QuietModule.h"

namespace voxa {

using ZRKMetaData::MetaDataParser;
using ZRKMetaData::MetaDataUUID;

namespace {

// `error` is errno after the attempt to open, 0 where the system has none.
std::string whyClosed(const std::string& file, int error) {
  std::error_code absent;
  const auto status = std::filesystem::status(std::filesystem::u8path(file), absent);
  if (absent) return absent.message();
  if (std::filesystem::is_directory(status)) return "it is a folder";
  if (!std::filesystem::is_regular_file(status)) return "it is not a regular file";
  return error != 0 ? std::generic_category().message(error) : "permission denied";
}

bool isShortKey(const std::string& text) {
  return text.size() == 2 && std::all_of(text.begin(), text.end(), [](unsigned char character) {
           return std::isxdigit(character) != 0;
         });
}

std::string upperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char character) {
    return static_cast<char>(std::toupper(character));
  });
  return text;
}

std::optional<boost::uuids::uuid> lookUpKey(const MetaDataParser& parser, const std::string& file,
                                            const std::string& key) {
  std::vector<boost::uuids::uuid> candidates;
  for (const auto& [id, location] : parser.locations()) {
    if (MetaDataUUID::shortKey(id) != key) continue;
    if (MetaDataUUID::isKnown(id)) return id;
    candidates.push_back(id);
  }
  if (candidates.empty()) return std::nullopt;
  if (candidates.size() == 1) return candidates.front();
  std::string list;
  for (const auto& id : candidates) list += " " + boost::uuids::to_string(id);
  throw Failure(Status::WrongUse,
                file + ": several streams have the key " + key + "; use one of:" + list);
}

std::optional<boost::uuids::uuid> parseIdentifier(const std::string& text) {
  constexpr std::size_t kTextSize = 36;
  try {
    if (text.size() == kTextSize) return boost::uuids::string_generator()(text);
  } catch (const std::runtime_error&) {  // then it is none
  }
  return std::nullopt;
}

std::unique_ptr<MetaDataParser> open(const std::string& file,
                                     std::optional<ZRKMetaData::ContainerKind> kind,
                                     ScanMessages messages, const char* remedy) {
  requireOpens(file);
  const auto used = kind.value_or(ZRKMetaData::containerKindOfFileName(file));
  if (used == ZRKMetaData::None) {
    say(file + ": unknown extension, nothing was scanned; " + remedy);
  }
  const QuietModule quiet;
  std::optional<SilentScan> silent;
  if (messages == ScanMessages::Dropped) silent.emplace();
  return std::unique_ptr<MetaDataParser>(MetaDataParser::createForFile(file, used));
}

}  // namespace

void requireOpens(const std::string& file) {
  errno = 0;
  if (!ZRKMetaData::InputFile(file).isOpen()) {
    throw Failure(Status::CannotOpen, file + ": cannot be opened: " + whyClosed(file, errno));
  }
}

void requireContainer(const std::string& file) {
  if (ZRKMetaData::containerKindOfFileName(file) == ZRKMetaData::None) {
    throw Failure(Status::WrongUse, file + ": unknown extension; use --container");
  }
}

std::optional<ZRKMetaData::ContainerKind> kindOfOther(
    const std::string& file, std::optional<ZRKMetaData::ContainerKind> kind) {
  const bool isKnown = ZRKMetaData::containerKindOfFileName(file) != ZRKMetaData::None;
  return isKnown ? std::nullopt : kind;
}

void requireOtherFile(const std::string& out, const std::string& source) {
  std::error_code absent;  // then they differ
  if (std::filesystem::equivalent(std::filesystem::u8path(source), std::filesystem::u8path(out),
                                  absent)) {
    throw Failure(Status::Failed, out + ": is the file that is read; write to another one");
  }
}

std::unique_ptr<MetaDataParser> openRecording(const std::string& file,
                                              std::optional<ZRKMetaData::ContainerKind> kind) {
  return open(file, kind, ScanMessages::Printed, "use --container");
}

std::unique_ptr<MetaDataParser> openScanned(const std::string& file,
                                            std::optional<ZRKMetaData::ContainerKind> kind) {
  requireOpens(file);
  if (!kind) requireContainer(file);
  return openRecording(file, kind);
}

std::unique_ptr<MetaDataParser> openForModule(const std::string& file, ScanMessages messages) {
  requireOpens(file);
  if (!text::isWellFormedUtf8(file)) {
    throw Failure(Status::Failed, file + ": the file name is not valid UTF-8; rename the file");
  }
  return open(file, std::nullopt, messages, "rename it to .voxa, .mp4, .mov, .avi, .wav or .dat");
}

void printDroppedMessages(const std::string& file) {
  const QuietModule quiet;
  const std::unique_ptr<MetaDataParser> scanned(
      MetaDataParser::createForFile(file, ZRKMetaData::containerKindOfFileName(file)));
}

bool isStreamText(const std::string& text) {
  return isShortKey(text) || parseIdentifier(text);
}

std::optional<boost::uuids::uuid> lookUpStream(const MetaDataParser& parser,
                                               const std::string& file, const std::string& text) {
  if (isShortKey(text)) return lookUpKey(parser, file, upperCase(text));
  const auto id = parseIdentifier(text);
  if (!id) {
    throw Failure(Status::WrongUse,
                  "STREAM is neither a 36-character identifier nor a two-digit key: " + text);
  }
  return parser.locations().count(*id) == 0 ? std::nullopt : id;
}

Failure noSuchStream(const std::string& file, const std::string& text) {
  return {Status::NoSuchStream, file + ": no stream " +
                                    (isShortKey(text) ? upperCase(text) : text) +
                                    "; voxa streams lists them"};
}

boost::uuids::uuid findStream(const MetaDataParser& parser, const std::string& file,
                              const std::string& text) {
  if (const auto id = lookUpStream(parser, file, text)) return *id;
  throw noSuchStream(file, text);
}

std::vector<boost::uuids::uuid> streamsNamed(const MetaDataParser& parser, const std::string& file,
                                             const std::vector<std::string>& names) {
  std::vector<boost::uuids::uuid> ids;
  for (const std::string& name : names) {
    const auto id = findStream(parser, file, name);
    if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
  }
  if (names.empty()) {
    for (const auto& location : parser.locations()) ids.push_back(location.first);
  }
  return ids;
}

}  // namespace voxa
