// How a command ends when it does not end well.
#pragma once

#include <stdexcept>
#include <string>

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

/// One line that says the file, what and where.
class Failure : public std::runtime_error {
 public:
  Failure(Status status, const std::string& message)
      : std::runtime_error(message), m_status(status) {}

  Status status() const { return m_status; }

 private:
  Status m_status;
};

}  // namespace voxa
