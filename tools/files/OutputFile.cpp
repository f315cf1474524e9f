#include "tools/files/OutputFile.h"

#include <stdexcept>
#include <system_error>

#include "tools/files/Target.h"

namespace files {

namespace {

constexpr std::size_t kBufferSize = 64U << 10U;

// Runs `operate`; what it throws gets the name in front of its reason.
template <class Operate>
auto naming(const std::string& name, Operate operate) {
  try {
    return operate();
  } catch (const std::system_error& error) {
    throw std::runtime_error(name + ": cannot write: " + error.code().message());
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(name + ": " + error.what());
  }
}

}  // namespace

OutputFile::OutputFile(const std::string& name, Existing existing)
    : m_name(name), m_target(naming(name, [&] { return Target::open(name, existing); })) {}

OutputFile::~OutputFile() = default;

void OutputFile::write(std::string_view bytes) {
  if (bytes.size() >= kBufferSize) {
    flush();
    naming(m_name, [&] { m_target->write(bytes); });
    return;
  }
  m_buffer += bytes;
  if (m_buffer.size() >= kBufferSize) flush();
}

void OutputFile::flush() {
  naming(m_name, [this] { m_target->write(m_buffer); });
  m_buffer.clear();
}

void OutputFile::commit() {
  flush();
  naming(m_name, [this] { m_target->commit(); });
}

}  // namespace files
