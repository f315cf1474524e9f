#include "tools/formats/OtioTimeline.h"

#include <cstddef>
#include <string_view>

#include "text/Escape.h"
#include "text/JsonText.h"
#include "text/NumberText.h"
#include "text/Utf8.h"

namespace formats {

namespace {

// Writes a JSON number with a point or an exponent, as readers of the format write doubles.
void writeDouble(TextSink& out, double number) {
  const text::NumberText digits(number);
  const std::string_view written = digits;
  out.write(written);
  if (written.find_first_of(".e") == std::string_view::npos) out.write(".0");
}

std::string beforeValue(double rate) {
  std::string text;
  TextSink sink([&text](std::string_view block) { text += block; });
  sink.write("{\"OTIO_SCHEMA\":\"RationalTime.1\",\"rate\":");
  writeDouble(sink, rate);
  sink.write(",\"value\":");
  sink.flush();
  return text;
}

}  // namespace

OtioTimeline::OtioTimeline(TextSink& out, double rate)
    : m_out(out), m_beforeValue(beforeValue(rate)) {}

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

void OtioTimeline::beginStream(const StreamLabel& stream) {
  m_beforeSeconds = "{\"OTIO_SCHEMA\":\"Marker.2\",\"metadata\":{\"voxa\":{\"stream\":" +
                    text::jsonString(stream.stream) + ",\"type\":\"" + infoOf(stream.type).name +
                    "\",\"time\":";
}

void OtioTimeline::add(double time, double seconds, const std::string& text) {
  beginMarker(seconds);
  m_out.write(",\"value\":\"");
  m_out.writeEscaped<text::JsonRule>(text);
  m_out.write("\"}},\"name\":\"");
  m_out.writeEscaped<text::JsonRule>(text);
  m_out.write("\",\"color\":\"BLUE");
  endMarker(time);
}

void OtioTimeline::add(double time, double seconds, const ZRKMetaData::KeyStroke& key) {
  beginMarker(seconds);
  m_out.write(",\"character\":");
  m_out.writeNumber(key.character);
  m_out.write(",\"eventFlags\":");
  m_out.writeNumber(key.eventFlags);
  m_out.write("}},\"name\":\"");
  m_out.writeEscaped<text::JsonRule>(keyName(key.character));
  m_out.write("\",\"color\":\"GREEN");
  endMarker(time);
}

void OtioTimeline::endClip(const std::string& name, const std::string& url, double duration) {
  m_out.write("],\"name\":" + text::jsonString(name) +
              ",\"media_reference\":{\"OTIO_SCHEMA\":\"ExternalReference.1\",\"metadata\":{},"
              "\"name\":\"\",\"available_range\":{\"OTIO_SCHEMA\":\"TimeRange.1\",\"start_time\":");
  writeTime(0);
  m_out.write(",\"duration\":");
  writeTime(duration);
  m_out.write("},\"target_url\":" + text::jsonString(url) + "}}");
}

void OtioTimeline::finish() {
  m_out.write("\n]}]}}\n");
}

void OtioTimeline::beginMarker(double seconds) {
  m_out.write(m_isFirstMarker ? "\n" : ",\n");
  m_isFirstMarker = false;
  m_out.write(m_beforeSeconds);
  writeDouble(m_out, seconds);
}

void OtioTimeline::endMarker(double time) {
  m_out.write("\",\"marked_range\":{\"OTIO_SCHEMA\":\"TimeRange.1\",\"start_time\":");
  writeTime(time);
  m_out.write(",\"duration\":");
  writeTime(0);
  m_out.write("}}");
}

void OtioTimeline::writeTime(double value) {
  m_out.write(m_beforeValue);
  writeDouble(m_out, value);
  m_out.write("}");
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
