#include "python/Messages.h"

#include <cstring>
#include <iostream>
#include <ostream>
#include <sstream>
#include <streambuf>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "python/Arrays.h"

namespace python {

namespace {

thread_local CollectedMessages* t_collector = nullptr;

// Passes text on, except that of threads which collect it. It has no buffer, so that threads share
// nothing but the target, which locks itself.
class CollectingBuffer final : public std::streambuf {
 public:
  explicit CollectingBuffer(std::streambuf* target) : m_target(target) {}

 protected:
  int_type overflow(int_type character) override {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(0);
    const char text = traits_type::to_char_type(character);
    return xsputn(&text, 1) == 1 ? character : traits_type::eof();
  }

  std::streamsize xsputn(const char* text, std::streamsize size) override {
    if (t_collector == nullptr) return m_target->sputn(text, size);
    t_collector->add(text, static_cast<std::size_t>(size));
    return size;
  }

  int sync() override { return t_collector == nullptr ? m_target->pubsync() : 0; }

 private:
  std::streambuf* const m_target;
};

void collectAssertion(const char* expression, const char* unit, int line) {
  const std::string text =
      std::string(unit) + ":" + std::to_string(line) + ": assertion failed: " + expression + "\n";
  if (t_collector != nullptr) t_collector->add(text.data(), text.size());
}

}  // namespace

CollectedMessages::CollectedMessages() : m_before(t_collector) {
  t_collector = this;
}

CollectedMessages::~CollectedMessages() {
  t_collector = m_before;
}

void CollectedMessages::warn(const std::string& place) {
  std::istringstream lines(m_text);
  m_text.clear();
  const pybind11::str where = textOf(place);
  std::string before;  // a damaged file may have one message a million times
  for (std::string line; std::getline(lines, line); before = line) {
    if (line == before) continue;
    // The caller of the package is two Python frames up.
    const pybind11::str text = textOf(line);
    if (PyErr_WarnFormat(PyExc_RuntimeWarning, 2, "%U: %U", where.ptr(), text.ptr()) != 0) {
      throw pybind11::error_already_set();
    }
  }
}

void installMessageCollection() {
  for (std::ostream* const stream : {&std::cout, &std::cerr}) {
    // Never destroyed, because the stream is used until the process ends.
    stream->rdbuf(new CollectingBuffer(stream->rdbuf()));
  }
  ZRKMetaData::setAssertionHandler(&collectAssertion);
}

}  // namespace python
