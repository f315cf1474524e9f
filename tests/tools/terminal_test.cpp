// Output that voxa shows on a terminal and nowhere else. Runs on POSIX, where a test can be the
// terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <regex>
#include <thread>

#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace {

using testing_support::TempFolder;
using Words = std::vector<std::string>;

std::vector<char*> pointersTo(Words& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

struct Shown {
  int status = -1;
  std::string text;
};

/// Runs voxa with standard output and standard error on a terminal.
Shown shownBy(const Words& arguments, const Words& environment) {
  Words words = {KESTOVA_VOXA};
  words.insert(words.end(), arguments.begin(), arguments.end());
  Words variables = environment;
  const auto argv = pointersTo(words);
  const auto envp = pointersTo(variables);
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    execve(argv.front(), argv.data(), envp.data());
    _exit(127);
  }
  Shown shown;
  char piece[4096];
  ssize_t count = 0;
  // Linux reports EIO once the program has closed its side.
  while ((count = read(terminal, piece, sizeof piece)) > 0) {
    shown.text.append(piece, static_cast<std::size_t>(count));
  }
  close(terminal);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) shown.status = WEXITSTATUS(status);
  return shown;
}

constexpr int kRecordCount = 400'000;  // 6.4 MB

std::string longRecording() {
  std::string records;
  for (int i = 0; i < kRecordCount; ++i) {
    records += recording::pointRecord(i / 60.0, 960 + static_cast<int>(900 * std::sin(i / 180.0)),
                                      540 + static_cast<int>(500 * std::sin(i / 110.0)));
  }
  return recording::atomBlock({{recording::streamId(0xF0), records}});
}

/// Reads a pipe and waits longer than a second on the way, so that its writer does.
class SlowReader {
 public:
  explicit SlowReader(const std::string& pipe) : m_pipe(pipe), m_thread([pipe] { read(pipe); }) {}
  ~SlowReader() {
    close(open(m_pipe.c_str(), O_WRONLY | O_NONBLOCK));  // where the writer did not come so far
    m_thread.join();
  }
  SlowReader(const SlowReader&) = delete;
  SlowReader& operator=(const SlowReader&) = delete;

 private:
  static void read(const std::string& pipe) {
    std::ifstream in(pipe, std::ios::binary);
    std::string piece(1 << 20, '\0');
    in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    while (in.read(piece.data(), static_cast<std::streamsize>(piece.size()))) {
    }
  }

  const std::string m_pipe;
  std::thread m_thread;
};

struct ProgressCase {
  const char* name;
  Words arguments;
  bool isShown;
};

class LongWork : public testing::TestWithParam<ProgressCase> {};

TEST_P(LongWork, ShowsRisingSharesUnlessQuiet) {
  const TempFolder folder;
  const std::string file = folder.file("a.voxa", longRecording());
  const std::string pipe = folder.name("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  Words arguments = GetParam().arguments;
  arguments.insert(arguments.begin() + 1, file);
  arguments.insert(arguments.end(), {"-o", pipe});
  Shown shown;
  {
    const SlowReader reader(pipe);
    shown = shownBy(arguments, {});
  }
  EXPECT_EQ(shown.status, 0) << shown.text;
  if (!GetParam().isShown) {
    EXPECT_EQ(shown.text, "");
    return;
  }
  const std::regex line("\ra\\.voxa: ([0-9]+) %");
  int before = 0;
  int count = 0;
  auto end = shown.text.cbegin();
  for (std::sregex_iterator at(shown.text.begin(), shown.text.end(), line), last; at != last;
       ++at, ++count) {
    EXPECT_EQ((*at)[0].first, end) << "nothing else is written: " << shown.text;
    end = (*at)[0].second;
    const int share = std::stoi((*at)[1]);
    EXPECT_GE(share, before);
    EXPECT_LT(share, 100);
    before = share;
  }
  EXPECT_GT(count, 0) << shown.text;
  EXPECT_TRUE(std::regex_match(end, shown.text.cend(), std::regex("\r +\r"))) << "it is removed";
}

INSTANTIATE_TEST_SUITE_P(
    Commands, LongWork,
    testing::Values(
        ProgressCase{"Records", {"records", "F0", "--as=points", "--format=csv"}, true},
        ProgressCase{"Quiet", {"records", "F0", "--as=points", "--format=csv", "-q"}, false},
        ProgressCase{"QuietGuess", {"records", "F0", "--format=csv", "--quiet"}, false},
        ProgressCase{"Export", {"export", "--as=points"}, true},
        ProgressCase{"Load", {"load", "F0", "--as=points", "--rate=60", "--format=csv"}, true},
        ProgressCase{"Frames", {"frames", "--as=points", "--rate=60"}, true}),
    [](const testing::TestParamInfo<ProgressCase>& c) { return std::string(c.param.name); });

TEST(ShortWork, ShowsNoShareOfAResultOnTheTerminal) {
  const TempFolder folder;
  const std::string file = folder.file("a.voxa", longRecording());
  const Shown shown = shownBy({"records", file, "F0", "--as=points", "--format=csv"}, {});
  EXPECT_EQ(std::count(shown.text.begin(), shown.text.end(), '\n'), kRecordCount + 1);
  EXPECT_EQ(shown.text.find('%'), std::string::npos);
}

struct ColorCase {
  const char* name;
  Words environment;
  bool isColored;
};

class Colors : public testing::TestWithParam<ColorCase> {};

TEST_P(Colors, FollowTheTerminalAndTheEnvironment) {
  const bool isColored = GetParam().isColored;
  const auto painted = [isColored](const std::string& color, const std::string& text) {
    return isColored ? "\x1b[" + color + "m" + text + "\x1b[0m" : text;
  };
  EXPECT_EQ(
      shownBy({"info", "none\x1b[7m"}, GetParam().environment).text,
      painted("1;31", "voxa:") + " none\\x1b[7m: cannot be opened: No such file or directory\r\n");

  const TempFolder folder;
  const std::string file = folder.file(
      "a.voxa",
      recording::atomBlock({{recording::streamId(0xF0), recording::pointRecord(0, 1, 2)}}));
  EXPECT_NE(shownBy({"info", file}, GetParam().environment)
                .text.find("\r\n" + painted("1", "Streams") + "\r\n"),
            std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Environments, Colors,
    testing::Values(ColorCase{"Terminal", {"TERM=xterm"}, true},
                    ColorCase{"NoColor", {"TERM=xterm", "NO_COLOR=1"}, false},
                    ColorCase{"EmptyNoColor", {"TERM=xterm", "NO_COLOR="}, true},
                    ColorCase{"DumbTerminal", {"TERM=dumb"}, false},
                    ColorCase{"UnknownTerminal", {}, false}),
    [](const testing::TestParamInfo<ColorCase>& c) { return std::string(c.param.name); });

}  // namespace
