// Fuzzes the reader of each record type. The first byte selects the type, the next four are the
// size of the entry; the rest are its records.
#include <type_traits>
#include <vector>

#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "fuzz/Fuzz.h"
#include "tests/support/CountingBuffer.h"
#include "tests/support/PlainReading.h"
#include "tests/support/ReadOutcome.h"

namespace {

using namespace ZRKMetaData;

constexpr std::size_t kOffset = 7;  // bytes before the stream, which must not be read

template <class Number>
std::string bytesOf(const Number& number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

constexpr std::size_t kMaxInputByteCount = 1U << 16U;

// A value longer than any input ends in zeros, which are checked here and need no comparison later.
std::string bytesOf(const char* bytes, std::size_t size) {
  const std::string_view all(bytes, size);
  const auto kept = all.substr(0, kMaxInputByteCount);
  const auto rest = all.substr(kept.size());
  fuzz::require(rest.empty() || (rest.front() == '\0' &&
                                 std::memcmp(rest.data(), rest.data() + 1, rest.size() - 1) == 0),
                "bytes past the end of the file are zero");
  return std::string(kept);
}

// The bytes of a record in the file, without its size fields.
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
auto outcomeOf(const std::string& bytes, Read read) {
  testing_support::CountingBuffer source(bytes);
  std::istream in(&source);
  auto outcome = testing_support::outcomeOf(in, Collector<T>(), read);
  fuzz::require(source.takeLowest() >= static_cast<std::streamoff>(kOffset),
                "no byte before the header is read");
  return outcome;
}

// True if `bytes` contain `record`, apart from zeros at its end.
bool contains(const std::string& bytes, std::string record) {
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
  const auto outcome = outcomeOf<T>(bytes, readAhead);
  fuzz::require(outcome == outcomeOf<T>(bytes, readAhead), "two reads of the same bytes agree");
  fuzz::require(outcome == outcomeOf<T>(bytes,
                                        [size](Collector<T>& observer, std::istream& in) {
                                          testing_support::readPlainly(observer, in, kOffset, size);
                                        }),
                "reading ahead equals reading record by record");
  for (const std::string& record : outcome.records) {
    const bool isSplit = std::is_same_v<T, std::string> || std::is_same_v<T, CursorImage>;
    fuzz::require(contains(bytes, isSplit ? record.substr(8) : record),
                  "delivered bytes are in the input or are zero");
  }
}

constexpr void (*kChecks[])(const std::string&, int64) = {
    check<int>,       check<double>, check<int64>, check<std::string>,
    check<KeyStroke>, check<Point>,  check<Rect>,  check<CursorImage>};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Quiet quiet;
  setAssertionHandler([](const char*, const char*, int) {});
  fuzz::Input input(data, size);
  const auto type = input.take<std::uint8_t>() % std::size(kChecks);
  const int64 bound = input.take<std::int32_t>();
  // A header that is always accepted, so that the fuzzer does not have to find one.
  std::string stream(16, '\0');
  stream += std::string(4, '\xFF') + std::string(4, '\0') + input.rest();
  kChecks[type](stream, bound);
  return 0;
}
