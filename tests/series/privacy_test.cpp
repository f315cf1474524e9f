// Recognition of secrets in typed text and strings.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tools/recording/Dice.h"
#include "tools/series/PrivacyScan.h"

namespace {

using series::PasswordWindows;
using series::PrivacyScan;
using series::SecretKind;
using series::StreamPrivacy;

// One key per character of an ASCII text, one per second.
StreamPrivacy typed(const std::string& keys, const PasswordWindows& windows = {}) {
  PrivacyScan scan(windows);
  double seconds = 0;
  for (const char key : keys) scan.add(seconds++, ZRKMetaData::KeyStroke(key, 0));
  return scan.finish();
}

// "card_number at 4, 16 characters; ..."
std::string found(const StreamPrivacy& privacy) {
  std::string text;
  for (const series::Secret& secret : privacy.secrets) {
    if (!text.empty()) text += "; ";
    text += std::string(nameOf(secret.kind)) + " " + std::to_string(std::lround(secret.seconds)) +
            "+" + std::to_string(secret.characters);
  }
  return text;
}

struct TextCase {
  const char* text;
  const char* found;
};

TEST(Privacy, RecognisesSecretsInWhatIsTyped) {
  const TextCase cases[] = {
      {"", ""},
      // E-mail addresses.
      {"to jane.doe+x@mail.example.org,", "email_address 3+27"},
      {"<mailto:j@x.io>;k@y.co.uk", "email_address 8+6; email_address 16+9"},
      {"b@xn--bcher-kva.xn--p1ai", "email_address 0+24"},
      {"@home a@b a@b.c a@.com me@ @x.org a@b..org a@1.2.3.44", ""},
      {"janw\be@exan\bmpple\b\b\ble.org", "email_address 0+16"},
      // Card numbers.
      {"n 4111111111111111 ok", "card_number 2+16"},
      {"4111 1111 1111 1111 12/27 123", "card_number 0+16"},
      {"3782-822463-10005", "card_number 0+15"},
      {"12 4111-1111-1111-1111.", "card_number 3+16"},
      {"card=5105105105105100;", "card_number 5+16"},
      {"4111111111111112 0000000000000000 41111111111111110000", ""},
      {"1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23", ""},
      // Random words.
      {"key zq8vR2mWx7Kp.", "random_word 4+13"},
      {"d41d8cd98f00b204e9800998ecf8427e", "random_word 0+32"},
      {"https://x.org/reset?token=8f3kd93jfkd93jf9dk3s", "random_word 0+46"},
      {"qzxvkjwpfhgmtrdl", "random_word 0+16"},
      {"getElementById Donaudampfschifffahrtsgesellschaft x86_64-linux-gnu 2024-01-31T12:34:56Z "
       "https://www.gnu.org/licenses/why-not-lgpl.html ---------------- aaaaaaaaaaaaaaaa "
       "correcthorsebatterystaple 0x7fff hunter2",
       ""},
  };
  for (const TextCase& row : cases) EXPECT_EQ(found(typed(row.text)), row.found) << row.text;
}

TEST(Privacy, SearchesStringsOneByOne) {
  const PasswordWindows none;
  PrivacyScan scan(none);
  scan.add(1, std::string("jane@"));
  scan.add(2, std::string("example.org"));
  scan.add(3, std::string("Inbox \xE2\x80\x93 m\xC3\xBCller@example.org \xE2\x80\x93 Mail"));
  const StreamPrivacy privacy = scan.finish();
  EXPECT_EQ(found(privacy), "email_address 3+18");
  EXPECT_EQ(privacy.recordCount, 3U);
  EXPECT_EQ(privacy.characterCount, 5U + 11U + 33U);
}

TEST(Privacy, ReportsLinesTypedInAPasswordWindow) {
  PasswordWindows windows;
  for (const auto& [seconds, title] :
       std::vector<std::pair<double, const char*>>{{0, "Editor"},
                                                   {4, "Enter your PASSWORD"},
                                                   {12, "Mail"},
                                                   {20, "Kennwort \xC3\xA4ndern"}}) {
    windows.add(seconds, title);
  }
  windows.finishStream();
  windows.add(11, "login");
  windows.add(13, "other");
  windows.finishStream();
  //          0   4   8    13     20
  EXPECT_EQ(found(typed("abc hunt\nxy\n pin shoppabcd", windows)),
            "password_entry 4+4; password_entry 9+2; password_entry 12+1; password_entry 20+6");
  for (const char* const title : {"Pinned tabs", "Shopping", "Desenhando", "Blogging in"}) {
    EXPECT_FALSE(series::isPasswordTitle(title)) << title;
  }
  for (const char* const title :
       {"PIN", "Log in - Bank", "Mot de passe", "\xE5\xAF\x86\xE7\xA0\x81"}) {
    EXPECT_TRUE(series::isPasswordTitle(title)) << title;
  }
}

TEST(Privacy, RecognisesMostRandomWords) {
  const std::string letters = "abcdefghijklmnopqrstuvwxyz";
  const std::string upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::string digits = "0123456789";
  const struct {
    std::string alphabet;
    std::size_t length;
    int least;  // of 1000
  } cases[] = {{letters, 20, 960},
               {letters + digits, 16, 970},
               {letters + upper + digits, 12, 920},
               {letters + upper + digits, 20, 980},
               {letters + upper + digits + "!@#$%", 16, 950},
               {"0123456789abcdef", 32, 990}};
  recording::Dice dice(1);
  for (const auto& row : cases) {
    std::uint64_t count = 0;
    for (int n = 0; n < 1000; ++n) {
      std::string word;
      while (word.size() < row.length) word += row.alphabet[dice.bits() % row.alphabet.size()];
      count += std::min<std::uint64_t>(typed("x " + word + " y").secretCount(), 1);
    }
    EXPECT_GE(count, static_cast<std::uint64_t>(row.least)) << row.alphabet << " " << row.length;
  }
}

TEST(Privacy, RaisesFewFalseAlarmsInLicences) {
  const std::filesystem::path folder = "/usr/share/common-licenses";
  if (!std::filesystem::exists(folder)) GTEST_SKIP() << "needs " << folder;
  std::uint64_t keys = 0;
  std::uint64_t alarms = 0;
  std::string listed;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const StreamPrivacy privacy = typed(text);
    keys += text.size();
    alarms += privacy.secretCount();
    listed += found(privacy);
  }
  EXPECT_GT(keys, 100'000U);
  EXPECT_LE(alarms * 10'000, 2 * keys) << listed;
}

TEST(Privacy, ListsABoundedNumberOfSecrets) {
  std::string keys;
  for (int n = 0; n < 3000; ++n) keys += "a@b.org ";
  const StreamPrivacy privacy = typed(keys + std::string(100'000, 'x'));
  EXPECT_EQ(privacy.secretCounts[static_cast<std::size_t>(SecretKind::EmailAddress)], 3000U);
  EXPECT_EQ(privacy.secrets.size(), series::kMaxListedSecrets);
}

}  // namespace
