#include "tools/recording/TrackTags.h"

#include <cstddef>
#include <optional>
#include <string_view>

#include "tools/recording/Container.h"
#include "tools/recording/TopLevel.h"

namespace recording {

namespace {

std::string_view wholeOf(const Structure& structure, std::string_view bytes) {
  return bytes.substr(structure.start, structure.end - structure.start);
}

std::string_view payloadOf(const Structure& structure, std::string_view bytes) {
  return bytes.substr(structure.payload, structure.end - structure.payload);
}

// The payload of the first atom of `type`, empty when there is none.
std::string_view childOf(std::string_view bytes, const char* type) {
  std::optional<std::string_view> found;
  eachAtom(bytes, [&](const Structure& child) {
    if (!found && child.type == type) found = payloadOf(child, bytes);
  });
  return found.value_or(std::string_view());
}

bool isVideoTrack(std::string_view trakPayload) {
  constexpr std::size_t kHandlerOffset = 8;
  const std::string_view handler = childOf(childOf(trakPayload, "mdia"), "hdlr");
  return handler.size() > kHandlerOffset && handler.substr(kHandlerOffset, 4) == "vide";
}

bool hasTag(std::string_view trakPayload) {
  return childOf(trakPayload, "udta").find("VTAG") != std::string_view::npos;
}

// In front of other user data, since QuickTime ends a list of it with zeros.
Bytes taggedTrack(std::string_view trakPayload, std::uint32_t tag) {
  Bytes tagged;
  bool isTagged = false;
  eachAtom(trakPayload, [&](const Structure& child) {
    if (child.type == "udta" && !isTagged) {
      tagged += atom("udta", tagAtom(tag).append(payloadOf(child, trakPayload)));
      isTagged = true;
    } else {
      tagged += wholeOf(child, trakPayload);
    }
  });
  return isTagged ? tagged : tagged + atom("udta", tagAtom(tag));
}

}  // namespace

Bytes tagAtom(std::uint32_t tag) {
  return atom("VTAG", bigEndian(tag));
}

Bytes taggedMovieHeader(const Bytes& moovPayload) {
  Bytes tagged;
  std::uint32_t next = kScreenTag;
  eachAtom(moovPayload, [&](const Structure& child) {
    const std::string_view payload = payloadOf(child, moovPayload);
    const bool isVideo = child.type == "trak" && isVideoTrack(payload);
    if (isVideo && next <= kCameraTag && !hasTag(payload)) {
      tagged += atom("trak", taggedTrack(payload, next));
    } else {
      tagged += wholeOf(child, moovPayload);
    }
    if (isVideo) ++next;
  });
  return tagged;
}

bool isFragmented(const Bytes& moovPayload) {
  bool found = false;
  eachAtom(moovPayload, [&](const Structure& child) { found = found || child.type == "mvex"; });
  return found;
}

}  // namespace recording
