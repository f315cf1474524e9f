#include "tools/formats/OtioTimeline.h"

#include <cstddef>
#include <string_view>

#include "text/Escape.h"
#include "text/JsonText.h"
#include "text/NumberText.h"
#include "text/Utf8.h"

namespace formats {

namespace {

// A JSON number with a point or an exponent, as readers of the format write doubles.
std::string jsonDouble(double number) {
  std::string text{std::string_view(text::NumberText(number))};
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

}  // namespace

void OtioTimeline::begin(const std::string& name) {
  m_out.write(
      "{\"OTIO_SCHEMA\":\"Timeline.1\",\"metadata\":{},\"name\":" + text::jsonString(name) +
      ",\"global_start_time\":null,\"tracks\":{\"OTIO_SCHEMA\":\"Stack.1\",\"metadata\":{},"
      "\"name\":\"tracks\",\"source_range\":null,\"effects\":[],\"markers\":[],\"children\":["
      "{\"OTIO_SCHEMA\":\"Track.1\",\"metadata\":{},\"name\":\"recordings\",\"source_range\":null,"
      "\"effects\":[],\"markers\":[],\"kind\":\"Video\",\"children\":[");
}

void OtioTimeline::beginClip() {
  m_out.write(m_isFirstClip ? "\n" : ",\n");
  m_isFirstClip = false;
  m_isFirstMarker = true;
  m_out.write(
      "{\"OTIO_SCHEMA\":\"Clip.1\",\"metadata\":{},\"source_range\":null,\"effects\":[],"
      "\"markers\":[");
}

void OtioTimeline::add(const StreamLabel& stream, double time, double seconds,
                       const std::string& text) {
  const std::string value = text::jsonString(text);
  writeMarker(stream, time, seconds, value, "BLUE", "\"value\":" + value);
}

void OtioTimeline::add(const StreamLabel& stream, double time, double seconds,
                       const ZRKMetaData::KeyStroke& key) {
  writeMarker(stream, time, seconds, text::jsonString(keyName(key.character)), "GREEN",
              "\"character\":" + std::to_string(key.character) +
                  ",\"eventFlags\":" + std::to_string(key.eventFlags));
}

void OtioTimeline::endClip(const std::string& name, const std::string& url, double duration) {
  m_out.write("],\"name\":" + text::jsonString(name) +
              ",\"media_reference\":{\"OTIO_SCHEMA\":\"ExternalReference.1\",\"metadata\":{},"
              "\"name\":\"\",\"available_range\":{\"OTIO_SCHEMA\":\"TimeRange.1\",\"start_time\":" +
              rationalTime(0) + ",\"duration\":" + rationalTime(duration) +
              "},\"target_url\":" + text::jsonString(url) + "}}");
}

void OtioTimeline::finish() {
  m_out.write("\n]}]}}\n");
}

std::string OtioTimeline::rationalTime(double value) const {
  return "{\"OTIO_SCHEMA\":\"RationalTime.1\",\"rate\":" + jsonDouble(m_rate) +
         ",\"value\":" + jsonDouble(value) + "}";
}

void OtioTimeline::writeMarker(const StreamLabel& stream, double time, double seconds,
                               const std::string& name, const char* color,
                               const std::string& fields) {
  m_out.write(m_isFirstMarker ? "\n" : ",\n");
  m_isFirstMarker = false;
  m_out.write("{\"OTIO_SCHEMA\":\"Marker.2\",\"metadata\":{\"voxa\":{\"stream\":" +
              text::jsonString(stream.stream) + ",\"type\":\"" + infoOf(stream.type).name +
              "\",\"time\":" + jsonDouble(seconds) + "," + fields + "}},\"name\":" + name +
              ",\"color\":\"" + color +
              "\",\"marked_range\":{\"OTIO_SCHEMA\":\"TimeRange.1\",\"start_time\":" +
              rationalTime(time) + ",\"duration\":" + rationalTime(0) + "}}");
}

std::string mediaUrl(const std::string& file, bool isWindows) {
  std::string url;
  const bool hasDrive = isWindows && file.size() > 1 && file[1] == ':';
  if (hasDrive) url = "file:///";
  if (!file.empty() && (file[0] == '/' || (isWindows && file[0] == '\\'))) url = "file://";
  for (std::size_t i = 0; i < file.size(); ++i) {
    const char byte = isWindows && file[i] == '\\' ? '/' : file[i];
    const bool isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                         (byte >= '0' && byte <= '9') ||
                         std::string_view("-._~/").find(byte) != std::string_view::npos ||
                         (hasDrive && i == 1);
    if (isPlain) {
      url += byte;
    } else {
      text::Escape escape;
      escape.append("%");
      escape.appendHex(static_cast<unsigned char>(byte), 2);
      url += escape.text();
    }
  }
  return url;
}

std::string keyName(ZRKMetaData::int32 character) {
  if (character == ' ') return "Space";
  const bool isPrintable =
      (character > ' ' && character < 0x7F) ||
      (character >= 0xA0 && character <= 0x10FFFF &&
       (character < 0xD800 || character > 0xF8FF));  // surrogates and private use
  if (!isPrintable) return "key " + std::to_string(character);
  return text::encodedUtf8(static_cast<char32_t>(character));
}

}  // namespace formats
