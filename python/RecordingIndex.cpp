#include "python/RecordingIndex.h"

#include <pybind11/stl.h>

#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "python/Arrays.h"
#include "python/Messages.h"
#include "tools/series/Containers.h"
#include "tools/series/Guess.h"
#include "tools/series/RecordRows.h"

namespace py = pybind11;

namespace python {

using ZRKMetaData::CursorImage;
using ZRKMetaData::MetaDataParser;
using ZRKMetaData::MetaDataUUID;

namespace {

template <class Record>
py::object columnsOf(std::vector<series::PackedRow<Record>> rows) {
  return arrayOver<unsigned char>(std::move(rows));
}

// One column of numbers, whose values `valueOf` takes from the rows.
template <class Rows, class ValueOf>
auto column(const Rows& rows, ValueOf valueOf) {
  using Value = std::decay_t<decltype(valueOf(rows.front()))>;
  std::vector<Value> values;
  values.reserve(rows.size());
  for (const auto& row : rows) values.push_back(valueOf(row));
  return arrayOver<Value>(std::move(values));
}

// One column of objects.
template <class Rows, class ObjectOf>
py::list objects(const Rows& rows, ObjectOf objectOf) {
  py::list list(rows.size());
  std::size_t index = 0;
  for (const auto& row : rows) list[index++] = objectOf(row);
  return list;
}

template <class Record>
double timeOf(const series::TimedRow<Record>& row) {
  return row.seconds;
}

template <class Record>
py::object columnsOf(const std::vector<series::TimedRow<std::string>>& rows) {
  return py::make_tuple(column(rows, timeOf<Record>),
                        objects(rows, [](const auto& row) { return textOf(row.record); }));
}

template <class Record>
py::object columnsOf(const std::vector<series::TimedRow<CursorImage>>& rows) {
  const auto field = [&rows](auto member) {
    return column(rows, [member](const auto& row) { return row.record.*member; });
  };
  const auto image = [](const auto& row) {
    return py::bytes(reinterpret_cast<const char*>(row.record.m_data.get()),
                     row.record.imageByteCount());
  };
  return py::make_tuple(column(rows, timeOf<Record>), field(&CursorImage::m_imageId),
                        field(&CursorImage::m_dataSize), field(&CursorImage::m_imageInfo0),
                        field(&CursorImage::m_imageInfo1), objects(rows, image));
}

py::object damageOf(const std::optional<series::DamagedStream>& damage) {
  if (!damage) return py::none();
  return py::make_tuple(damage->byteOffset(), textOf(damage->reason()));
}

series::RecordType typeNamed(const std::string& name) {
  if (const auto type = series::recordTypeNamed(name)) return *type;
  throw py::value_error("not a record type: " + name);
}

}  // namespace

boost::uuids::uuid identifierOf(const std::string& text) {
  try {
    return boost::uuids::string_generator()(text);
  } catch (const std::runtime_error&) {
    throw py::value_error("not a stream identifier: " + text);
  }
}

// Calls `operation` with the parser, without the GIL. The mutex is locked after the GIL is
// released, so that a thread that waits for the recording does not stop the one that reads it.
template <class Operation>
auto RecordingIndex::withParser(Operation operation) {
  const py::gil_scoped_release unlocked;
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_parser == nullptr) throw py::value_error("the recording is closed");
  return operation(*m_parser);
}

// The same; the messages become warnings. `stream` is the one that is read, empty for none.
template <class Operation>
auto RecordingIndex::read(const std::string& stream, Operation operation) {
  CollectedMessages messages;
  auto result = withParser(operation);
  messages.warn(stream.empty() ? m_file : m_file + ": stream " + stream);
  return result;
}

RecordingIndex::RecordingIndex(const py::bytes& path, const std::optional<std::string>& container)
    : m_file(path) {
  const auto kind = container ? series::containerKindNamed(*container)
                              : ZRKMetaData::containerKindOfFileName(m_file);
  if (!kind) throw py::value_error("not a container: " + *container);
  CollectedMessages messages;
  {
    const py::gil_scoped_release unlocked;
    m_parser.reset(MetaDataParser::createForFile(m_file, *kind));
  }
  messages.warn(m_file);
}

