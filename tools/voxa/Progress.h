// Progress of long work, as a line on the terminal.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <chrono>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/series/ReadListener.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

/// The bytes of these streams in the file, for `Progress`. An entry that runs beyond the end of the
/// file counts up to there.
double bytesOf(ZRKMetaData::MetaDataParser& parser, const std::vector<boost::uuids::uuid>& ids);
double bytesOf(ZRKMetaData::MetaDataParser& parser, const std::vector<ChosenStream>& streams);

/// While an object exists, the bytes of streams that are read on this thread count as progress.
/// Work that takes longer than a second shows the share that is done, below 100 % until it ends, on
/// the status line (Messages.h). Objects nest; only the innermost counts.
class Progress final : private series::ReadListener {
 public:
  /// The work reads about `total` bytes for `file`, of which the line shows the name. Work that
  /// reads no stream may count other units, of which `total` is then the number.
  Progress(const std::string& file, double total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Counts bytes that are not those of a stream, or other units. Reads the clock.
  void add(ZRKMetaData::int64 count) noexcept { onBytesRead(count); }

 private:
  using Clock = std::chrono::steady_clock;

  void onBytesRead(ZRKMetaData::int64 byteCount) noexcept override;
  void show() const;

  const std::string m_name;
  const double m_total;
  double m_done = 0;
  Clock::time_point m_next;
  series::ReadListener* const m_before;
};

}  // namespace voxa
