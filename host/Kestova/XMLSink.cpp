#include "host/Kestova/XMLSink.h"

#include <utility>

namespace Kestova {

XMLSink::XMLSink(std::ostream& out) : m_out(out) {
  open();
}

void XMLSink::hold(std::string_view text) {
  m_held = text;
  close();
}

bool XMLSink::takeBack() {
  const bool isHeld = !m_held.empty();
  m_held = {};
  if (isHeld) open();
  return isHeld;
}

void XMLSink::flush() {
  takeBack();
  const auto count = pptr() - m_buffer.data();
  if (count > 0) m_out.write(m_buffer.data(), count);
  m_used = 0;
  open();
}

XMLSink::int_type XMLSink::overflow(int_type character) {
  const char text = traits_type::to_char_type(character);
  append({&text, 1});
  return character;
}

std::streamsize XMLSink::xsputn(const char* text, std::streamsize count) {
  append({text, static_cast<std::size_t>(count)});
  return count;
}

void XMLSink::appendBeyondRoom(std::string_view text) {
  if (!m_held.empty()) {
    const std::string_view held = m_held;
    takeBack();
    append(held);
    append(text);
    return;
  }
  flush();
  if (text.size() <= m_buffer.size()) {
    append(text);
  } else {
    m_out.write(text.data(), static_cast<std::streamsize>(text.size()));
  }
}

void XMLSink::open() {
  setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
  pbump(static_cast<int>(m_used));
}

void XMLSink::close() {
  m_used = pptr() - m_buffer.data();
  setp(nullptr, nullptr);
}

}  // namespace Kestova
