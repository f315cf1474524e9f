// What XML is written to on its way to a stream: a block of text whose end can be taken back when
// nothing follows it, as the end of a start tag, which reads otherwise then.
#pragma once

#include <ostream>
#include <streambuf>
#include <string_view>

#include "host/Kestova/Export.h"
#include "host/Kestova/TextBlock.h"

namespace Kestova {

/// Used by one thread. The stream must outlive it and gets what is left by `flush`, at the latest
/// when the sink ends.
class KESTOVA_API XMLSink final : public std::streambuf {
 public:
  explicit XMLSink(std::ostream& out) : m_text(out) {}
  ~XMLSink() override;

  TextBlock& text() { return m_text; }

  /// Writes a text that stays only if something follows it.
  void hold(std::string_view text) {
    m_text.write(text);
    m_held = text.size();
    m_heldEnd = m_text.count();
  }

  /// Ends the hold; returns true when nothing has followed, and the text is gone.
  bool takeBack() {
    const bool isLast = m_held != 0 && m_heldEnd == m_text.count();
    if (isLast) m_text.takeBack(m_held);
    m_held = 0;
    return isLast;
  }

 protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;

 private:
  TextBlock m_text;
  std::size_t m_held = 0;
  std::size_t m_heldEnd = 0;
};

}  // namespace Kestova
