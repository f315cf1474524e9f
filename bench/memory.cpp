// Prints by how many bytes per keyframe the resident memory of the process grows when it loads a
// parameter; with the argument "lean", when it fills the lean model; with "floor", when it decodes
// the records into a vector of as many bytes as keyframes may take. Needs the recording that
// kestova_bench writes.
#include <unistd.h>

#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Lean.h"
#include "bench/Project.h"
#include "bench/Recordings.h"

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

std::string recordingOfPoints() {
  return bench::writtenRecording(bench::Stream::Points, bench::Order::Rising, kCount);
}

void printLoaded() {
  const bench::Project project;
  const std::string name = bench::streamFileName(recordingOfPoints());
  const std::int64_t before = residentBytes();
  const auto parameter = project.load(&bench::Project::Loader::loadPoints, name);
  if (parameter->numKeyFrames() != kCount)
    throw std::runtime_error(name + ": keyframes are missing");
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

struct Slot {
  double seconds;
  std::int32_t x;
  std::int32_t y;
  char rest[176];
};

void printFloor() {
  const std::string name = recordingOfPoints();
  std::ifstream file(name, std::ios::binary | std::ios::ate);
  constexpr std::streamoff kRecordBytes = 16;
  file.seekg(-kCount * kRecordBytes, std::ios::cur);  // the block is the end of the file
  const std::int64_t before = residentBytes();
  std::vector<Slot> slots(kCount);
  std::vector<char> block(std::size_t{64} << 10U);
  auto slot = slots.begin();
  while (
      slot != slots.end() &&
      (file.read(block.data(), static_cast<std::streamsize>(block.size())), file.gcount() != 0)) {
    for (std::streamsize at = 0; at < file.gcount(); at += kRecordBytes, ++slot) {
      std::memcpy(&*slot, &block[static_cast<std::size_t>(at)], kRecordBytes);
    }
  }
  print(residentBytes() - before);
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count > 1 && std::strcmp(arguments[1], "lean") == 0) {
      printLean();
    } else if (count > 1 && std::strcmp(arguments[1], "floor") == 0) {
      printFloor();
    } else {
      printLoaded();
    }
  } catch (const std::exception& error) {
    std::cerr << "kestova_memory: " << error.what() << '\n';
    return 1;
  }
}
