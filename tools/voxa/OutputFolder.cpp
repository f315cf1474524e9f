#include "tools/voxa/OutputFolder.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "tools/voxa/Failure.h"

namespace voxa {

void requireFolderName(const std::string& folder, const std::string& writer) {
  if (folder == "-") {
    throw Failure(Status::WrongUse, writer + " writes several files; name a folder with -o");
  }
}

void prepareFolder(const std::string& folder, bool force) {
  const auto path = std::filesystem::u8path(folder);
  std::error_code error;
  const auto fail = [&](const std::string& why) { throw std::runtime_error(folder + ": " + why); };
  const auto type = std::filesystem::status(path, error).type();
  if (type == std::filesystem::file_type::not_found) {
    if (!std::filesystem::create_directory(path, error)) {
      fail("cannot create the folder: " + error.message());
    }
    return;
  }
  if (type != std::filesystem::file_type::directory) fail("is not a folder; name a folder");
  if (force) return;
  const bool isEmpty = std::filesystem::is_empty(path, error);
  if (error) fail("cannot read the folder: " + error.message());
  if (!isEmpty) fail("the folder is not empty; use --force to replace files of the same names");
}

}  // namespace voxa
