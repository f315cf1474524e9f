#include "ZRKMetaData/src/ZRKMMetaDataReader.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMAnnouncedLength.h"
#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMLittleEndian.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace ZRKMetaData {

namespace {

constexpr std::size_t kReadAhead = 64U << 10U;
constexpr uint32 kTimeByteCount = 8;

// Reads the first field of a record, the only one in which the end of the file is an error. A
// device that fails here counts as the end.
template <class Number>
void readLeading(StreamWindow& in, Number& field) {
  readLittleEndian(in, field);
  if (in.eof() || in.bad()) throw std::runtime_error("invalid meta data entry");
}

// Source: a StreamWindow, or RecordBytes.
template <class Source, class Number>
void readValue(Source& in, Number& value) {
  readLittleEndian(in, value);
}

template <class Source>
void readValue(Source& in, KeyStroke& value) {
  readLittleEndian(in, value.character);
  readLittleEndian(in, value.eventFlags);
}

template <class Source>
void readValue(Source& in, Point& value) {
  readLittleEndian(in, value.x);
  readLittleEndian(in, value.y);
}

template <class Source>
void readValue(Source& in, Rect& value) {
  for (int32& coordinate : value.coordinates) readLittleEndian(in, coordinate);
}

template <class FixedSize>
void decode(StreamWindow& in, double& seconds, FixedSize& value) {
  readLeading(in, seconds);
  readValue(in, value);
}

// Reads what follows the size field of a string: the time, which the size includes, and the
// characters.
void decodeText(StreamWindow& in, uint32 size, double& seconds, std::string& text) {
  readLittleEndian(in, seconds);
  if (size < kTimeByteCount) {
    throw std::length_error("meta data entry announces a string of " + std::to_string(size) +
                            " bytes where its time takes " + std::to_string(kTimeByteCount));
  }
  appendAnnounced(in, size - kTimeByteCount, text);
}

void decode(StreamWindow& in, double& seconds, std::string& value) {
  uint32 size = 0;
  readLeading(in, size);
  decodeText(in, size, seconds, value);
}

void decode(StreamWindow& in, double& /*seconds*/, std::list<std::string>& value) {
  uint32 recordSize = 0;
  readLeading(in, recordSize);
  uint32 count = 0;
  readLittleEndian(in, count);
  for (; count != 0; --count) {
    uint32 size = 0;
    readLeading(in, size);
    double ignoredSeconds = 0;
    std::string text;
    decodeText(in, size, ignoredSeconds, text);
    value.push_back(std::move(text));
  }
}

// Reads the info words and the image. Requires: `dataSize` is above CursorImage::kInfoByteCount.
void decodePixels(StreamWindow& in, uint32 dataSize, CursorImage& image) {
  int32 imageInfo0 = 0;
  int32 imageInfo1 = 0;
  readLittleEndian(in, imageInfo0);
  readLittleEndian(in, imageInfo1);
  const uint32 count = dataSize - CursorImage::kInfoByteCount;
  checkAnnounced(in, count);
  std::unique_ptr<unsigned char[]> data(new unsigned char[count]);
  const auto got = in.read(data.get(), count);
  std::fill(data.get() + got, data.get() + count, static_cast<unsigned char>(0));
  image.m_dataSize = dataSize;
  image.m_imageInfo0 = imageInfo0;
  image.m_imageInfo1 = imageInfo1;
  image.m_data = std::move(data);
}

void decode(StreamWindow& in, double& seconds, CursorImage& image) {
  image = CursorImage{};  // stays so if this function throws
  uint32 recordSize = 0;
  readLeading(in, recordSize);
  readLittleEndian(in, seconds);
  uint64 imageId = 0;
  readLittleEndian(in, imageId);
  uint32 dataSize = 0;
  readLittleEndian(in, dataSize);
  if (dataSize > CursorImage::kInfoByteCount) {
    decodePixels(in, dataSize, image);
  } else if (dataSize != 0) {
    reportAssertion("data->m_dataSize == 0 || data->m_dataSize > 8", "ZRKMMetaDataReader", 93);
    // One write, because standard output may be unbuffered.
    const std::string warning =
        "WARNING: Invalid data size in ZRKMETADATA::CursorImage stream data->m_dataSize = " +
        std::to_string(dataSize);
    std::cout << warning;
  }
  image.m_imageId = imageId;
}

// Decodes one record at the current position of a caller's stream, without read-ahead.
template <class T>
void decodeUnbuffered(std::istream& in, double& seconds, T& value) {
  StreamWindow window(in);
  decode(window, seconds, value);
}

// Returns true if `offset + size` does not fit into 64 bits.
bool sumOverflows(int64 offset, int64 size) {
  using Limits = std::numeric_limits<int64>;
  return size > 0 ? offset > Limits::max() - size : offset < Limits::min() - size;
}

template <class T>
void reset(T& value) {
  value = T{};
}
void reset(std::string& value) {
  value.clear();  // keeps its capacity
}

// The size in bytes of a record, 0 where it varies.
template <class T>
constexpr std::size_t kRecordSize = sizeof(double) + sizeof(T);
template <>
constexpr std::size_t kRecordSize<std::string> = 0;
template <>
constexpr std::size_t kRecordSize<CursorImage> = 0;

// Delivers the records that are read ahead as a whole, with one check for all. They are before the
// bound, because the window reads ahead no further. Returns false to stop.
template <class T>
bool deliverReadAhead(DataStreamObserver<T>& observer, StreamWindow& in) {
  static_assert(std::has_unique_object_representations_v<T> || std::is_floating_point_v<T>,
                "T must be as large as its fields in the file");
  constexpr std::size_t kSize = kRecordSize<T>;
  const char* next = in.next();
  for (const char* const last = next + in.ahead() / kSize * kSize; next != last;) {
    RecordBytes record(next);
    double seconds = 0;
    T value{};
    readLittleEndian(record, seconds);
    readValue(record, value);
    next += kSize;
    in.consumeTo(next);  // before the call, which may throw
    if (!observer.onData(seconds, value)) return false;
  }
  return true;
}

template <class T>
void deliverRecords(DataStreamObserver<T>& observer, StreamWindow& in, int64 end) {
  T value{};
  while (in.good() && in.position() < end) {
    if constexpr (kRecordSize<T> != 0) {
      if (in.ahead() >= kRecordSize<T>) {
        if (!deliverReadAhead(observer, in)) return;
        in.peek();
        continue;
      }
    }
    double seconds = 0;
    reset(value);
    decode(in, seconds, value);
    if (in.bad()) return;  // the device failed inside the value, so the record is not whole
    if (!observer.onData(seconds, value)) return;
    in.peek();
  }
}

}  // namespace

