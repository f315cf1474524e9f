// The streams that a command compares or copies as they are: those of a recording, or those of a
// sidecar folder, which has one raw file per stream.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/Summary.h"
#include "tools/voxa/Damages.h"
#include "tools/voxa/Recording.h"

namespace voxa {

struct SourceStream {
  boost::uuids::uuid id;
  std::string name;  ///< its short key, or the whole identifier where keys collide
  std::string file;
  ZRKMetaData::MetaDataParser* parser = nullptr;  ///< of the source, never null
  series::EntryExtent extent;
};

/// The files with the extension ".dat" in a folder, sorted. Throws Failure (CannotOpen).
std::vector<std::string> rawFilesOf(const std::string& folder);

/// The file of a stream in a sidecar folder.
std::string rawFileName(const std::string& folder, const boost::uuids::uuid& id);

/// Used by one thread.
class StreamSource {
 public:
  /// Opens the recording with this UTF-8 name, as `kind` where that is given, or the files of the
  /// folder that are named by their streams; other ".dat" files are named on standard error and
  /// left out. An entry that is cut is a damage; one that is shorter than its header is left out
  /// besides. Throws Failure: as `openScanned` does; NoSuchStream when there are no streams;
  /// Failed when entries overlap so that their copies need over 64 MiB more than the file has.
  explicit StreamSource(const std::string& name,
                        std::optional<ZRKMetaData::ContainerKind> kind = std::nullopt);

  /// In the order of their identifiers.
  const std::vector<SourceStream>& streams() const { return m_streams; }

  /// The bytes of the streams, for `Progress`.
  double byteCount() const;

  /// What is missing, to be reported when the command is done.
  const Damages& damages() const { return m_damages; }

  /// The types that `options`, each "TYPE" or "STREAM=TYPE", name. Throws as `voxa::namedTypes`
  /// does; a STREAM is one of any file.
  series::NamedTypes namedTypes(const std::vector<std::string>& options) const;

  /// Throws Failure when `out` is a file of the source.
  void requireOther(const std::string& out) const;

 private:
  struct File {
    std::string name;
    std::unique_ptr<ZRKMetaData::MetaDataParser> parser;
  };

  void add(const std::string& file, std::unique_ptr<ZRKMetaData::MetaDataParser> opened);
  void name();

  std::vector<File> m_files;
  std::vector<SourceStream> m_streams;
  Damages m_damages;
};

}  // namespace voxa
