// A file that a command writes. No partial file is ever visible under its name.
//
// The bytes go to a temporary file in the same folder, which `commit` renames. Until then an
// existing file stays as it is, and an exception, a full disk, SIGHUP, SIGINT, SIGPIPE, SIGTERM or
// the end of the process on Windows removes the temporary file.
//
//   files::OutputFile out(name, files::Existing::Refuse);
//   out.write(bytes);
//   out.commit();
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace files {

/// What to do when a file with the name exists: Replace is --force.
enum class Existing { Refuse, Replace };

class Target;

/// Used by one thread. A process may have any number of output files.
class OutputFile {
 public:
  /// Opens the file with this UTF-8 name for writing. A device or pipe is written directly, with
  /// no temporary file. A symbolic link stays, and its target is created or replaced. A replaced
  /// file keeps its permissions. Throws std::runtime_error that names the file and the reason: it
  /// exists and must not be replaced, it is a folder, or the system call failed.
  OutputFile(const std::string& name, Existing existing);

  /// Removes the temporary file unless it was committed.
  ~OutputFile();

  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Appends bytes, which are buffered. Throws std::runtime_error, which names the file and the
  /// reason, when the system cannot write them.
  void write(std::string_view bytes);

  /// Writes the rest and renames the file. Call it once, after the last write. Throws as `write`
  /// does, and when a file that must not be replaced was created under the name meanwhile.
  void commit();

 private:
  void flush();

  std::string m_name;
  std::unique_ptr<Target> m_target;
  std::string m_buffer;
};

}  // namespace files
