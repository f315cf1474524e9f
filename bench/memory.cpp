// Prints by how many bytes per keyframe the resident memory of the process grows when it loads a
// parameter, or with the argument "lean", when it fills the lean model.
#include <unistd.h>

#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>

#include "bench/Lean.h"
#include "bench/Project.h"

namespace {

constexpr std::int64_t kCount = 1'000'000;

std::int64_t residentBytes() {
  std::ifstream statm("/proc/self/statm");
  std::int64_t all = 0;
  std::int64_t resident = 0;
  statm >> all >> resident;
  return resident * ::sysconf(_SC_PAGESIZE);
}

void print(std::int64_t grownBytes) {
  std::cout << static_cast<double>(grownBytes) / static_cast<double>(kCount) << '\n';
}

void printLoaded() {
  const bench::Project project;
  const std::string name =
      bench::streamFileName(bench::Stream::Points, bench::Order::Rising, kCount);
  const std::int64_t before = residentBytes();
  const auto parameter = project.load(&bench::Project::Loader::loadPoints, name);
  print(residentBytes() - before);
}

void printLean() {
  const auto owner = boost::make_shared<Kestova::ThreadSafe>();
  const std::int64_t before = residentBytes();
  bench::LeanParameter parameter(owner);
  for (std::int64_t frame = 0; frame < kCount; ++frame) {
    parameter.add(Kestova::RationalTime(frame), {static_cast<double>(frame), 0, 0});
  }
  print(residentBytes() - before);
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count > 1 && std::strcmp(arguments[1], "lean") == 0) {
      printLean();
    } else {
      printLoaded();
    }
  } catch (const std::exception& error) {
    std::cerr << "kestova_memory: " << error.what() << '\n';
    return 1;
  }
}
