// A file as a std::istream. A seek only notes the position, and each read from the file is one call
// of the system. std::ifstream makes two calls for each seek with a read.
#pragma once

#include <array>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <utility>

#include "ZRKMetaData/src/ZRKMIntegers.h"
#include "ZRKMetaData/src/ZRKMPlatform.h"

namespace ZRKMetaData {

/// The buffer of an InputFile. Reads of at least its size go past it.
class InputFileBuffer final : public std::streambuf {
 public:
  explicit InputFileBuffer(std::unique_ptr<OpenFile> file) : m_file(std::move(file)) {}

  bool isOpen() const { return m_file != nullptr; }

  /// From here on the buffer is empty and every seek fails. Returns false when it was closed
  /// before.
  bool close();

 protected:
  int_type underflow() override;
  std::streamsize xsgetn(char* destination, std::streamsize count) override;
  pos_type seekoff(off_type offset, std::ios::seekdir way, std::ios::openmode which) override;
  pos_type seekpos(pos_type position, std::ios::openmode which) override;

 private:
  std::size_t readNext(char* destination, std::size_t count);

  std::unique_ptr<OpenFile> m_file;
  int64 m_position = 0;  // of egptr() in the file
  // Larger reads have a window of their own (ZRKMStreamWindow.h). This one serves single numbers.
  std::array<char, 64> m_bytes{};
};

/// Used by one thread. Errors of the device set badbit, as those of std::ifstream do.
class InputFile final : public std::istream {
 public:
  /// Opens the file with this UTF-8 name. A directory, a pipe or a name without a file leaves the
  /// object closed, and failbit set.
  explicit InputFile(const std::string& name);

  bool isOpen() const { return m_buffer.isOpen(); }

  /// Closes the file. Nothing can be read afterwards. Sets failbit when it is closed already.
  void close() {
    if (!m_buffer.close()) setstate(std::ios::failbit);
  }

 private:
  InputFileBuffer m_buffer;
};

}  // namespace ZRKMetaData
