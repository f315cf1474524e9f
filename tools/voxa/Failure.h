// The exit statuses, and the exception that ends a command with one.
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
  SecretsFound = 6,
  Different = 7,
  Lost = 8,
};

/// Of two statuses the one that a command over several files ends with.
Status worse(Status left, Status right);

/// Ends the command. The message is one line: the file, what is wrong, where, and what to do.
/// `what` returns it with unprintable characters escaped, so that a NUL in it does not end it
/// early.
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
