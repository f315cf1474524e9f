// The part of an output file that differs between platforms: TargetPosix.cpp, TargetWindows.cpp.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "tools/files/OutputFile.h"

namespace files {

/// Receives the bytes. Every operation throws std::runtime_error or std::system_error with the
/// reason alone, without the file's name. The destructor removes the temporary file unless it
/// was committed.
class Target {
 public:
  Target() = default;
  virtual ~Target() = default;
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  virtual void write(std::string_view bytes) = 0;
  virtual void commit() = 0;

  static std::unique_ptr<Target> open(const std::string& name, Existing existing);
};

constexpr const char* kFileExists = "file exists; use --force to replace it";
constexpr const char* kIsFolder = "is a folder; name a file";

}  // namespace files