std::string RecordingIndex::container() {
  return read({}, [](MetaDataParser& parser) -> std::string {
    return series::containerName(parser.containerKind());
  });
}

py::list RecordingIndex::streams() {
  using Row =
      std::tuple<std::string, std::string, bool, int, ZRKMetaData::int64, ZRKMetaData::int64>;
  const auto rows = read({}, [](MetaDataParser& parser) {
    std::vector<Row> found;
    for (const auto& [id, location] : parser.locations()) {
      found.emplace_back(boost::uuids::to_string(id), MetaDataUUID::shortKey(id),
                         MetaDataUUID::isKnown(id),
                         ZRKMetaData::readHeaderAt(parser.stream(), location.offset).version,
                         location.offset, location.size);
    }
    return found;
  });
  return py::cast(rows);
}

py::tuple RecordingIndex::guess(const std::string& id) {
  const boost::uuids::uuid stream = identifierOf(id);
  const series::Guess guess = read(
      id, [&stream](MetaDataParser& parser) { return series::guessRecordType(parser, stream); });
  py::list candidates;
  for (const auto& candidate : guess.candidates) {
    candidates.append(py::make_tuple(series::infoOf(candidate.type).name, candidate.score,
                                     candidate.passes, candidate.reasons));
  }
  return py::make_tuple(guess.isCertain, guess.isUnknown, guess.isEmpty, guess.tieCount,
                        candidates);
}

py::tuple RecordingIndex::records(const std::string& id, const std::string& type, double from,
                                  double to) {
  const boost::uuids::uuid stream = identifierOf(id);
  const auto recordType = typeNamed(type);
  const auto range = series::TimeRange::between(from, to);
  return series::visitRecordType(recordType, [&](const auto& row) -> py::tuple {
    using Record = typename std::decay_t<decltype(row)>::type;
    auto table = read(id, [&](MetaDataParser& parser) {
      return series::readRows<Record>(parser, stream, range);
    });
    return py::make_tuple(columnsOf<Record>(std::move(table.rows)), damageOf(table.damage));
  });
}

bool RecordingIndex::isWhole(const std::string& id, const std::string& type) {
  const boost::uuids::uuid stream = identifierOf(id);
  const auto recordType = typeNamed(type);
  const CollectedMessages dropped;
  return withParser([&](MetaDataParser& parser) {
    try {
      series::forEachRecord(parser, stream, recordType, {}, [](double, const auto&) {});
      return true;
    } catch (const series::DamagedStream&) {
      return false;
    }
  });
}

void RecordingIndex::close() {
  const py::gil_scoped_release unlocked;
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_parser.reset();
}

void defineRecordingIndex(py::module_& module) {
  py::class_<RecordingIndex>(module, "RecordingIndex")
      .def(py::init<const py::bytes&, const std::optional<std::string>&>(), py::arg("path"),
           py::arg("container"))
      .def("container", &RecordingIndex::container)
      .def("streams", &RecordingIndex::streams)
      .def("guess", &RecordingIndex::guess, py::arg("id"))
      .def("records", &RecordingIndex::records, py::arg("id"), py::arg("type"), py::arg("start"),
           py::arg("stop"))
      .def("is_whole", &RecordingIndex::isWhole, py::arg("id"), py::arg("type"))
      .def("close", &RecordingIndex::close);
  module.def("container_kinds", [] {
    py::list names;
    for (const auto kind : series::kContainerKinds) names.append(series::containerName(kind));
    return names;
  });
  module.def(
      "container_of_file_name",
      [](const py::bytes& path) {
        return series::containerName(ZRKMetaData::containerKindOfFileName(path));
      },
      py::arg("path"));
}

}  // namespace python
