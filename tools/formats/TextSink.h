// Text on its way to a file: collected, so that the file is called once per block.
#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "text/Escape.h"
#include "text/NumberText.h"

namespace formats {

/// Used by one thread. What was not flushed is lost with the sink.
class TextSink {
 public:
  /// `take` is called with each block, which is valid during the call, and may throw.
  explicit TextSink(std::function<void(std::string_view)> take) : m_take(std::move(take)) {}

  void write(std::string_view text) {
    m_text += text;
    if (m_text.size() >= kBlockBytes) flush();
  }

  /// Writes a number as text::writeNumber does.
  template <class Number, class... Digits>
  void writeNumber(Number number, Digits... digits) {
    write(text::NumberText(number, digits...));
  }

  /// Writes text with the escapes of `Rule` (text/Escape.h).
  template <class Rule>
  void writeEscaped(std::string_view text) {
    text::forEachPiece<Rule>(text, [this](std::string_view piece) { write(piece); });
  }

  void flush() {
    m_take(m_text);
    m_text.clear();
  }

 private:
  static constexpr std::size_t kBlockBytes = std::size_t{32} << 10U;

  std::function<void(std::string_view)> m_take;
  std::string m_text;
};

}  // namespace formats
