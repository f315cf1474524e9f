// A number with its noun: "1 stream", "2 streams".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace text {

/// Requires: the plural of `noun` is made with an "s".
inline std::string counted(std::uint64_t count, std::string_view noun) {
  std::string text = std::to_string(count) + " ";
  text += noun;
  if (count != 1) text += "s";
  return text;
}

}  // namespace text
