// The differences between the value types of parameters: one table row per type.
#pragma once

#include <algorithm>
#include <boost/lexical_cast.hpp>
#include <limits>
#include <list>
#include <string>

#include "host/Kestova/Json.h"
#include "host/Kestova/XMLable.h"
#include "params/ValueTypes.h"
#include "text/NumberText.h"

namespace Kestova {

/// What holds for a type unless its row says otherwise. Texts are what a text::TextBlock takes.
template <class T>
struct CommonValueTraits {
  /// The value to store when `value` is asked for. A type could adjust it here; none does.
  static const T& verifyValue(const T& value) { return value; }

  /// Equality without tolerance in which NaN equals NaN, so that a copy always equals its original.
  static bool similarToValue(const T& left, const T& right) { return left == right; }

  /// The value in an XML attribute. Throws boost::bad_lexical_cast for what has no text.
  static std::string xmlText(const T& value) { return boost::lexical_cast<std::string>(value); }

  /// The value in JSON: empty for types that the host's form gives none.
  static std::string jsonText(const T& /*value*/) { return {}; }
};

/// For types that the host's JSON has a form for.
template <class T>
struct JsonValueTraits : CommonValueTraits<T> {
  static std::string jsonText(const T& value) { return json_representation(value); }
};

/// For types that are written alike in both forms, and that a block of text writes itself.
template <class T>
struct IntegerValueTraits : CommonValueTraits<T> {
  static T xmlText(T value) { return value; }
  static T jsonText(T value) { return value; }
};

/// One row for each of the types that KESTOVA_FOR_EACH_PARAMETER_TYPE lists. `kTypeName` is the
/// name under which the type is written.
template <class T>
struct ValueTraits;

template <>
struct ValueTraits<int> : IntegerValueTraits<int> {
  static constexpr const char* kTypeName = "int";
};

template <>
struct ValueTraits<double> : JsonValueTraits<double> {
  static constexpr const char* kTypeName = "double";
  static text::NumberText xmlText(double value) {
    return text::NumberText(value, std::numeric_limits<double>::max_digits10);
  }
  static bool similarToValue(double left, double right) {
    return left == right || (left != left && right != right);
  }
};

template <>
struct ValueTraits<int64> : IntegerValueTraits<int64> {
  static constexpr const char* kTypeName = "int64";
};

template <>
struct ValueTraits<std::string> : JsonValueTraits<std::string> {
  static constexpr const char* kTypeName = "string";
  static std::string xmlText(const std::string& value) { return xml_representation(value); }
};

template <>
struct ValueTraits<Point> : CommonValueTraits<Point> {
  static constexpr const char* kTypeName = "point";
  static bool similarToValue(const Point& left, const Point& right) {
    const auto areSame = ValueTraits<double>::similarToValue;
    return areSame(left.x, right.x) && areSame(left.y, right.y) && areSame(left.z, right.z);
  }
};

template <>
struct ValueTraits<Rect<float>> : CommonValueTraits<Rect<float>> {
  static constexpr const char* kTypeName = "rect";
  static bool similarToValue(const Rect<float>& left, const Rect<float>& right) {
    const auto areSame = ValueTraits<double>::similarToValue;
    return areSame(left.x, right.x) && areSame(left.y, right.y) &&
           areSame(left.width, right.width) && areSame(left.height, right.height);
  }
};

template <>
struct ValueTraits<std::list<Rect<float>>> : CommonValueTraits<std::list<Rect<float>>> {
  static constexpr const char* kTypeName = "rectCollection";
  static bool similarToValue(const std::list<Rect<float>>& left,
                             const std::list<Rect<float>>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      ValueTraits<Rect<float>>::similarToValue);
  }
  static std::string xmlText(const std::list<Rect<float>>& value) {
    return xml_representation(value);
  }
};

template <>
struct ValueTraits<KeystrokeData> : CommonValueTraits<KeystrokeData> {
  static constexpr const char* kTypeName = "keystroke";
};

#define KESTOVA_HAS_TRAITS(T) \
  static_assert(ValueTraits<T>::kTypeName != nullptr, "a value type without a row of traits");
KESTOVA_FOR_EACH_PARAMETER_TYPE(KESTOVA_HAS_TRAITS)
#undef KESTOVA_HAS_TRAITS

}  // namespace Kestova
