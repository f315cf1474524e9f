// The reader of each record type. The first byte chooses the type, the next four the bound; the
// rest is the stream, its header included.
#include <limits>
#include <vector>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "fuzz/CountingBuffer.h"
#include "fuzz/Fuzz.h"
#include "tools/recording/PlainReading.h"

namespace {

using namespace ZRKMetaData;

constexpr std::size_t kOffset = 7;  // some bytes in front of the stream that nobody may touch

template <class Number>
std::string bytesOf(const Number& number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

constexpr std::size_t kLongerThanInputs = 1U << 16U;

// What is longer than any input ends in zeros, which need not be compared again and again.
std::string bytesOf(const char* bytes, std::size_t size) {
  const std::string_view all(bytes, size);
  const auto kept = all.substr(0, kLongerThanInputs);
  const auto rest = all.substr(kept.size());
  fuzz::require(rest.empty() || (rest.front() == '\0' &&
                                 std::memcmp(rest.data(), rest.data() + 1, rest.size() - 1) == 0),
                "what no file can have filled is zero");
  return std::string(kept);
}

// A record as its bytes in the file, without the sizes in front.
std::string bytesOf(const std::string& text) {
  return bytesOf(text.data(), text.size());
}
std::string bytesOf(const CursorImage& image) {
  std::string bytes = bytesOf(image.m_imageId) + bytesOf(image.m_dataSize);
  if (image.m_dataSize != 0) {
    bytes += bytesOf(image.m_imageInfo0) + bytesOf(image.m_imageInfo1);
    bytes += bytesOf(reinterpret_cast<const char*>(image.m_data.get()), image.imageByteCount());
  }
  return bytes;
}

struct Outcome {
  std::vector<std::string> records;
  std::string error;
  std::ios::iostate state{};
  std::streamoff position = 0;

  bool operator==(const Outcome& other) const {
    return records == other.records && error == other.error && state == other.state &&
           position == other.position;
  }
};

template <class T>
class Collector final : public DataStreamObserver<T> {
 public:
  bool onData(double seconds, const T& value) override {
    records.push_back(bytesOf(seconds) + bytesOf(value));
    return true;
  }
  std::vector<std::string> records;
};

template <class T, class Read>
Outcome outcomeOf(const std::string& bytes, Read read) {
  fuzz::CountingBuffer source(bytes);
  std::istream in(&source);
  Collector<T> observer;
  Outcome outcome;
  try {
    read(observer, in);
  } catch (const std::exception& error) {
    outcome.error = error.what();
  }
  fuzz::require(source.takeLowest() >= static_cast<std::streamoff>(kOffset),
                "no byte in front of the header is touched");
  outcome.records = observer.records;
  outcome.state = in.rdstate();
  in.clear();
  outcome.position = in.tellg();
  return outcome;
}

// True when `record` stands in `bytes`, except that its end may be zero where the file has ended.
bool standsIn(const std::string& bytes, std::string record) {
  if (bytes.find(record) != std::string::npos) return true;
  while (!record.empty() && record.back() == '\0') record.pop_back();
  return bytes.find(record) != std::string::npos;
}

template <class T>
void check(const std::string& stream, int64 size) {
  const std::string bytes = std::string(kOffset, '\xEE') + stream;
  const auto readAhead = [size](Collector<T>& observer, std::istream& in) {
    MetaDataReader<T>().parseFile(observer, in, kOffset, size);
  };
  const Outcome outcome = outcomeOf<T>(bytes, readAhead);
  fuzz::require(outcome == outcomeOf<T>(bytes, readAhead), "two reads of the same bytes agree");
  fuzz::require(outcome == outcomeOf<T>(bytes,
                                        [size](Collector<T>& observer, std::istream& in) {
                                          recording::readPlainly(observer, in, kOffset, size);
                                        }),
                "reading ahead is the same as reading record by record");
  for (const std::string& record : outcome.records) {
    const bool isSplit = std::is_same_v<T, std::string> || std::is_same_v<T, CursorImage>;
    fuzz::require(standsIn(bytes, isSplit ? record.substr(8) : record),
                  "what is delivered stands in the input or is zero");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Quiet quiet;
  setAssertionHandler([](const char*, const char*, int) {});
  fuzz::Input input(data, size);
  const auto type = input.take<std::uint8_t>() % 8;
  const int64 bound = input.take<std::int32_t>();
  // A header that is always accepted, so that the fuzzer need not find one.
  std::string stream(16, '\0');
  stream += std::string(4, '\xFF') + std::string(4, '\0') + input.rest();
  switch (type) {
    case 0:
      check<int>(stream, bound);
      break;
    case 1:
      check<double>(stream, bound);
      break;
    case 2:
      check<int64>(stream, bound);
      break;
    case 3:
      check<std::string>(stream, bound);
      break;
    case 4:
      check<KeyStroke>(stream, bound);
      break;
    case 5:
      check<Point>(stream, bound);
      break;
    case 6:
      check<Rect>(stream, bound);
      break;
    default:
      check<CursorImage>(stream, bound);
  }
  return 0;
}
