// A file that a command writes: complete under its name, or not there at all.
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

/// What to do with a file that exists under the name: its user said --force, or did not.
enum class Existing { Refuse, Replace };

class Target;

/// Used by one thread; a process may have any number of them.
class OutputFile {
 public:
  /// Opens the file with this UTF-8 name for writing. A device or pipe is written directly, with
  /// no temporary file. A symbolic link stays, and its target is created or replaced. A replaced
  /// file keeps its permissions. Throws std::runtime_error that names the file and the reason: it
  /// exists and is not to be replaced, it is a folder, or the system refuses.
  OutputFile(const std::string& name, Existing existing);

  /// Removes what was written unless it was committed.
  ~OutputFile();

  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Appends bytes, which are collected and written in large pieces. Throws std::runtime_error,
  /// naming the file and the reason, when the system does not take them all.
  void write(std::string_view bytes);

  /// Writes what is left and puts the file under its name. To be called once, last. Throws as
  /// `write` does, and when a file that is not to be replaced has appeared in the meantime.
  void commit();

 private:
  void flush();

  std::string m_name;
  std::unique_ptr<Target> m_target;
  std::string m_buffer;
};

}  // namespace files
