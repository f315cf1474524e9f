#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

#include <algorithm>
#include <array>
#include <locale>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "ZRKMetaData/src/ZRKMAnnouncedLength.h"
#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMExceptionMaskGuard.h"
#include "ZRKMetaData/src/ZRKMInputFile.h"
#include "ZRKMetaData/src/ZRKMScan.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

namespace {

constexpr char kUnit[] = "ZRKMMetaDataParser";

constexpr std::array<std::pair<std::string_view, ContainerKind>, 6> kKindOfExtension = {{
    {".avi", Riff},
    {".wav", Riff},
    {".voxa", Atoms},
    {".mp4", Atoms},
    {".mov", Atoms},
    {".dat", Raw},
}};

// The last dot of the whole name counts, also in a directory: "C:\rec.d\clip" has ".d\clip".
std::string lowerCaseExtension(const std::string& fileName) {
  const auto dot = fileName.rfind('.');
  if (dot == std::string::npos) return {};
  std::string extension = fileName.substr(dot);
  const std::locale locale;
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [&locale](char c) { return std::tolower(c, locale); });
  return extension;
}

ContainerKind containerKindOfExtension(const std::string& extension) {
  const auto* const found =
      std::find_if(kKindOfExtension.begin(), kKindOfExtension.end(),
                   [&extension](const auto& row) { return row.first == extension; });
  return found != kKindOfExtension.end() ? found->second : None;
}

class MetaDataFileParser final : public MetaDataParser {
 public:
  MetaDataFileParser(const std::string& fileName, ContainerKind kind)
      : m_infile(fileName), m_kind(kind) {
    if (!m_infile.isOpen()) reportAssertion("m_infile.is_open()", kUnit, 216);
  }

  ContainerKind containerKind() const override { return m_kind; }
  std::istream& stream() override { return m_infile; }
  void close() override { m_infile.close(); }

 private:
  InputFile m_infile;
  const ContainerKind m_kind;
};

class MetaDataStreamParser final : public MetaDataParser {
 public:
  MetaDataStreamParser(std::istream& stream, ContainerKind kind) : m_stream(stream), m_kind(kind) {}

  ContainerKind containerKind() const override { return m_kind; }
  std::istream& stream() override { return m_stream; }
  void close() override {}

 private:
  std::istream& m_stream;
  const ContainerKind m_kind;
};

// Entries may overlap, so a small file can announce any amount in total. Throws std::length_error
// when the entry at `offset`, to which `in` has moved, would make the copies exceed the size of the
// source by more than 64 MiB.
void checkTotal(StreamWindow& in, int64 offset, uint64 total) {
  if (total <= kMaxMissingBytes) return;
  const uint64 sourceSize = static_cast<uint64>(offset) + in.bytesLeft();
  if (total > sourceSize && total - sourceSize > kMaxMissingBytes) {
    throw std::length_error("meta data entries announce " + std::to_string(total) +
                            " bytes in all where the source has " + std::to_string(sourceSize));
  }
}

MetaDataParser* scanAndRelease(std::unique_ptr<MetaDataParser> parser) {
  parser->scan();
  return parser.release();
}

}  // namespace

ContainerKind containerKindOfFileName(const std::string& fileName) {
  return containerKindOfExtension(lowerCaseExtension(fileName));
}

MetaDataParser* MetaDataParser::createForFile(const std::string& fileName) {
  return createForFile(fileName, containerKindOfFileName(fileName));
}

MetaDataParser* MetaDataParser::createForFile(const std::string& fileName, ContainerKind kind) {
  return scanAndRelease(std::make_unique<MetaDataFileParser>(fileName, kind));
}

MetaDataParser* MetaDataParser::createForStream(std::istream& stream, ContainerKind kind) {
  return scanAndRelease(std::make_unique<MetaDataStreamParser>(stream, kind));
}

void MetaDataParser::scan() {
  switch (containerKind()) {
    case Riff:
      return scanChunks(stream(), m_locations);
    case Atoms:
      return scanAtoms(stream(), m_locations);
    case Raw:
      return scanRaw(stream(), m_locations);
    case None:
      return;
  }
}

MetaDataLocation MetaDataParser::locationOf(const boost::uuids::uuid& id) const {
  const auto found = m_locations.find(id);
  return found != m_locations.end() ? found->second : MetaDataLocation{};
}

std::list<boost::uuids::uuid> MetaDataParser::streamIds() const {
  std::list<boost::uuids::uuid> ids;
  for (const auto& [id, location] : m_locations) ids.push_back(id);
  return ids;
}

void MetaDataParser::readRawData(std::map<boost::uuids::uuid, std::string>* rawDataMap) {
  std::istream& in = stream();
  const ExceptionMaskGuard maskGuard(in);
  uint64 copied = 0;
  for (const auto& [id, location] : m_locations) {
    if (!in.good()) in.clear();
    in.seekg(location.offset);
    if (in.good()) {
      StreamWindow window(in);
      const auto count = static_cast<uint64>(location.size);
      checkAnnounced(window, count);
      checkTotal(window, location.offset, copied + count);
      std::string& data = (*rawDataMap)[id];
      data.clear();
      appendAnnounced(window, count, data);
      copied += count;
    }
    if (static_cast<int64>((*rawDataMap)[id].length()) != location.size) {
      reportAssertion("(*rawDataMap)[UUID].length() == fileSize", kUnit, 339);
    }
  }
}

}  // namespace ZRKMetaData
