#include "bench/Recordings.h"

#include <boost/uuid/uuid_io.hpp>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace bench {

namespace fs = std::filesystem;
using recording::Bytes;

namespace {

constexpr unsigned char kKey = 0xF0;

fs::path pathOf(const std::string& name) {
  return fs::path(KESTOVA_BENCH_RECORDINGS) / (name + ".voxa");
}

// Returns the path of a file, which `write` writes on the first call in this process.
template <class Write>
std::string file(const std::string& name, Write write) {
  static std::set<std::string> written;
  const fs::path path = pathOf(name);
  if (written.insert(name).second) {
    fs::create_directories(path.parent_path());
    const fs::path unfinished = path.string() + ".part";
    std::ofstream out(unfinished, std::ios::binary | std::ios::trunc);
    write(out);
    if (!out.flush()) throw std::runtime_error(unfinished.string() + ": cannot be written");
    fs::rename(unfinished, path);
  }
  return path.string();
}

Bytes block(const Bytes& records) {
  return recording::atomBlock({recording::Entry{recording::streamId(kKey), records}});
}

const char* nameOf(Stream stream) {
  static constexpr const char* kNames[] = {"points", "doubles", "ints", "strings"};
  return kNames[static_cast<int>(stream)];
}

const char* nameOf(Order order) {
  static constexpr const char* kNames[] = {"rising", "falling", "shuffled"};
  return kNames[static_cast<int>(order)];
}

std::string nameOf(Stream stream, Order order, std::int64_t count) {
  return std::string(nameOf(stream)) + '-' + nameOf(order) + '-' + std::to_string(count);
}

Bytes record(Stream stream, std::int64_t frame) {
  static const Bytes twenty(20, 's');
  const double seconds = static_cast<double>(frame) / kEditRate;
  switch (stream) {
    case Stream::Points:
      return recording::pointRecord(seconds, pixelAt(frame), pixelAt(2 * frame));
    case Stream::Doubles:
      return recording::doubleRecord(seconds, opacityAt(frame));
    case Stream::Ints:
      return recording::intRecord(seconds, pixelAt(frame));
    case Stream::Strings:
      break;
  }
  return recording::stringRecord(seconds, twenty);
}

}  // namespace

std::string denseRecording(std::int64_t count) {
  return file("dense-" + std::to_string(count), [count](std::ostream& out) {
    const Bytes small = recording::atom("free", Bytes(23, '\0'));
    for (std::int64_t atom = 0; atom < count; ++atom) out << small;
    out << block(recording::pointRecord(0, 1, 2));
  });
}

std::string sparseRecording(std::int64_t count) {
  return file("sparse-" + std::to_string(count), [count](std::ostream& out) {
    const std::int64_t size = (std::int64_t{8} << 30U) / count;
    const Bytes header = recording::bigEndian(static_cast<std::uint32_t>(size)) + "mdat";
    for (std::int64_t atom = 0; atom < count; ++atom) out.seekp(atom * size) << header;
    out.seekp(count * size) << block(recording::pointRecord(0, 1, 2));
  });
}

std::string recordingOf(Stream stream, Order order, std::int64_t count) {
  return file(nameOf(stream, order, count), [&](std::ostream& out) {
    Bytes records;
    for (const std::int64_t frame : keyedFrames(count, order)) records += record(stream, frame);
    out << block(records);
  });
}

std::string writtenRecording(Stream stream, Order order, std::int64_t count) {
  const fs::path path = pathOf(nameOf(stream, order, count));
  if (!fs::exists(path)) throw std::runtime_error(path.string() + ": run kestova_bench first");
  return path.string();
}

std::string streamFileName(const std::string& recording) {
  return recording + "/" + boost::uuids::to_string(recording::streamId(kKey));
}

std::string streamFileName(Stream stream, Order order, std::int64_t count) {
  return streamFileName(recordingOf(stream, order, count));
}

std::int32_t pixelAt(std::int64_t frame) {
  return static_cast<std::int32_t>(frame % 1920);
}

double opacityAt(std::int64_t frame) {
  return static_cast<double>(frame * 2654435761 % 1000003) / 1000003;
}

}  // namespace bench
