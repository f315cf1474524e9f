#include "tools/series/WholeRecords.h"

#include <algorithm>
#include <limits>
#include <type_traits>

#include "ZRKMetaData/src/ZRKMLittleEndian.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"
#include "tools/series/Guess.h"
#include "tools/series/StreamBytes.h"
#include "tools/series/ValueModels.h"

namespace series {

namespace {

using ZRKMetaData::CursorImage;
using ZRKMetaData::int64;
using ZRKMetaData::StreamWindow;
using ZRKMetaData::uint32;
using ZRKMetaData::uint64;

constexpr int64 kTimeSize = 8;
constexpr int64 kLeastRecordBytes = 12;
// Below two of the longest records of fixed size, the end of a cut stream tells no type.
constexpr int64 kLeastCutBytes = 48;

// What a walk over the records of one type finds.
struct Walk {
  int64 byteCount = 0;
  uint64 count = 0;
  bool isFaulty = false;
  bool isProven = false;  // by lengths that agree
};

// Walks records whose size varies.
class RecordWalk {
 public:
  RecordWalk(std::istream& file, int64 offset, int64 byteCount)
      : m_window(file, offset, kReadAhead), m_start(offset), m_end(offset + byteCount) {
    m_window.limitReadAhead(m_end);
  }

  template <class Record>
  Walk walk() {
    double before = -std::numeric_limits<double>::infinity();
    Walk result;
    while (m_window.position() < m_end) {
      double seconds = before;
      const Step step = readRecord(seconds, std::is_same<Record, std::string>());
      result.isFaulty =
          step == Step::Faulty || !detail::isPossibleTime(seconds) || seconds < before;
      if (result.isFaulty || step == Step::Incomplete) break;
      before = seconds;
      ++result.count;
      result.byteCount = m_window.position() - m_start;
    }
    result.isProven = m_isProven && !result.isFaulty;
    return result;
  }

 private:
  enum class Step { Whole, Incomplete, Faulty };

  static constexpr std::size_t kReadAhead = 64U << 10U;

  int64 left() const { return m_end - m_window.position(); }

  Step readRecord(double& seconds, std::true_type /*isText*/) {
    constexpr int64 kLeadBytes = 12;
    if (left() < kLeadBytes) return Step::Incomplete;
    uint32 size = 0;
    readLittleEndian(m_window, size);
    readLittleEndian(m_window, seconds);
    if (size < kTimeSize) return Step::Faulty;
    if (size - kTimeSize > left()) return Step::Incomplete;
    return hasNul(size - kTimeSize) ? Step::Faulty : Step::Whole;
  }

  Step readRecord(double& seconds, std::false_type /*isText*/) {
    constexpr int64 kLeadBytes = 24;
    constexpr uint64 kCountedLeadBytes = 20;  // without the size itself
    if (left() < kLeadBytes) return Step::Incomplete;
    uint32 size = 0;
    uint64 imageId = 0;
    uint32 dataSize = 0;
    readLittleEndian(m_window, size);
    readLittleEndian(m_window, seconds);
    readLittleEndian(m_window, imageId);
    readLittleEndian(m_window, dataSize);
    const bool isPossible = dataSize == 0 || dataSize > CursorImage::kInfoByteCount;
    if (!isPossible || size != kCountedLeadBytes + dataSize) return Step::Faulty;
    m_isProven = true;
    if (dataSize > left()) return Step::Incomplete;
    m_window.seek(m_window.position() + dataSize);
    return Step::Whole;
  }

  bool hasNul(int64 byteCount) {
    char piece[4096];
    bool hasNul = false;
    while (byteCount > 0) {
      const auto count =
          m_window.read(piece, static_cast<std::size_t>(std::min<int64>(byteCount, sizeof piece)));
      hasNul = hasNul || std::find(piece, piece + count, '\0') != piece + count;
      if (count == 0) break;
      byteCount -= static_cast<int64>(count);
    }
    return hasNul;
  }

  StreamWindow m_window;
  const int64 m_start;
  const int64 m_end;
  bool m_isProven = false;
};

Walk walkRecords(std::istream& file, int64 offset, int64 byteCount, RecordType type) {
  return visitRecordType(type, [&](const auto& row) -> Walk {
    if (row.byteCount != 0) {
      const int64 count = byteCount / static_cast<int64>(row.byteCount);
      return {count * static_cast<int64>(row.byteCount), static_cast<uint64>(count), false, false};
    }
    return RecordWalk(file, offset, byteCount).walk<typename std::decay_t<decltype(row)>::type>();
  });
}

}  // namespace

WholeRecords findWholeRecords(std::istream& file, int64 offset, int64 byteCount, bool isCut) {
  if (byteCount == 0 || (isCut && byteCount < kLeastRecordBytes)) return {0, 0, {}};
  const SampledBytes sampled(file, offset, static_cast<std::size_t>(byteCount));
  const Guess guess = guessRecordType(sampled.sample(isCut));
  WholeRecords most;
  int passing = 0;
  bool agree = true;
  bool isProven = false;
  for (const GuessCandidate& candidate : guess.candidates) {
    // The guess sees whole records alone, and the first image of a cut stream may not be one.
    const bool mayBeProven = candidate.type == recordTypeOf<CursorImage>();
    if (!candidate.passes && !mayBeProven) continue;
    const Walk walk = walkRecords(file, offset, byteCount, candidate.type);
    if (!candidate.passes && !walk.isProven) continue;
    isProven = isProven || walk.isProven;
    if (walk.isFaulty) most.doubt = "a length in it is damaged, or its times fall";
    agree = agree && (passing == 0 || walk.byteCount == most.byteCount);
    if (passing == 0 || walk.byteCount > most.byteCount) {
      most.byteCount = walk.byteCount;
      most.count = walk.count;
    }
    ++passing;
  }
  file.clear();
  if (passing == 0) return {byteCount, std::nullopt, "its records are of no type that is known"};
  if (!most.doubt.empty()) return {byteCount, std::nullopt, most.doubt};
  const bool isShort = isCut && !isProven && byteCount < kLeastCutBytes;
  if (isShort) return {byteCount, std::nullopt, "it is too short to tell its type"};
  if (!agree) return {most.byteCount, std::nullopt, "its records may be of several types"};
  if (!isCut && most.byteCount != byteCount) most.doubt = "its last record is incomplete";
  return most;
}

}  // namespace series
