// The texts of keys and of their event flags, as the user names them.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "ZRKMetaData/src/ZRKMRecords.h"

namespace formats {

/// A plain value. Several threads may read one object.
class KeyLabels {
 public:
  /// No labels: keys have their symbols (KeyText.h), and event flags their hexadecimal number.
  KeyLabels() = default;

  /// Reads an object such as
  ///
  ///   {"keys": {"0x1B": "Esc", "63232": "Up"}, "flags": {"0x2": "", "0x4": "Ctrl"}}
  ///
  /// `keys` maps character codes and `flags` single bits of the event flags to texts; numbers are
  /// decimal, or hexadecimal after 0x. A flag with an empty text is not shown. Throws
  /// std::invalid_argument, which says what is wrong and where, for anything else.
  static KeyLabels fromJson(std::string_view json);

  /// The text of the key itself. A code without a label or symbol is written as "[0xf700]".
  std::string keyText(ZRKMetaData::int32 character) const;

  /// The flags that are shown, each followed by "+": "Ctrl+", or "0x40+" for bits without a label.
  /// Empty where none is.
  std::string flagsText(ZRKMetaData::int32 eventFlags) const;

 private:
  std::map<ZRKMetaData::int32, std::string> m_keys;
  std::array<std::optional<std::string>, 32> m_flags;  // by bit
};

}  // namespace formats
