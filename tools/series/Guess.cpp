#include "tools/series/Guess.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <istream>
#include <optional>
#include <type_traits>
#include <utility>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/StreamBytes.h"
#include "tools/series/ValueModels.h"

namespace series {

namespace {

using ZRKMetaData::CursorImage;
using ZRKMetaData::int32;
using ZRKMetaData::int64;
using ZRKMetaData::KeyStroke;
using ZRKMetaData::Point;
using ZRKMetaData::Rect;
using ZRKMetaData::uint32;
using ZRKMetaData::uint64;

constexpr std::size_t kTimeBytes = 8;
constexpr double kRawTimeBits = 8.0 * kTimeBytes;
constexpr double kMinEvidenceBits = 16;  // by chance once in 65,536 streams
// How many bits more another type must explain to rule a type out. Models are simpler than
// streams, so that a small advantage per record proves nothing, however many records add up to it.
constexpr double kDecisiveBits = 60;
constexpr double kDecisiveShare = 1.0 / 640;
constexpr double kFirstCourseBits = 4096;  // the lead is looked at there, and at each doubling
constexpr double kTieBits = 12;            // within which no order means anything
constexpr double kFreshBits = 1;           // that a value is stored by the type's own model
constexpr double kReturnBits = 1;          // that it is stored as one that occurred before

template <class Number>
Number numberAt(std::string_view bytes, std::size_t position) {
  return boost::endian::endian_load<Number, sizeof(Number), boost::endian::order::little>(
      reinterpret_cast<const unsigned char*>(bytes.data() + position));
}

template <class Record>
Record valueAt(std::string_view bytes) {
  if constexpr (std::is_arithmetic_v<Record>) {
    return numberAt<Record>(bytes, 0);
  } else if constexpr (std::is_same_v<Record, Rect>) {
    return {numberAt<int32>(bytes, 0), numberAt<int32>(bytes, 4), numberAt<int32>(bytes, 8),
            numberAt<int32>(bytes, 12)};
  } else {
    return {numberAt<int32>(bytes, 0), numberAt<int32>(bytes, 4)};
  }
}

std::string shown(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.7g", number);
  return text;
}

// How many of the examined bits a type saves.
struct Evidence {
  double examinedBits = 0;
  double savedBits = 0;
};

// How far a type got.
struct Measurement {
  int passed = 0;  // tests
  std::vector<std::string> reasons;
  std::string fault;             // of the first test that the type fails
  std::vector<Evidence> course;  // after 2^12, 2^13, ... examined bits
  Evidence all;

  void pass(std::string reason) {
    ++passed;
    reasons.push_back(std::move(reason));
  }

  void fail(const std::string& reason) {
    if (fault.empty()) fault = reason;
    reasons.push_back(reason);
  }
};

constexpr int kBasicTests = 4;  // those that look at one type alone
constexpr int kAllTests = kBasicTests + 1;

// Whether a time that cannot be one, or that falls, is a fault.
enum class TimeTest : std::uint8_t { Applied, Skipped };

// Tests 1 to 4 of one type. The first fault of each kind is kept; measuring goes on behind it, so
// that types that fail can still be ranked.
class Examiner {
 public:
  Examiner(const StreamSample& sample, TimeTest timeTest)
      : m_sample(sample), m_timeTest(timeTest) {}

  template <class Record>
  Measurement measure() {
    if constexpr (infoOf(recordTypeOf<Record>()).byteCount != 0) {
      examineFixed<Record>();
    } else {
      examineVariable<Record>();
    }
    return conclude();
  }

 private:
  template <class Record>
  void examineFixed() {
    constexpr std::size_t kBytes = infoOf(recordTypeOf<Record>()).byteCount;
    if (m_sample.byteCount % kBytes != 0) {
      failBoundary(std::to_string(m_sample.byteCount) +
                   " bytes are no whole number of records of " + std::to_string(kBytes) + " bytes");
    }
    detail::ValueModel<Record> model;
    const auto examineAll = [&](std::string_view bytes, uint64 firstRecord) {
      m_record = firstRecord;
      for (; bytes.size() >= kBytes; bytes.remove_prefix(kBytes)) {
        time(numberAt<double>(bytes, 0));
        const std::string_view valueBytes = bytes.substr(kTimeBytes, kBytes - kTimeBytes);
        const auto record = valueAt<Record>(valueBytes);
        value(model.impossible(record), valueBytes, [&] { return model.bits(record); });
        account(kBytes);
      }
    };
    examineAll(m_sample.head, 0);
    const uint64 tailStart = m_sample.byteCount - m_sample.tail.size();
    const auto untilRecord = static_cast<std::size_t>((kBytes - tailStart % kBytes) % kBytes);
    if (m_sample.tail.size() <= untilRecord) return;
    examineAll(m_sample.tail.substr(untilRecord), (tailStart + untilRecord) / kBytes);
  }

