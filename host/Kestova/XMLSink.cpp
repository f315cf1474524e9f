#include "host/Kestova/XMLSink.h"

namespace Kestova {

XMLSink::~XMLSink() {
  takeBack();
}

XMLSink::int_type XMLSink::overflow(int_type character) {
  m_text.write(traits_type::to_char_type(character));
  return character;
}

std::streamsize XMLSink::xsputn(const char* text, std::streamsize count) {
  m_text.write(std::string_view(text, static_cast<std::size_t>(count)));
  return count;
}

}  // namespace Kestova
