// Decodes one metadata stream, record by record, into an observer.
//
// A stream is a 24-byte header (MetaDataUUID.h) and then records without padding, little-endian,
// each with a time in seconds on the recording's timeline:
//
//   int, double, int64      time (8 bytes), value (4, 8, 8)
//   KeyStroke, Point        time (8), two 32-bit numbers
//   Rect                    time (8), four 32-bit numbers
//   std::string             size of what follows (4), time (8), size - 8 characters as they are
//   CursorImage             size, ignored (4), time (8), image identifier (8), data size (4), and
//                           with a data size above 8: two 32-bit numbers, data size - 8 bytes
//
// Nothing is collected: memory does not grow with the length of the stream.
#pragma once

#include <istream>
#include <list>
#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"
#include "ZRKMetaData/src/ZRKMRecords.h"

namespace ZRKMetaData {

/// Receives the records of one stream. The reader does not own it. A class that is deleted through
/// a base pointer declares a virtual destructor of its own.
template <class T>
class DataStreamObserver {
 public:
  /// Receives one record and its time in seconds; both are valid during the call. Returns false to
  /// stop the reader. An exception ends the read and reaches the reader's caller.
  virtual bool onData(double seconds, const T& value) = 0;

 protected:
  DataStreamObserver() = default;
  DataStreamObserver(const DataStreamObserver&) = default;
  DataStreamObserver& operator=(const DataStreamObserver&) = default;
  ~DataStreamObserver() = default;
};

/// The reader of streams of `T`, built for the eight record types above. It has no state.
template <class T>
class MetaDataReader {
 public:
  /// Delivers the records of the entry at `offset`, in file order. Returns when the position is at
  /// or beyond `offset + size` bytes, at the end of the file, or when the observer returns false. A
  /// record that starts before the bound is read whole. Reads nothing if the sum overflows.
  ///
  /// A header whose version is not the registry's: a message on standard output, no records.
  /// The file ends inside a value: that record is delivered, zero where nothing was read.
  /// The file ends inside a leading time or size: std::runtime_error "invalid meta data entry".
  /// A length over 64 MiB beyond the file, or a string size below 8: std::length_error.
  /// Records before the faulty one are delivered in each case. Afterwards the stream has the
  /// position and the indicators of reading record by record. Its exception mask is set aside
  /// meanwhile: a failure of the stream ends the read and throws nothing by itself.
  void parseFile(DataStreamObserver<T>& observer, std::istream& stream, int64 offset, int64 size);
};

/// Decode one record at the current position of `in`, with the code that `parseFile` uses. They
/// throw as `parseFile` does, with the stream's exception mask set aside as there. Afterwards the
/// stream has the position and the indicators of reading field by field. Where the stream ends, the
/// bytes of `seconds` and `value` that were not read are unchanged.
void readRecord(std::istream& in, double& seconds, int& value);
void readRecord(std::istream& in, double& seconds, double& value);
void readRecord(std::istream& in, double& seconds, int64& value);
void readRecord(std::istream& in, double& seconds, KeyStroke& value);
void readRecord(std::istream& in, double& seconds, Point& value);
void readRecord(std::istream& in, double& seconds, Rect& value);

/// Appends the characters to `value`.
void readRecord(std::istream& in, double& seconds, std::string& value);

/// Replaces what `data` holds; after an exception it is an empty image. A data size from 1 to 8 is
/// reported as an assertion and as a warning on standard output. The record then counts as one
/// without an image, and the next one is decoded from the byte after the data size.
void readRecord(std::istream& in, double& seconds, CursorImage* data);

/// A list of strings: size, ignored (4), count (4), then per string its length + 8 (4), a time that
/// is thrown away (8) and the characters, appended to `value`. `seconds` is not written.
void readRecord(std::istream& in, double& seconds, std::list<std::string>& value);

}  // namespace ZRKMetaData
