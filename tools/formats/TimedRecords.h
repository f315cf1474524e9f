// The base of every drawn stream: its name, the number of its records and their times.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace formats {

/// Used by one thread.
class TimedRecords {
 public:
  /// `name` names the stream in titles and notes; `label` says what its records are.
  TimedRecords(std::string name, std::string label)
      : m_name(std::move(name)), m_label(std::move(label)) {}

  const std::string& name() const { return m_name; }

  /// "F0 · cursor positions".
  std::string title() const { return titled(m_label); }
  std::string titled(const std::string& what) const { return m_name + " \u00B7 " + what; }
  std::uint64_t recordCount() const { return m_recordCount; }

  bool isEmpty() const { return m_recordCount == m_leftOutCount; }

  /// Seconds. Requires: not `isEmpty`.
  double firstSeconds() const { return m_firstSeconds; }
  double lastSeconds() const { return m_lastSeconds; }

 protected:
  ~TimedRecords() = default;
  TimedRecords(TimedRecords&&) = default;
  TimedRecords& operator=(TimedRecords&&) = default;

  /// Counts a record and returns whether it can be drawn: its time is finite, within
  /// `kMaxSeconds` of 0 and not below that of the record before.
  bool accepts(double seconds);

  /// Says how many records were left out for their time, if any.
  void noteLeftOut(std::vector<std::string>& notes) const;

 private:
  static constexpr double kMaxSeconds = 1e12;  ///< 30,000 years: beyond, one wild time hides all

  std::string m_name;
  std::string m_label;
  std::uint64_t m_recordCount = 0;
  std::uint64_t m_leftOutCount = 0;
  double m_firstSeconds = 0;
  double m_lastSeconds = 0;
};

}  // namespace formats
