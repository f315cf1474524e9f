// Runs a target on files and folders of files, for builds without a fuzzer.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/Fuzz.h"

namespace {

std::size_t replay(const std::filesystem::path& path) {
  if (std::filesystem::is_directory(path)) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(path)) count += replay(entry);
    return count;
  }
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  for (int index = 1; index < argc; ++index) {
    const std::size_t count = replay(std::filesystem::u8path(argv[index]));
    std::printf("%s: %zu inputs\n", argv[index], count);
    fuzz::require(count != 0, "the argument has inputs");
  }
  return argc > 1 ? 0 : 2;
}
