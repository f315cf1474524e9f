#include "host/Kestova/TextBlock.h"

#include <utility>

namespace Kestova {

TextBlock::~TextBlock() {
  try {
    flush();
  } catch (...) {  // of a stream that throws; its state tells
  }
}

void TextBlock::writeText(std::string_view text) {
  if (text.size() <= m_text.size()) {
    write(text);
    return;
  }
  flush();
  m_out.write(text.data(), static_cast<std::streamsize>(text.size()));
  m_flushed += text.size();
}

void TextBlock::flush() {
  const std::size_t used = std::exchange(m_used, 0);
  m_flushed += used;
  if (used != 0) m_out.write(m_text.data(), static_cast<std::streamsize>(used));
}

}  // namespace Kestova
