#include "ZRKMetaData/src/ZRKMInputFile.h"

#include <algorithm>
#include <cstddef>
#include <ios>
#include <utility>

namespace ZRKMetaData {

namespace {

constexpr std::streambuf::off_type kFailed = -1;

}  // namespace

bool InputFileBuffer::close() {
  setg(nullptr, nullptr, nullptr);
  return std::exchange(m_file, nullptr) != nullptr;
}

std::size_t InputFileBuffer::readNext(char* destination, std::size_t count) {
  if (!isOpen()) return 0;
  const std::size_t got = m_file->readAt(m_position, destination, count);
  m_position += static_cast<int64>(got);
  return got;
}

InputFileBuffer::int_type InputFileBuffer::underflow() {
  if (gptr() != egptr()) return traits_type::to_int_type(*gptr());
  setg(nullptr, nullptr, nullptr);  // nothing is buffered when the read throws
  const std::size_t got = readNext(m_bytes.data(), m_bytes.size());
  if (got == 0) return traits_type::eof();
  setg(m_bytes.data(), m_bytes.data(), m_bytes.data() + got);
  return traits_type::to_int_type(*gptr());
}

std::streamsize InputFileBuffer::xsgetn(char* destination, std::streamsize count) {
  std::streamsize done = 0;
  while (done < count) {
    const std::streamsize left = count - done;
    if (gptr() != egptr()) {
      const auto ready = std::min<std::streamsize>(left, egptr() - gptr());
      std::copy_n(gptr(), ready, destination + done);
      gbump(static_cast<int>(ready));
      done += ready;
    } else if (left >= static_cast<std::streamsize>(m_bytes.size())) {
      setg(nullptr, nullptr, nullptr);
      const std::size_t got = readNext(destination + done, static_cast<std::size_t>(left));
      if (got == 0) break;
      done += static_cast<std::streamsize>(got);
    } else if (underflow() == traits_type::eof()) {
      break;
    }
  }
  return done;
}

InputFileBuffer::pos_type InputFileBuffer::seekoff(off_type offset, std::ios::seekdir way,
                                                   std::ios::openmode which) {
  if (!isOpen()) return kFailed;
  int64 from = 0;
  if (way == std::ios::cur) from = m_position - (egptr() - gptr());
  if (way == std::ios::end) from = m_file->size();
  if (from < 0) return kFailed;
  return seekpos(from + offset, which);
}

InputFileBuffer::pos_type InputFileBuffer::seekpos(pos_type position,
                                                   std::ios::openmode /*which*/) {
  const int64 to = position;
  if (!isOpen() || to < 0) return kFailed;
  if (to >= m_position - (egptr() - eback()) && to <= m_position) {
    setg(eback(), egptr() - (m_position - to), egptr());
  } else {
    setg(nullptr, nullptr, nullptr);
    m_position = to;
  }
  return position;
}

InputFile::InputFile(const std::string& name)
    : std::istream(nullptr), m_buffer(OpenFile::open(name)) {
  rdbuf(&m_buffer);  // clears the badbit of the stream without a buffer
  if (!isOpen()) setstate(std::ios::failbit);
}

}  // namespace ZRKMetaData
