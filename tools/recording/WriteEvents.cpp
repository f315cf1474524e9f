// Appends the events of a desktop to a video of it: write_events LOG VIDEO OUT
//
// LOG is as in EventLog.h, with names of files that are relative to its folder. VIDEO is a file of
// atoms. OUT must not exist.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "tools/files/OutputFile.h"
#include "tools/recording/Append.h"
#include "tools/recording/EventLog.h"

namespace {

std::ifstream opened(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error(path.u8string() + ": cannot be opened");
  return file;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 4) {
    std::cerr << "usage: write_events LOG VIDEO OUT\n";
    return 2;
  }
  const auto folder = std::filesystem::u8path(argv[1]).parent_path();
  const recording::ReadFile read = [&folder](const std::string& name) {
    std::ifstream file = opened(folder / std::filesystem::u8path(name));
    return recording::Bytes(std::istreambuf_iterator<char>(file), {});
  };
  std::ifstream log = opened(std::filesystem::u8path(argv[1]));
  const auto block = recording::atomBlock(recording::eventEntries(log, read));
  files::OutputFile out(argv[3], files::Existing::Refuse);
  const std::string whyUntagged =
      recording::writeOnto(argv[2], recording::Layout::Atoms, block,
                           [&out](std::string_view bytes) { out.write(bytes); });
  if (!whyUntagged.empty()) throw std::runtime_error(whyUntagged);
  out.commit();
} catch (const std::exception& error) {
  std::cerr << "write_events: " << error.what() << '\n';
  return 1;
}
