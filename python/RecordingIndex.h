// An open recording and its index, as the package `voxa` sees it.
#pragma once

#include <pybind11/pybind11.h>

#include <boost/uuid/uuid.hpp>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

namespace python {

/// Every operation holds the GIL at entry, releases it while it reads, and may be called from any
/// thread: those that read one recording wait for each other, separate recordings do not.
class RecordingIndex {
 public:
  /// Opens and indexes the file with this name in the encoding of the file system, as the container
  /// of this name or as its extension implies. The package has opened the file before, so that a
  /// missing one is already reported. Throws ValueError for a name that is none of
  /// `container_kinds()`.
  RecordingIndex(const pybind11::bytes& path, const std::optional<std::string>& container);

  /// "Riff", "Atoms", "Raw" or "None".
  std::string container();

  /// A list of (identifier, key, known, version, offset, size), in index order.
  pybind11::list streams();

  /// (certain, unknown, empty, tie count, [(type, score, passes, [reason])]).
  pybind11::tuple guess(const std::string& id);

  /// (columns, damage) of the records of type `type` with `from` <= time < `to`, in seconds; NaN
  /// does not restrict. Of fixed-size records `columns` is one array of bytes, the packed rows. Of
  /// others it is a tuple with the times and the fields, each an array or a list of objects.
  /// `damage` is None or (byte offset, reason).
  pybind11::tuple records(const std::string& id, const std::string& type, double from, double to);

  /// Whether every record of type `type` can be read. Messages are dropped: what reads the records
  /// afterwards has the same ones.
  bool isWhole(const std::string& id, const std::string& type);

  /// Closes the file. The operations above then raise ValueError.
  void close();

 private:
  template <class Operation>
  auto withParser(Operation operation);
  template <class Operation>
  auto read(const std::string& stream, Operation operation);

  const std::string m_file;
  std::mutex m_mutex;  // locked without the GIL only
  std::unique_ptr<ZRKMetaData::MetaDataParser> m_parser;
};

/// The identifier that this 36-character text states. Throws ValueError for any other.
boost::uuids::uuid identifierOf(const std::string& text);

/// Adds the class of recordings and the operations `container_kinds` and `container_of_file_name`.
void defineRecordingIndex(pybind11::module_& module);

}  // namespace python
