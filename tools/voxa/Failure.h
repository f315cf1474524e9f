// How a command ends when it does not end well.
#pragma once

#include <stdexcept>
#include <string>

#include "text/Printable.h"

namespace voxa {

/// Exit statuses of the program.
enum class Status {
  Done = 0,
  Failed = 1,
  WrongUse = 2,
  DamagedData = 3,
  NoSuchStream = 4,
  CannotOpen = 5,
};

/// Of two statuses the one that a command over several files ends with.
Status worse(Status left, Status right);

/// One line that says which file, what is wrong, where, and what to do. `what` is printable: a NUL
/// of a recording does not cut it short.
class Failure : public std::runtime_error {
 public:
  /// An empty message: everything has been said.
  Failure(Status status, const std::string& message)
      : std::runtime_error(text::printable(message)), m_status(status) {}

  Status status() const { return m_status; }

 private:
  Status m_status;
};

}  // namespace voxa
