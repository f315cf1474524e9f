// Scans one stream of keystrokes or strings for text of the person who was recorded: counts it, and
// finds what in it looks like a secret. Used by one thread.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/series/Secrets.h"

namespace series {

/// A plain value.
struct StreamPrivacy {
  std::uint64_t recordCount = 0;
  std::uint64_t characterCount = 0;  ///< of text: control keys and function keys are not counted
  std::array<std::uint64_t, kSecretKindCount> secretCounts{};  ///< by SecretKind
  std::vector<Secret> secrets;  ///< the first kMaxListedSecrets, in the order of their ends

  std::uint64_t secretCount() const;
};

/// More are counted, but not listed: a hostile stream may hold millions.
constexpr std::size_t kMaxListedSecrets = 1000;

/// Takes the records of one stream, in file order.
class PrivacyScan {
 public:
  /// What is typed while one of `windows` is shown is a password entry, one per line. `windows`
  /// must outlive the scan.
  explicit PrivacyScan(const PasswordWindows& windows);
  PrivacyScan(const PrivacyScan&) = delete;
  PrivacyScan& operator=(const PrivacyScan&) = delete;

  void add(double seconds, const ZRKMetaData::KeyStroke& key);
  void add(double seconds, const std::string& text);

  /// Ends the stream and returns what it holds.
  StreamPrivacy finish();

 private:
  void addSecret(const Secret& secret);
  void addTyped(double seconds, char32_t character);
  void endEntry();

  const PasswordWindows& m_windows;
  StreamPrivacy m_privacy;
  SecretFinder m_finder;
  TypedText m_typed;
  Secret m_entry{SecretKind::PasswordEntry, 0, 0};  // typed so far; no characters for none
};

}  // namespace series
