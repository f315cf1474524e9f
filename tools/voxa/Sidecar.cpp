#include <fmt/format.h>

#include <boost/uuid/uuid_io.hpp>

#include "tools/files/OutputFile.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/OutputFolder.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/StreamSource.h"

namespace voxa {

void writeSidecar(const SidecarOptions& options) {
  requireFolderName(options.folder, "voxa sidecar");
  const StreamSource source(options.file, options.container);
  const std::string folder = options.folder.empty() ? options.file + ".streams" : options.folder;
  prepareFolder(folder, options.force);
  const Progress progress(options.file, source.byteCount());
  for (const SourceStream& stream : source.streams()) {
    const std::string name = fmt::format("{}/{}.dat", folder, boost::uuids::to_string(stream.id));
    source.requireOther(name);
    files::OutputFile out(name, options.force ? files::Existing::Replace : files::Existing::Refuse);
    series::readEntry(*stream.parser, stream.extent,
                      [&out](std::string_view piece) { out.write(piece); });
    out.commit();
  }
  source.damages().throwIfAny();
}

}  // namespace voxa
