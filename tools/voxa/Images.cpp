#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "tools/files/OutputFile.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/OutputFolder.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/Sha256.h"

namespace voxa {

using ZRKMetaData::CursorImage;
using ZRKMetaData::uint64;

namespace {

// The bytes at the start of each image format.
struct Signature {
  std::string_view bytes;
  const char* extension;
};

constexpr Signature kSignatures[] = {
    {"\x89PNG\r\n\x1A\n", ".png"},
    {"BM", ".bmp"},
    {std::string_view("\0\0\1\0", 4), ".ico"},
    {"\xFF\xD8\xFF", ".jpg"},
    {"GIF87a", ".gif"},
    {"GIF89a", ".gif"},
    {std::string_view("II*\0", 4), ".tiff"},
    {std::string_view("MM\0*", 4), ".tiff"},
};

const char* extensionOf(std::string_view image) {
  for (const Signature& signature : kSignatures) {
    if (image.substr(0, signature.bytes.size()) == signature.bytes) return signature.extension;
  }
  return ".bin";
}

// Writes each distinct image once. File names are made of the numeric identifier alone.
class ImageFiles {
 public:
  ImageFiles(std::string folder, files::Existing existing)
      : m_folder(std::move(folder)), m_existing(existing) {}

  /// The file of the image that `record` shows: its own, or the last one under its identifier.
  /// Empty when there is none.
  const std::string& fileOf(const CursorImage& record) {
    Variants& variants = m_images[record.m_imageId];
    if (record.m_data && record.imageByteCount() > 0) {
      std::string& file = variants.files[digestOf(record)];
      if (file.empty()) file = write(record, variants.files.size());
      variants.shown = file;
    }
    return variants.shown;
  }

 private:
  struct Variants {
    std::map<std::string, std::string> files;  // by digest
    std::string shown;                         // last
  };

  std::string write(const CursorImage& record, std::size_t number) {
    const std::string_view bytes(reinterpret_cast<const char*>(record.m_data.get()),
                                 record.imageByteCount());
    std::string name = std::to_string(record.m_imageId);
    if (number > 1) name += "-" + std::to_string(number);
    name += extensionOf(bytes);
    files::OutputFile file(m_folder + "/" + name, m_existing);
    file.write(bytes);
    file.commit();
    return name;
  }

  const std::string m_folder;
  const files::Existing m_existing;
  std::map<uint64, Variants> m_images;
};

}  // namespace

void extractImages(const ImagesOptions& options) {
  requireFolderName(options.folder, "voxa images");
  const auto parser = openRecording(options.file, options.container);
  const ChosenStream stream = chooseOfType(*parser, options.file, options.stream, options.types,
                                           series::recordTypeOf<CursorImage>());
  prepareFolder(options.folder, options.force);
  ImageFiles images(options.folder,
                    options.force ? files::Existing::Replace : files::Existing::Refuse);
  Output index({options.folder + "/images.csv", options.force});
  RowWriter rows(index, Format::Csv);
  const auto describeImage = [](auto& row, double seconds, uint64 imageId,
                                const std::string& file) {
    row.field("time", seconds);
    row.field("imageId", imageId);
    row.field("file", file);
  };
  rows.header([&](auto& row) { describeImage(row, 0, 0, {}); });
  const Progress progress(options.file, bytesOf(*parser, {stream}));
  std::string damage;
  try {
    const QuietModule quiet;
    series::forEachRecord<CursorImage>(
        *parser, stream.id, {}, [&](double seconds, const CursorImage& record) {
          const std::string& file = images.fileOf(record);
          rows.write([&](auto& row) { describeImage(row, seconds, record.m_imageId, file); });
        });
  } catch (const series::DamagedStream& error) {
    damage = error.message(options.file);
  }
  index.finish();
  if (!damage.empty()) {
    throw Failure(Status::DamagedData, damage + "; the images before are written");
  }
}

}  // namespace voxa