  template <class Record>
  void examineVariable() {
    constexpr std::size_t kLeadBytes = std::is_same_v<Record, std::string> ? 12 : 24;
    detail::ValueModel<Record> model;
    uint64 position = 0;
    while (position < m_sample.byteCount) {
      const uint64 left = m_sample.byteCount - position;
      const bool isInHead =
          position <= m_sample.head.size() && m_sample.head.size() - position >= kLeadBytes;
      if (left < kLeadBytes) {
        passesEnd();
        break;
      }
      if (!isInHead) break;
      const std::string_view bytes = m_sample.head.substr(static_cast<std::size_t>(position));
      const uint64 size = examineRecord(bytes, left, model);
      if (size == 0 || size > left) {
        passesEnd();
        break;
      }
      position += size;
    }
    if (position < m_sample.byteCount) findLastRecord<Record>();
  }

  // Returns the bytes that the record takes, 0 where it cannot be one.
  uint64 examineRecord(std::string_view bytes, uint64 left,
                       detail::ValueModel<std::string>& model) {
    constexpr std::size_t kLeadBytes = 12;
    const auto size = numberAt<uint32>(bytes, 0);
    if (size < kTimeBytes || size > left - 4)
      return m_sample.isCut && size >= kTimeBytes ? left + 1 : 0;
    time(numberAt<double>(bytes, 4));
    const std::string_view text = bytes.substr(kLeadBytes, size - kTimeBytes);
    value(model.impossible(text), {}, [&] { return model.bits(text, size); });
    account(kLeadBytes + text.size());
    return uint64{size} + 4;
  }

  uint64 examineRecord(std::string_view bytes, uint64 left,
                       detail::ValueModel<CursorImage>& model) {
    constexpr std::size_t kLeadBytes = 24;
    constexpr std::size_t kInfoBytes = CursorImage::kInfoByteCount;
    detail::CursorImageHead image{numberAt<uint32>(bytes, 0), numberAt<uint64>(bytes, 12),
                                  numberAt<uint32>(bytes, 20), 0, 0};
    const uint64 size = uint64{image.dataSize} + kLeadBytes;
    if (size > left) return m_sample.isCut ? size : 0;
    const bool hasInfo = image.dataSize > kInfoBytes && bytes.size() >= kLeadBytes + kInfoBytes;
    if (hasInfo) {
      image.info0 = numberAt<int32>(bytes, kLeadBytes);
      image.info1 = numberAt<int32>(bytes, kLeadBytes + 4);
    }
    time(numberAt<double>(bytes, 4));
    value(model.impossible(image), {}, [&] { return model.bits(image); });
    account(kLeadBytes + (hasInfo ? kInfoBytes : 0));  // no model of pixels
    return size;
  }

  // Where the walk left the sample: a record that ends with the entry, in the tail.
  template <class Record>
  void findLastRecord() {
    const std::string_view tail = m_sample.tail;
    constexpr std::size_t kLeadBytes = std::is_same_v<Record, std::string> ? 12 : 24;
    if (!m_boundaryFault.empty() || m_sample.isCut || tail.size() < kLeadBytes) return;
    for (std::size_t start = tail.size() - kLeadBytes + 1; start-- > 0;) {
      const uint64 size = std::is_same_v<Record, std::string>
                              ? uint64{numberAt<uint32>(tail, start)} + 4
                              : uint64{numberAt<uint32>(tail, start + 20)} + kLeadBytes;
      const double seconds = numberAt<double>(tail, start + 4);
      if (size == tail.size() - start && detail::isPossibleTime(seconds) && seconds >= m_before)
        return;
    }
    // A last record longer than the tail is not seen: no fault.
  }

  void time(double seconds) {
    if (m_timeTest == TimeTest::Skipped) return skipTime(seconds);
    if (!detail::isPossibleTime(seconds)) {
      fault(m_timeFault, [&] { return "the time cannot be one (" + shown(seconds) + ")"; });
      return;
    }
    if (!m_isFirst && seconds < m_before) {
      fault(m_timeFault,
            [&] { return "the time falls from " + shown(m_before) + " to " + shown(seconds); });
    }
    if (!hasFault()) m_costBits += detail::timeBits(seconds, m_before, m_isFirst);
    m_before = seconds;
    m_isFirst = false;
  }

