// The result of a read, for tests and fuzz targets that compare two ways of reading.
#pragma once

#include <exception>
#include <istream>
#include <ostream>
#include <string>

namespace testing_support {

template <class Records>
struct ReadOutcome {
  Records records;
  std::string error;
  std::ios::iostate state{};
  std::streamoff position = 0;

  bool operator==(const ReadOutcome& other) const {
    return records == other.records && error == other.error && state == other.state &&
           position == other.position;
  }
  friend std::ostream& operator<<(std::ostream& out, const ReadOutcome& outcome) {
    return out << outcome.records.size() << " records, error \"" << outcome.error << "\", state "
               << outcome.state << ", at " << outcome.position;
  }
};

/// Calls `read(observer, in)` and returns the observer's `records`, the text of the exception, if
/// any, and the state and position of the stream.
template <class Observer, class Read>
auto outcomeOf(std::istream& in, Observer observer, Read read) {
  ReadOutcome<decltype(observer.records)> outcome;
  try {
    read(observer, in);
  } catch (const std::exception& error) {
    outcome.error = error.what();
  }
  outcome.records = observer.records;
  outcome.state = in.rdstate();
  in.clear();
  outcome.position = in.tellg();
  return outcome;
}

}  // namespace testing_support
