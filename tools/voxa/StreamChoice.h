// Chooses the streams of a recording that a command reads, and their record types.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/series/RecordTypes.h"
#include "tools/series/TimeRange.h"

namespace voxa {

struct ChosenStream {
  boost::uuids::uuid id;
  std::string name;  ///< its short key, or the whole identifier where keys collide
  series::RecordType type;
  bool isEmpty = false;  ///< it has no records that can be read, and `type` means nothing
};

/// The streams that a command may read, before it decides which of them it reads. What there is to
/// say of a stream is said when it is chosen.
class StreamChoice {
 public:
  /// The streams that `names` means (as in `streamsNamed`). `types` are "TYPE" for all of them or
  /// "STREAM=TYPE"; the type of a stream without one is guessed. Throws Failure: as `findStream`
  /// does; WrongUse for an unknown type, and when the only stream asked for has no certain type
  /// (with the candidates); NoSuchStream when the recording has no streams.
  StreamChoice(ZRKMetaData::MetaDataParser& parser, const std::string& file,
               const std::vector<std::string>& names, const std::vector<std::string>& types);

  /// Every stream whose type is named or certain, or that has no records. Says which types were
  /// guessed, and which streams have no records, a refused version or no certain type. Throws
  /// Failure (WrongUse) when there is none.
  std::vector<ChosenStream> all() const;

  /// The only stream with this type; where there is none, a stream without records; nothing where
  /// there is none either. Throws Failure (WrongUse) when several have the type, and names them.
  std::optional<ChosenStream> only(series::RecordType type) const;

  /// Says which streams have no certain type, for a command that found none with records to read.
  void sayDoubts() const;

 private:
  enum class Kind { Note, Warning, Doubt };
  struct Entry {
    ChosenStream stream;
    std::string message;  // empty for none
    Kind kind = Kind::Note;
  };

  Entry examine(ZRKMetaData::MetaDataParser& parser, const ChosenStream& stream,
                const std::optional<series::RecordType>& named) const;
  static void sayOf(const Entry& entry);

  std::string m_file;
  std::vector<Entry> m_entries;
};

/// `StreamChoice::all` of these streams.
std::vector<ChosenStream> chooseStreams(ZRKMetaData::MetaDataParser& parser,
                                        const std::string& file,
                                        const std::vector<std::string>& names,
                                        const std::vector<std::string>& types);

/// The stream `name` of a command that reads one, as the record type `type`, or with the guessed
/// type where that is empty. Throws Failure as `chooseStreams` does.
ChosenStream chooseStream(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                          const std::string& name, const std::string& type);

/// The stream `name`, or where that is empty `StreamChoice::only`. `types` are as there. Throws
/// Failure as both do; WrongUse where no stream has the type.
ChosenStream chooseOfType(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                          const std::string& name, const std::vector<std::string>& types,
                          series::RecordType type);

/// Says that the records of a stream cannot be read, and returns true, where its version is
/// refused.
bool sayRefusedVersion(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                       const boost::uuids::uuid& id, const std::string& name);

/// Options --from, --to and --rate, each empty where it was not given.
struct TimeOptions {
  std::string from;
  std::string to;
  std::string rate;
};

/// Throws Failure (WrongUse) for what is no time, rate or range.
series::TimeRange timeRangeOf(const TimeOptions& options);

}  // namespace voxa
