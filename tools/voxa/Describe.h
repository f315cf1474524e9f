// The fields of each keyframe value. Those of numbers and texts are the fields of their records
// (tools/series/RecordTypes.h).
#pragma once

#include <fmt/format.h>

#include <list>
#include <string>

#include "host/Kestova/ValueTypes.h"
#include "tools/series/RecordTypes.h"

namespace voxa {

using series::describe;

template <class Row>
void describe(Row& row, const Kestova::KeystrokeData& key) {
  row.object("value", [&key](auto& fields) {
    fields.field("character", key.character());
    fields.field("eventFlags", key.eventFlags());
  });
}

/// The third coordinate is always 0 in loaded parameters.
template <class Row>
void describe(Row& row, const Kestova::Point& point) {
  row.object("value", [&point](auto& fields) {
    fields.field("x", point.x);
    fields.field("y", point.y);
  });
}

template <class Row>
void describe(Row& row, const Kestova::Rect<float>& rect) {
  const float values[] = {rect.x, rect.y, rect.width, rect.height};
  row.numbers("value", {"a", "b", "c", "d"}, values);
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
