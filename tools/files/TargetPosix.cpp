#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "tools/files/Target.h"

namespace files {

namespace {

[[noreturn]] void fail(int error) {
  throw std::system_error(error, std::generic_category());
}

// Signals whose default action ends the process while it writes.
constexpr std::array<int, 6> kEndingSignals = {SIGHUP, SIGINT, SIGPIPE, SIGTERM, SIGXCPU, SIGXFSZ};

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kEndingSignals) sigaddset(&signals, signal);
  return signals;
}

// Blocks the ending signals, so that whenever the handler runs the list has every temporary file.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, &m_before);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t m_before{};
};

// The temporary files of this process, as a list that a signal handler can walk.
struct TemporaryFile {
  std::string name;
  TemporaryFile* next = nullptr;
};

TemporaryFile* g_temporaryFiles = nullptr;

// Only async-signal-safe calls. The signal's own action then ends the process.
extern "C" void removeTemporaryFiles(int signal) {
  for (const TemporaryFile* file = g_temporaryFiles; file != nullptr; file = file->next) {
    unlink(file->name.c_str());
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void handleEndingSignals() {
  for (const int signal : kEndingSignals) {
    struct sigaction action {};
    // A signal that is ignored (nohup) or already handled is left alone.
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action = {};
    action.sa_handler = removeTemporaryFiles;
    action.sa_mask = endingSignals();
    sigaction(signal, &action, nullptr);
  }
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : m_descriptor(descriptor) {
    if (descriptor < 0) fail(errno);
  }
  ~Descriptor() {
    if (m_descriptor >= 0) ::close(m_descriptor);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = ::write(m_descriptor, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) fail(errno);
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  /// Some file systems report a full disk only here.
  void close() {
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    if (::close(descriptor) != 0) fail(errno);
  }

  int number() const { return m_descriptor; }

 private:
  int m_descriptor;
};

class Device final : public Target {
 public:
  explicit Device(const std::string& name)
      : m_file(::open(name.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC)) {}

  void write(std::string_view bytes) override { m_file.write(bytes); }
  void commit() override { m_file.close(); }

 private:
  Descriptor m_file;
};

class Regular final : public Target {
 public:
  /// `mode`: the permissions of the file that is replaced, or of a new one.
  Regular(std::string name, Existing existing, mode_t mode)
      : m_name(std::move(name)), m_existing(existing), m_file(create(m_temporary, m_name)) {
    fchmod(m_file.number(), mode);  // not every file system has permissions
  }

  ~Regular() override {
    if (m_isListed) remove();
  }

  void write(std::string_view bytes) override { m_file.write(bytes); }

  void commit() override {
    m_file.close();
    const SignalsBlocked blocked;
    if (!rename()) fail(errno);
    unlist();
  }

 private:
  // Creates and lists the file while the ending signals are blocked.
  int create(TemporaryFile& temporary, const std::string& name) {
    temporary.name = name.substr(0, name.rfind('/') + 1) + ".voxa-XXXXXX";
    const SignalsBlocked blocked;
    handleEndingSignals();
    const int descriptor = mkostemp(temporary.name.data(), O_CLOEXEC);
    if (descriptor >= 0) {
      temporary.next = g_temporaryFiles;
      g_temporaryFiles = &temporary;
      m_isListed = true;
    }
    return descriptor;
  }

  void unlist() {
    TemporaryFile** link = &g_temporaryFiles;
    while (*link != &m_temporary) link = &(*link)->next;
    *link = m_temporary.next;
    m_isListed = false;
  }

  void remove() {
    const SignalsBlocked blocked;
    unlink(m_temporary.name.c_str());
    unlist();
  }

  bool rename() const {
    const char* const from = m_temporary.name.c_str();
    if (m_existing == Existing::Refuse) {
      if (renameat2(AT_FDCWD, from, AT_FDCWD, m_name.c_str(), RENAME_NOREPLACE) == 0) return true;
      if (errno == EEXIST) throw std::runtime_error(kFileExists);
      if (errno != EINVAL && errno != ENOSYS)
        return false;  // otherwise the file system does not support it
    }
    return std::rename(from, m_name.c_str()) == 0;
  }

  const std::string m_name;
  const Existing m_existing;
  bool m_isListed = false;
  TemporaryFile m_temporary;
  Descriptor m_file;
};

// Resolves a chain of symbolic links; the target need not exist.
std::string followLinks(std::string name) {
  constexpr int kMaxLinks = 40;  // the limit of Linux
  for (int links = 0; links < kMaxLinks; ++links) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlink(name.c_str(), target.data(), target.size());
    if (length < 0) return name;
    const std::string_view text(target.data(), static_cast<std::size_t>(length));
    const std::size_t folder = text.front() == '/' ? 0 : name.rfind('/') + 1;
    name.resize(folder);
    name += text;
  }
  fail(ELOOP);
}

mode_t modeOfNewFiles() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666U & ~mask;
}

}  // namespace

std::unique_ptr<Target> Target::open(const std::string& name, Existing existing) {
  struct stat status {};
  if (stat(name.c_str(), &status) != 0) {
    if (errno != ENOENT) fail(errno);
    return std::make_unique<Regular>(followLinks(name), existing, modeOfNewFiles());
  }
  if (S_ISDIR(status.st_mode)) throw std::runtime_error(kIsFolder);
  if (!S_ISREG(status.st_mode)) return std::make_unique<Device>(name);
  if (existing == Existing::Refuse) throw std::runtime_error(kFileExists);
  return std::make_unique<Regular>(followLinks(name), existing, status.st_mode & 0777U);
}

}  // namespace files
