#include <set>
#include <string>

#include "tools/files/OutputFile.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/OutputFolder.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/StreamSource.h"

namespace voxa {

namespace {

void nameOlder(const std::string& folder, const std::set<std::string>& written) {
  std::string older;
  for (const std::string& file : rawFilesOf(folder)) {
    if (written.count(file) == 0) older += " " + file.substr(folder.size() + 1);
  }
  if (!older.empty()) {
    say(folder + ": has other .dat files, which stay; remove those that are not of " +
        "this recording:" + older);
  }
}

}  // namespace

void writeSidecar(const SidecarOptions& options) {
  requireFolderName(options.folder, "voxa sidecar");
  const StreamSource source(options.file, options.container);
  const std::string folder = options.folder.empty() ? options.file + ".streams" : options.folder;
  prepareFolder(folder, options.force);
  const Progress progress(options.file, source.byteCount());
  std::set<std::string> written;
  for (const SourceStream& stream : source.streams()) {
    const std::string name = rawFileName(folder, stream.id);
    source.requireOther(name);
    files::OutputFile out(name, options.force ? files::Existing::Replace : files::Existing::Refuse);
    series::readEntry(*stream.parser, stream.extent,
                      [&out](std::string_view piece) { out.write(piece); });
    out.commit();
    written.insert(name);
  }
  if (options.force) nameOlder(folder, written);
  source.damages().throwIfAny();
}

}  // namespace voxa
