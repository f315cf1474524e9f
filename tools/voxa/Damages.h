// The damage of several streams of one recording.
#pragma once

#include <string>

#include "tools/voxa/Failure.h"
#include "tools/voxa/Messages.h"

namespace voxa {

/// Says the damage of each stream but the last, which becomes the failure.
class Damages {
 public:
  /// Damage that ends the records of a stream. An empty text is no damage.
  void add(const std::string& damage) {
    if (!damage.empty()) addWhole(damage + "; the result holds the records before");
  }

  /// The same for a text that says what the result holds, or where there is none.
  void addWhole(const std::string& damage) {
    if (!m_last.empty()) sayError(m_last);
    m_last = damage;
  }

  /// Throws Failure (DamagedData) when there is any. Call it when the result is complete.
  void throwIfAny() const {
    if (!m_last.empty()) throw Failure(Status::DamagedData, m_last);
  }

 private:
  std::string m_last;
};

}  // namespace voxa