  // Costs as much as its bytes, or less where it could follow the one before.
  void skipTime(double seconds) {
    const bool isTime = detail::isPossibleTime(seconds);
    if (!hasFault()) {
      m_costBits += isTime ? std::min(detail::timeBits(seconds, m_before, m_isFirst), kRawTimeBits)
                           : kRawTimeBits;
    }
    if (!isTime) return;
    m_before = seconds;
    m_isFirst = false;
  }

  // A value that occurred before is as cheap for every type of its size, so that it decides little.
  // `bytes` is empty where values are not compared.
  template <class Bits>
  void value(const char* impossible, std::string_view bytes, Bits bits) {
    if (impossible != nullptr) {
      fault(m_valueFault, [&] { return impossible; });
      return;
    }
    if (hasFault()) return;
    const double model = kFreshBits + bits();
    m_costBits += bytes.empty() ? model : std::min(model, kReturnBits + m_values.bits(bytes));
  }

  void account(std::size_t bytes) {
    ++m_record;
    if (hasFault()) return;
    m_examinedBits += 8.0 * static_cast<double>(bytes);
    if (m_examinedBits < m_nextCourseBits) return;
    m_course.push_back({m_examinedBits, m_examinedBits - m_costBits});
    m_nextCourseBits *= 2;
  }

  // Of a type with a fault only the faults are of interest.
  bool hasFault() const {
    return !m_boundaryFault.empty() || !m_timeFault.empty() || !m_valueFault.empty();
  }

  // Only the first fault is kept. A wrong type has one per record, and the text of a double is
  // slow.
  template <class Text>
  void fault(std::string& kept, Text text) const {
    if (kept.empty()) kept = "record " + std::to_string(m_record) + ": " + text();
  }

  void failBoundary(const std::string& what) {
    if (!m_sample.isCut) m_boundaryFault = what;
  }

  void passesEnd() {
    failBoundary("record " + std::to_string(m_record) + " does not end within the entry");
  }

  Measurement conclude() const {
    Measurement result;
    result.course = m_course;
    result.all = {m_examinedBits, m_examinedBits - m_costBits};
    const auto test = [&result](const std::string& faultText, const char* passText) {
      if (faultText.empty()) {
        result.pass(passText);
      } else {
        result.fail(faultText);
      }
      return faultText.empty();
    };
    test(m_boundaryFault, m_sample.isCut
                              ? "the file ends before the entry, records are counted up to there"
                              : "records end at the end of the entry");
    test(m_timeFault, "times are finite and never fall");
    test(m_valueFault, "every value is possible");
    if (result.passed != kBasicTests - 1) return result;
    const std::string share = std::to_string(std::llround(result.all.savedBits)) + " of " +
                              std::to_string(std::llround(m_examinedBits)) + " bits";
    if (m_sample.byteCount == 0) {
      result.pass("there are no records");
    } else if (result.all.savedBits >= kMinEvidenceBits) {
      result.pass("the values are regular: the type explains " + share);
    } else {
      result.fail("the values are like chance: the type explains " + share);
    }
    return result;
  }

