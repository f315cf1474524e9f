#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ios>
#include <system_error>

#include "ZRKMetaData/src/ZRKMPlatform.h"

namespace ZRKMetaData {

namespace {

class PosixFile final : public OpenFile {
 public:
  explicit PosixFile(int descriptor) : m_descriptor(descriptor) {}
  ~PosixFile() override { ::close(m_descriptor); }

  std::size_t readAt(int64 position, char* destination, std::size_t count) const override {
    for (;;) {
      const ssize_t got = ::pread(m_descriptor, destination, count, position);
      if (got >= 0) return static_cast<std::size_t>(got);
      if (errno != EINTR) {
        throw std::ios_base::failure("pread", std::error_code(errno, std::generic_category()));
      }
    }
  }

  // The size in a block device's status is 0.
  int64 size() const override { return ::lseek(m_descriptor, 0, SEEK_END); }

 private:
  const int m_descriptor;
};

}  // namespace

std::unique_ptr<OpenFile> OpenFile::open(const std::string& name) {
  // File names of the system are UTF-8. Opening a pipe would block, and a directory would open but
  // fail at the first read.
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) return nullptr;
  if (!S_ISREG(status.st_mode) && !S_ISBLK(status.st_mode)) return nullptr;
  const int descriptor = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  return descriptor >= 0 ? std::make_unique<PosixFile>(descriptor) : nullptr;
}

void writeAssertionReport(const char* expression, const char* unit, int line) {
  std::fprintf(stderr, "%s:%d: assertion failed: %s\n", unit, line, expression);
}

}  // namespace ZRKMetaData
