// The table of the types that the module loads a stream as.
//
// The option values, the help text and the dispatch of `load` read this table.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <list>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "host/Kestova/ProjectEditRate.h"
#include "host/Kestova/ScreenMetaDataLoader.h"
#include "host/Kestova/ThreadSafe.h"
#include "host/Kestova/ValueTypes.h"
#include "params/Parameter.h"
#include "tools/series/RecordTypes.h"

namespace hosting {

template <class T>
using LoadOperation = boost::shared_ptr<Kestova::Parameter<T>> (Kestova::ScreenMetaDataLoader::*)(
    const std::string&, const std::string&, const boost::weak_ptr<const Kestova::ThreadSafe>&,
    const boost::weak_ptr<const Kestova::ProjectEditRate>&) const;

/// A row of the table: `operation` loads a stream as keyframes of type `T`.
template <class T>
struct ParameterTypeRow {
  const char* name;
  LoadOperation<T> operation;
};

/// The name of the record type that is decoded to `Record`.
template <class Record>
constexpr const char* nameOfRecord() {
  return series::infoOf(series::recordTypeOf<Record>()).name;
}

/// The types of records first, under their names.
inline constexpr std::tuple kParameterTypes = {
    ParameterTypeRow<int>{nameOfRecord<int>(), &Kestova::ScreenMetaDataLoader::loadInts},
    ParameterTypeRow<double>{nameOfRecord<double>(), &Kestova::ScreenMetaDataLoader::loadDoubles},
    ParameterTypeRow<Kestova::int64>{nameOfRecord<ZRKMetaData::int64>(),
                                     &Kestova::ScreenMetaDataLoader::loadInt64},
    ParameterTypeRow<std::string>{nameOfRecord<std::string>(),
                                  &Kestova::ScreenMetaDataLoader::loadStrings},
    ParameterTypeRow<Kestova::KeystrokeData>{nameOfRecord<ZRKMetaData::KeyStroke>(),
                                             &Kestova::ScreenMetaDataLoader::loadKeystrokeData},
    ParameterTypeRow<Kestova::Point>{nameOfRecord<ZRKMetaData::Point>(),
                                     &Kestova::ScreenMetaDataLoader::loadPoints},
    ParameterTypeRow<Kestova::Rect<float>>{nameOfRecord<ZRKMetaData::Rect>(),
                                           &Kestova::ScreenMetaDataLoader::loadRects},
    ParameterTypeRow<std::string>{nameOfRecord<ZRKMetaData::CursorImage>(),
                                  &Kestova::ScreenMetaDataLoader::loadCursorImagePaths},
    ParameterTypeRow<std::list<Kestova::Rect<float>>>{
        "rect-collections", &Kestova::ScreenMetaDataLoader::loadRectCollection},
    ParameterTypeRow<double>{"opacity", &Kestova::ScreenMetaDataLoader::loadCursorOpacity},
};

/// The names, in table order.
inline std::vector<std::string> parameterTypeNames() {
  return std::apply([](const auto&... rows) { return std::vector<std::string>{rows.name...}; },
                    kParameterTypes);
}

/// Calls `function` with the row of the type with this name. Returns false for any other text.
template <class Function>
bool visitParameterType(std::string_view name, Function function) {
  const auto visit = [&](const auto& row) {
    if (row.name != name) return false;
    function(row);
    return true;
  };
  return std::apply([&](const auto&... rows) { return (visit(rows) || ...); }, kParameterTypes);
}

}  // namespace hosting
