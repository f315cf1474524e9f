// The fields of each record type and of each keyframe value.
#pragma once

#include <fmt/format.h>

#include <list>
#include <string>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "host/Kestova/ValueTypes.h"
#include "tools/voxa/Sha256.h"

namespace voxa {

/// Numbers and texts.
template <class Row, class Value>
void describe(Row& row, const Value& value) {
  row.field("value", value);
}

template <class Row>
void describe(Row& row, const ZRKMetaData::KeyStroke& key) {
  row.field("character", key.character);
  row.field("eventFlags", key.eventFlags);
}

template <class Row>
void describe(Row& row, const ZRKMetaData::Point& point) {
  row.field("x", point.x);
  row.field("y", point.y);
}

template <class Row>
void describe(Row& row, const ZRKMetaData::Rect& rect) {
  row.numbers("rect", {"a", "b", "c", "d"}, rect.coordinates);
}

template <class Row>
void describe(Row& row, const ZRKMetaData::CursorImage& image) {
  row.field("imageId", image.m_imageId);
  row.field("dataSize", image.m_dataSize);
  row.field("imageInfo0", image.m_imageInfo0);
  row.field("imageInfo1", image.m_imageInfo1);
  row.field("sha256",
            image.m_data ? sha256(image.m_data.get(), image.imageByteCount()) : std::string());
}

template <class Row>
void describe(Row& row, const Kestova::KeystrokeData& key) {
  row.field("character", key.character());
  row.field("eventFlags", key.eventFlags());
}

/// The third coordinate is always 0 in what is loaded.
template <class Row>
void describe(Row& row, const Kestova::Point& point) {
  row.field("x", point.x);
  row.field("y", point.y);
}

template <class Row>
void describe(Row& row, const Kestova::Rect<float>& rect) {
  const float values[] = {rect.x, rect.y, rect.width, rect.height};
  row.numbers("rect", {"a", "b", "c", "d"}, values);
}

template <class Row>
void describe(Row& row, const std::list<Kestova::Rect<float>>& rects) {
  std::string text;
  for (const auto& rect : rects) {
    text += fmt::format("({},{},{},{})", rect.x, rect.y, rect.width, rect.height);
  }
  row.field("value", text);
}

}  // namespace voxa
