// What XML is written to on its way to a stream: a block of text that can hold a text back until
// something follows it, as the end of a start tag, which reads otherwise when nothing does.
#pragma once

#include <algorithm>
#include <array>
#include <ostream>
#include <streambuf>
#include <string_view>

#include "host/Kestova/Export.h"

namespace Kestova {

/// Used by one thread. The stream must outlive it and gets what is left only by `flush`.
class KESTOVA_API XMLSink final : public std::streambuf {
 public:
  explicit XMLSink(std::ostream& out);

  void append(std::string_view text) {
    if (text.size() > static_cast<std::size_t>(epptr() - pptr())) {
      appendBeyondRoom(text);
    } else {
      std::copy(text.begin(), text.end(), pptr());
      pbump(static_cast<int>(text.size()));
    }
  }

  /// The text that is written in front of the next byte.
  void hold(std::string_view text);

  /// Forgets the text and returns true when nothing has been written since.
  bool takeBack();

  void flush();

 protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;

 private:
  void appendBeyondRoom(std::string_view text);
  void open();
  void close();

  std::ostream& m_out;
  // While a text is held there is no room here, so that whatever comes next has to ask for it.
  std::array<char, 8192> m_buffer{};
  std::ptrdiff_t m_used = 0;  // while a text is held
  std::string_view m_held;
};

}  // namespace Kestova