template <class T>
void MetaDataReader<T>::parseFile(DataStreamObserver<T>& observer, std::istream& stream,
                                  int64 offset, int64 size) {
  stream.clear();
  StreamWindow in(stream, offset, kReadAhead);
  const bool isBounded = !sumOverflows(offset, size);
  const int64 end = isBounded ? offset + size : offset;
  in.limitReadAhead(end);
  if (!isReadableVersion(readHeader(in))) {
    std::cout << "MetaDataReader<T>::parseFile - Version is larger than what we can handle\n";
  } else {
    deliverRecords(observer, in, end);
  }
}

template class MetaDataReader<int>;
template class MetaDataReader<double>;
template class MetaDataReader<int64>;
template class MetaDataReader<std::string>;
template class MetaDataReader<KeyStroke>;
template class MetaDataReader<Point>;
template class MetaDataReader<Rect>;
template class MetaDataReader<CursorImage>;

void readRecord(std::istream& in, double& seconds, int& value) {
  decodeUnbuffered(in, seconds, value);
}

void readRecord(std::istream& in, double& seconds, double& value) {
  decodeUnbuffered(in, seconds, value);
}

void readRecord(std::istream& in, double& seconds, int64& value) {
  decodeUnbuffered(in, seconds, value);
}

void readRecord(std::istream& in, double& seconds, KeyStroke& value) {
  decodeUnbuffered(in, seconds, value);
}

void readRecord(std::istream& in, double& seconds, Point& value) {
  decodeUnbuffered(in, seconds, value);
}

void readRecord(std::istream& in, double& seconds, Rect& value) {
  decodeUnbuffered(in, seconds, value);
}

void readRecord(std::istream& in, double& seconds, std::string& value) {
  decodeUnbuffered(in, seconds, value);
}

void readRecord(std::istream& in, double& seconds, CursorImage* data) {
  decodeUnbuffered(in, seconds, *data);
}

void readRecord(std::istream& in, double& seconds, std::list<std::string>& value) {
  decodeUnbuffered(in, seconds, value);
}

}  // namespace ZRKMetaData
