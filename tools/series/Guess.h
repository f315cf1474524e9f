// Guesses the record type of a stream from its bytes. docs/guess.md explains how, and states how
// often it is right.
//
// The format does not say which record type a stream has, and the identifier does not imply one.
// Every type is tested against the bytes:
//
//   1. records end exactly at the end of the entry;
//   2. times are finite, of a magnitude that a clock has, and never fall;
//   3. every value is possible for the type;
//   4. the type explains the bytes better than chance does, by at least 16 bits;
//   5. no other type that passes the tests before explains them far better, at the end or earlier
//      in the stream.
//
// "Explains" is a code length: a simple model of each type states in how many bits it would store
// the records; the bits that this saves against the raw bytes are the type's evidence.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/series/RecordTypes.h"

namespace series {

/// What is read of a stream at most: its first bytes, the entry header included, and its last.
constexpr std::size_t kMaxGuessHeadBytes = 256U << 10U;
constexpr std::size_t kMaxGuessTailBytes = 16U << 10U;

/// The part of a stream's records that a guess looks at. The views must outlive the guess.
struct StreamSample {
  std::string_view head;              ///< the first bytes of the records, behind the entry header
  std::string_view tail;              ///< the last bytes; empty when `head` has all
  ZRKMetaData::uint64 byteCount = 0;  ///< of all records
  bool isCut = false;  ///< the file ends before the entry, so that a record may be incomplete
};

/// One type, measured against a stream.
struct GuessCandidate {
  RecordType type{};
  /// The share of the examined bits that the type explains: 1 all, 0 none. 0 for a type that fails
  /// test 1, 2 or 3.
  double score = 0;

  bool passes = false;  ///< every one of the five tests

  /// For people: what came of each test. Test 5 is made of types that pass the others, and test 4
  /// of those that pass the first three.
  std::vector<std::string> reasons;

  /// The reason that decides: of the first test that fails, or, for a type that passes, how it
  /// compares with the others.
  std::string decisive;
};

struct Guess {
  /// All types of the table, the likeliest first: those that pass more tests before the others,
  /// then by score.
  std::vector<GuessCandidate> candidates;

  /// How many candidates at the front are equally likely: 1 unless there is a tie. Their order is
  /// that of their score, which means nothing within a tie.
  std::size_t tieCount = 1;

  /// Exactly one type passes every test. `candidates.front()` is that type.
  bool isCertain = false;

  /// No type passes every test. Empty streams are not unknown: every type fits them.
  bool isUnknown = false;

  /// The stream has no records.
  bool isEmpty = false;

  /// The type where it is certain.
  std::optional<RecordType> certainType() const {
    return isCertain ? std::optional(candidates.front().type) : std::nullopt;
  }
};

/// Guesses from bytes alone. It is deterministic, keeps no state and throws only std::bad_alloc.
/// May be called from any thread.
Guess guessRecordType(const StreamSample& sample);

/// Which types a stream may hold although a guess finds none or another, for callers that must not
/// overlook typed text.
struct PossibleTypes {
  /// Those that pass tests 1, 3 and 5, the likeliest first. Times may be any, and little evidence
  /// is enough. Empty for a stream without records.
  std::vector<RecordType> types;

  /// One of them also passes test 4. Without it, the stream may hold anything.
  bool isExplained = false;
};

/// Decides from bytes alone, as `guessRecordType` does.
PossibleTypes possibleRecordTypes(const StreamSample& sample);

/// Guesses the type of stream `id` of an indexed recording; a stream that is not indexed is empty.
/// Reads no byte outside the entry but the 16 in front of it, where an atom's header says whether
/// the indexed size is 8 bytes short. Moves the parser's stream and clears its state. Call it from
/// the thread that uses the parser.
Guess guessRecordType(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id);

/// The possible types of such a stream. Reads and throws as the guess does.
PossibleTypes possibleRecordTypes(ZRKMetaData::MetaDataParser& parser,
                                  const boost::uuids::uuid& id);

}  // namespace series
