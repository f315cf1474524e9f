#include "tools/formats/KeyLabels.h"

#include <fmt/format.h>

#include <charconv>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "tools/formats/KeyText.h"

namespace formats {

namespace {

using nlohmann::json;
using ZRKMetaData::int32;

[[noreturn]] void fail(const std::string& why) {
  throw std::invalid_argument(why);
}

std::uint32_t numberOf(const std::string& text, const std::string& group) {
  const bool isHex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* const end = text.data() + text.size();
  std::int64_t number = 0;
  const auto [rest, error] =
      std::from_chars(text.data() + (isHex ? 2 : 0), end, number, isHex ? 16 : 10);
  if (error != std::errc() || rest != end || number < INT32_MIN || number > UINT32_MAX) {
    fail("'" + text + "' in '" + group +
         "' is not a 32-bit number; use decimal or 0x and hexadecimal");
  }
  return static_cast<std::uint32_t>(number);
}

[[noreturn]] void failOfLabel(const std::string& name, const std::string& group) {
  fail("the label of '" + name + "' in '" + group + "' is not a string");
}

template <class Take>
void forEachLabel(const json& document, const std::string& group, Take take) {
  const auto found = document.find(group);
  if (found == document.end()) return;
  if (!found->is_object()) fail("'" + group + "' is not an object");
  for (const auto& [name, label] : found->items()) {
    if (!label.is_string()) failOfLabel(name, group);
    take(numberOf(name, group), label.template get<std::string>(), name);
  }
}

}  // namespace

KeyLabels KeyLabels::fromJson(std::string_view text) {
  json document;
  try {
    document = json::parse(text);
  } catch (const json::parse_error& error) {
    fail("not JSON at byte " + std::to_string(error.byte));
  } catch (const json::exception&) {
    fail("a number in the JSON is out of range");
  }
  if (!document.is_object()) fail("the JSON is not an object");
  for (const auto& item : document.items()) {
    if (item.key() != "keys" && item.key() != "flags") {
      fail("unknown member '" + item.key() + "'; use 'keys' and 'flags'");
    }
  }
  KeyLabels labels;
  forEachLabel(document, "keys", [&](std::uint32_t code, std::string label, const std::string&) {
    labels.m_keys.insert_or_assign(static_cast<int32>(code), std::move(label));
  });
  forEachLabel(document, "flags", [&](std::uint32_t flag, std::string label, auto& name) {
    std::size_t bit = 0;
    while (bit < labels.m_flags.size() && flag != std::uint32_t{1} << bit) ++bit;
    if (bit == labels.m_flags.size()) fail("'" + name + "' in 'flags' is not a single bit");
    labels.m_flags[bit] = std::move(label);
  });
  return labels;
}

std::string KeyLabels::keyText(int32 character) const {
  if (const auto label = m_keys.find(character); label != m_keys.end()) return label->second;
  std::string symbol = keySymbol(character);
  return symbol.empty() ? fmt::format("[{:#x}]", static_cast<std::uint32_t>(character)) : symbol;
}

std::string KeyLabels::flagsText(int32 eventFlags) const {
  auto unnamed = static_cast<std::uint32_t>(eventFlags);
  std::string text;
  for (std::size_t bit = 0; bit < m_flags.size(); ++bit) {
    const std::uint32_t flag = std::uint32_t{1} << bit;
    if ((unnamed & flag) == 0 || !m_flags[bit]) continue;
    unnamed &= ~flag;
    if (!m_flags[bit]->empty()) text += *m_flags[bit] + "+";
  }
  return unnamed == 0 ? text : text + fmt::format("{:#x}+", unnamed);
}

}  // namespace formats
