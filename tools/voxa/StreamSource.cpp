#include "tools/voxa/StreamSource.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tools/voxa/Messages.h"
#include "tools/voxa/NamedTypes.h"
#include "tools/voxa/StreamNames.h"

namespace voxa {

std::vector<std::string> rawFilesOf(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& file :
       std::filesystem::directory_iterator(std::filesystem::u8path(folder), error)) {
    const std::string leaf = file.path().filename().u8string();
    if (ZRKMetaData::containerKindOfFileName(leaf) == ZRKMetaData::Raw) {
      names.push_back(fmt::format("{}/{}", folder, leaf));
    }
  }
  if (error) {
    throw Failure(Status::CannotOpen, folder + ": cannot read the folder: " + error.message());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string rawFileName(const std::string& folder, const boost::uuids::uuid& id) {
  return fmt::format("{}/{}.dat", folder, boost::uuids::to_string(id));
}

namespace {

// Says so where it is not.
bool isNamedByStream(const std::string& folder, const std::string& file,
                     const ZRKMetaData::MetaDataParser& parser) {
  if (parser.locations().empty()) return false;        // the file was removed meanwhile
  const auto& id = parser.locations().begin()->first;  // a raw file has one entry
  if (file == rawFileName(folder, id)) return true;
  say(fmt::format("{}: is not named {}.dat, after the stream in its header; left out", file,
                  boost::uuids::to_string(id)));
  return false;
}

}  // namespace

StreamSource::StreamSource(const std::string& name,
                           std::optional<ZRKMetaData::ContainerKind> kind) {
  std::error_code absent;
  if (std::filesystem::is_directory(std::filesystem::u8path(name), absent)) {
    for (const std::string& file : rawFilesOf(name)) {
      auto parser = openRecording(file, ZRKMetaData::Raw);
      if (isNamedByStream(name, file, *parser)) add(file, std::move(parser));
    }
    std::sort(m_streams.begin(), m_streams.end(),
              [](const auto& left, const auto& right) { return left.id < right.id; });
  } else {
    add(name, openScanned(name, kind));
  }
  if (m_streams.empty()) {
    m_damages.throwIfAny();
    throw Failure(Status::NoSuchStream, name + ": no metadata streams");
  }
  this->name();
}

void StreamSource::add(const std::string& file,
                       std::unique_ptr<ZRKMetaData::MetaDataParser> opened) {
  m_files.push_back({file, std::move(opened)});
  ZRKMetaData::MetaDataParser& parser = *m_files.back().parser;
  constexpr ZRKMetaData::int64 kMaxExcess = 64 << 20;
  ZRKMetaData::int64 left = series::sizeOfSource(parser.stream()) + kMaxExcess;
  for (const auto& [id, location] : parser.locations()) {
    const auto extent = series::entryExtent(parser, location);
    const std::string text = boost::uuids::to_string(id);
    if (extent.isCut()) {
      m_damages.addWhole(
          fmt::format("{}: stream {}: byte {}: {}", file, text, extent.offset, extent.cutText()));
    }
    if (extent.present < ZRKMetaData::MetaDataHeader::kByteCount) {
      m_damages.addWhole(
          fmt::format("{}: stream {}: byte {}: the entry is shorter than its header; "
                      "left out",
                      file, text, extent.offset));
      continue;
    }
    left -= extent.present;
    if (left < 0) {
      throw Failure(Status::Failed,
                    fmt::format("{}: stream {}: byte {}: the entries overlap; their "
                                "copies need over 64 MiB more than the file",
                                file, text, extent.offset));
    }
    m_streams.push_back({id, {}, file, &parser, extent});
  }
}

void StreamSource::name() {
  StreamNames names;
  for (const SourceStream& stream : m_streams) names.add(stream.id);
  for (SourceStream& stream : m_streams) stream.name = names.of(stream.id);
}

series::NamedTypes StreamSource::namedTypes(const std::vector<std::string>& options) const {
  series::NamedTypes types;
  for (const bool isForOne : {true, false}) {  // the first that names a type holds
    for (const std::string& option : options) {
      const std::size_t equals = option.find('=');
      if ((equals != std::string::npos) != isForOne) continue;
      const std::string stream = option.substr(0, isForOne ? equals : 0);
      bool isUsed = false;
      for (const File& file : m_files) {
        if (isForOne && !lookUpStream(*file.parser, file.name, stream)) continue;
        types.merge(voxa::namedTypes(*file.parser, file.name, {option}));
        isUsed = true;
      }
      if (!isUsed) throw noSuchStream(m_files.front().name, stream);
    }
  }
  return types;
}

double StreamSource::byteCount() const {
  double sum = 0;
  for (const SourceStream& stream : m_streams) sum += static_cast<double>(stream.extent.present);
  return sum;
}

void StreamSource::requireOther(const std::string& out) const {
  for (const File& file : m_files) requireOtherFile(out, file.name);
}

}  // namespace voxa