  const StreamSample& m_sample;
  const TimeTest m_timeTest;
  std::string m_boundaryFault;
  std::string m_timeFault;
  std::string m_valueFault;
  uint64 m_record = 0;
  double m_before = 0;
  bool m_isFirst = true;
  detail::ReturnModel m_values;
  double m_costBits = 0;
  double m_examinedBits = 0;
  double m_nextCourseBits = kFirstCourseBits;
  std::vector<Evidence> m_course;
};

struct Ranked {
  RecordType type{};
  Measurement measurement;
};

std::vector<Ranked> measureAll(const StreamSample& sample, TimeTest timeTest) {
  std::vector<Ranked> types;
  types.reserve(kRecordTypeCount);
  forEachRecordType([&](const auto& row, RecordType type) {
    using Record = typename std::decay_t<decltype(row)>::type;
    types.push_back({type, Examiner(sample, timeTest).measure<Record>()});
  });
  return types;
}

double lead(const Evidence& best, const Evidence& other) {
  return best.savedBits - other.savedBits;
}

bool isFar(const Evidence& best, const Evidence& other) {
  return lead(best, other) >= kDecisiveBits + kDecisiveShare * other.examinedBits;
}

// Whether a type is so little behind the best that it passes test 5. What was far behind once is
// not near again because the stream goes on with values that all types store alike.
bool isNear(const Measurement& result, const Measurement& best) {
  if (lead(best.all, result.all) < kDecisiveBits) return true;
  for (std::size_t index = 0; index < std::min(best.course.size(), result.course.size()); ++index) {
    if (isFar(best.course[index], result.course[index])) return false;
  }
  return !isFar(best.all, result.all);
}

std::string bitsText(double bits) {
  return std::to_string(std::llround(bits)) + " bits";
}

// Of a type that passes every test.
std::string standing(double bitsBehind) {
  return bitsBehind < kTieBits ? "no other type explains the values better"
                               : "explains " + bitsText(bitsBehind) + " less";
}

// Test 5 for those that passed the others, then the order.
Guess rank(std::vector<Ranked> types, bool isEmpty) {
  Measurement best;
  for (const Ranked& entry : types) {
    const Measurement& result = entry.measurement;
    if (result.passed == kBasicTests && lead(result.all, best.all) > 0) best = result;
  }
  for (Ranked& entry : types) {
    Measurement& result = entry.measurement;
    if (result.passed != kBasicTests) continue;
    if (isNear(result, best)) {
      result.pass("no other type explains the values far better");
    } else {
      result.fail("another type explains " + bitsText(lead(best.all, result.all)) + " more");
    }
  }
  std::stable_sort(types.begin(), types.end(), [](const Ranked& left, const Ranked& right) {
    const Measurement& a = left.measurement;
    const Measurement& b = right.measurement;
    return a.passed != b.passed ? a.passed > b.passed : lead(a.all, b.all) > 0;
  });
  Guess guess;
  guess.isEmpty = isEmpty;
  std::size_t passing = 0;
  std::size_t tied = 0;
  for (const Ranked& entry : types) {
    const Measurement& result = entry.measurement;
    const bool passes = result.passed == kAllTests;
    if (passes) ++passing;
    if (passes && lead(best.all, result.all) < kTieBits) ++tied;
    const bool isExplained = result.passed >= kBasicTests - 1 && result.all.examinedBits > 0;
    const double share = isExplained ? result.all.savedBits / result.all.examinedBits : 0;
    guess.candidates.push_back({entry.type, std::clamp(share, 0.0, 1.0), passes, result.reasons,
                                passes ? standing(lead(best.all, result.all)) : result.fault});
  }
  guess.tieCount = std::max<std::size_t>(tied, 1);
  guess.isCertain = passing == 1;
  guess.isUnknown = passing == 0;
  return guess;
}

// Calls `function` with what is examined of a stream of a recording.
template <class Function>
auto withSample(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                Function function) {
  constexpr int64 kHeaderBytes = ZRKMetaData::MetaDataHeader::kByteCount;
  const EntryExtent extent = entryExtent(parser, parser.locationOf(id));
  const bool hasRecords = extent.offset >= 0 && extent.present > kHeaderBytes;
  const std::size_t byteCount =
      hasRecords ? static_cast<std::size_t>(extent.present - kHeaderBytes) : 0;
  std::istream& stream = parser.stream();
  const SampledBytes sampled(stream, extent.offset + kHeaderBytes, byteCount);
  stream.clear();
  return function(sampled.sample(hasRecords && extent.isCut()));
}

}  // namespace

Guess guessRecordType(const StreamSample& sample) {
  return rank(measureAll(sample, TimeTest::Applied), sample.byteCount == 0);
}

PossibleTypes possibleRecordTypes(const StreamSample& sample) {
  PossibleTypes possible;
  if (sample.byteCount == 0) return possible;
  std::vector<Ranked> fitting;
  for (Ranked& entry : measureAll(sample, TimeTest::Skipped)) {
    if (entry.measurement.passed >= kBasicTests - 1) fitting.push_back(std::move(entry));
  }
  std::stable_sort(fitting.begin(), fitting.end(), [](const Ranked& left, const Ranked& right) {
    return left.measurement.all.savedBits > right.measurement.all.savedBits;
  });
  for (const Ranked& entry : fitting) {
    if (isNear(entry.measurement, fitting.front().measurement)) {
      possible.types.push_back(entry.type);
    }
  }
  possible.isExplained = !fitting.empty() && fitting.front().measurement.passed == kBasicTests;
  return possible;
}

Guess guessRecordType(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id) {
  return withSample(parser, id, [](const StreamSample& sample) { return guessRecordType(sample); });
}

PossibleTypes possibleRecordTypes(ZRKMetaData::MetaDataParser& parser,
                                  const boost::uuids::uuid& id) {
  return withSample(parser, id,
                    [](const StreamSample& sample) { return possibleRecordTypes(sample); });
}

}  // namespace series
