// Fuzzes the guess of the record type. The first byte selects the container, the next four are an
// entry size; the rest are the records.
#include "tools/series/Guess.h"

#include <algorithm>
#include <istream>
#include <memory>

#include "fuzz/Fuzz.h"
#include "tests/support/CountingBuffer.h"
#include "tools/recording/Container.h"

namespace {

using series::Guess;

// A file that counts the bytes read from it.
class Source {
 public:
  explicit Source(const std::string& bytes) : m_buffer(bytes), m_stream(&m_buffer) {}

  testing_support::CountingBuffer& buffer() { return m_buffer; }
  std::istream& stream() { return m_stream; }

 private:
  testing_support::CountingBuffer m_buffer;
  std::istream m_stream;
};

bool areEqual(const Guess& left, const Guess& right) {
  bool equal = left.isCertain == right.isCertain && left.isUnknown == right.isUnknown &&
               left.tieCount == right.tieCount;
  for (std::size_t rank = 0; equal && rank < left.candidates.size(); ++rank) {
    const auto& a = left.candidates[rank];
    const auto& b = right.candidates[rank];
    equal =
        a.type == b.type && a.score == b.score && a.passes == b.passes && a.reasons == b.reasons;
  }
  return equal;
}

void check(const Guess& guess) {
  std::size_t passing = 0;
  bool allPassSoFar = true;
  for (const auto& candidate : guess.candidates) {
    passing += candidate.passes ? 1 : 0;
    fuzz::require(!candidate.passes || allPassSoFar, "types that pass come first");
    allPassSoFar = candidate.passes;
    fuzz::require(candidate.score >= 0 && candidate.score <= 1, "scores are from 0 to 1");
    fuzz::require(!candidate.reasons.empty(), "every candidate has reasons");
  }
  fuzz::require(guess.candidates.size() == series::kRecordTypeCount, "every type is ranked once");
  fuzz::require(guess.isCertain == (passing == 1), "certain means that exactly one type passes");
  fuzz::require(guess.isUnknown == (passing == 0), "unknown means that no type passes");
  fuzz::require(guess.tieCount >= 1 && guess.tieCount <= std::max<std::size_t>(passing, 1),
                "only types that pass tie");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Quiet quiet;
  fuzz::Input input(data, size);
  const auto wrapping = input.take<std::uint8_t>() % 4;
  const auto announced = input.take<std::uint32_t>();
  recording::Entry entry{recording::streamId(0xF0), input.rest()};
  std::string file = recording::entryBytes(entry);
  auto kind = ZRKMetaData::Atoms;
  if (wrapping == 0) {
    file = recording::atomBlock({entry});
  } else if (wrapping == 1) {
    file = recording::atom("ZRKM", recording::wideAtom("DATA", file));
  } else if (wrapping == 2) {
    kind = ZRKMetaData::Riff;
    file = recording::chunkBlock({entry});
  } else {  // an arbitrary entry size
    file = recording::atom("ZRKM", recording::bigEndian(announced) + "DATA" + file);
  }
  const auto guessOf = [&](const std::string& bytes) {
    Source source(bytes);
    const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
        ZRKMetaData::MetaDataParser::createForStream(source.stream(), kind));
    const std::size_t before = source.buffer().byteCount();
    Guess guess = series::guessRecordType(*parser, entry.id);
    fuzz::require(source.buffer().byteCount() - before <=
                      series::kMaxGuessHeadBytes + series::kMaxGuessTailBytes + 16,
                  "a guess reads at most its maximum");
    return guess;
  };
  const Guess guess = guessOf(file);
  check(guess);
  fuzz::require(areEqual(guess, guessOf(file)), "a guess is deterministic");
  if (wrapping != 3) {
    fuzz::require(areEqual(guess, guessOf(file + std::string(64, '\x7F'))),
                  "bytes after the entry have no effect");
  }
  return 0;
}
