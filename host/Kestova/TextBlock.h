// Gathers text on its way to a stream, which is asked once a block instead of once a word.
#pragma once

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>
#include <type_traits>

#include "host/Kestova/Export.h"
#include "host/Kestova/NumberText.h"

namespace Kestova {

/// The white space in front of a line: two spaces a level.
struct Indent {
  int level;
};

/// Used by one thread. The stream must outlive it, and sees everything at the latest when the block
/// ends; failures show in the stream's state.
class KESTOVA_API TextBlock {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): what is not used is not read
  explicit TextBlock(std::ostream& out) : m_out(out) {}
  ~TextBlock();
  TextBlock(const TextBlock&) = delete;
  TextBlock& operator=(const TextBlock&) = delete;

  /// Writes texts, characters, numbers (as `writeNumber` does) and white space one behind the
  /// other. Many at once cost less than one by one.
  template <class... Parts>
  void write(const Parts&... parts) {
    const std::size_t most = (mostOf(parts) + ...);
    if (most > room()) flush();
    if (most <= room()) {
      char* end = m_text.data() + m_used;  // in a register, where a member would go to memory
      ((end = put(end, parts)), ...);
      m_used = static_cast<std::size_t>(end - m_text.data());
    } else {
      (writeLarge(parts), ...);
    }
  }

  /// How many bytes it was given so far.
  std::size_t count() const { return m_flushed + m_used; }

  /// Forgets the last `count` bytes. Requires: they came as one text and nothing was flushed since.
  void takeBack(std::size_t count) { m_used -= count; }

  /// Hands everything to the stream, for others who write to it.
  void flush();

 private:
  std::size_t room() const { return m_text.size() - m_used; }

  template <class Part>
  static constexpr bool kIsText = std::is_convertible_v<const Part&, std::string_view>;

  // How much room a part takes at most, and how it takes it, which returns its end.
  template <class Part>
  static std::size_t mostOf(const Part& part) {
    if constexpr (kIsText<Part>) return std::string_view(part).size();
    return kNumberRoom;
  }
  template <class Part>
  static char* put(char* first, const Part& part) {
    if constexpr (kIsText<Part>) {
      const std::string_view text = part;
      return std::copy(text.begin(), text.end(), first);
    } else {
      return writeNumber(first, part);
    }
  }
  static std::size_t mostOf(char /*character*/) { return 1; }
  static char* put(char* first, char character) {
    *first = character;
    return first + 1;
  }
  static std::size_t mostOf(Indent indent) {
    return 2 * static_cast<std::size_t>(std::max(indent.level, 0));
  }
  static char* put(char* first, Indent indent) {
    for (int level = 0; level < indent.level; ++level) first = put(first, "  ");
    return first;
  }

  // A part of what is larger than the block together.
  template <class Part>
  void writeLarge(const Part& part) {
    if constexpr (kIsText<Part>) {
      writeText(part);
    } else {
      write(part);
    }
  }
  void writeLarge(Indent indent) {
    for (int level = 0; level < indent.level; ++level) write("  ");
  }
  void writeText(std::string_view text);

  std::ostream& m_out;
  std::array<char, std::size_t{32} << 10U> m_text;
  std::size_t m_used = 0;
  std::size_t m_flushed = 0;
};

}  // namespace Kestova
