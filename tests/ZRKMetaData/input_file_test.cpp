#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <istream>
#include <string>

#include "ZRKMetaData/src/ZRKMInputFile.h"
#include "tests/support/TempFolder.h"
#include "tools/recording/Dice.h"

namespace ZRKMetaData {
namespace {

enum class Step { Read, Get, Peek, SeekFromStart, SeekFromHere, SeekFromEnd, Clear };

// The state and what was read, as text.
template <class Stream>
std::string outcome(Stream& in, Step step, int number) {
  std::string got;
  switch (step) {
    case Step::Read:
      got.assign(static_cast<std::size_t>(number), '?');
      in.read(got.data(), number);
      got += std::to_string(in.gcount());
      break;
    case Step::Get:
      got = std::to_string(in.get());
      break;
    case Step::Peek:
      got = std::to_string(in.peek());
      break;
    case Step::SeekFromStart:
      in.seekg(number);
      break;
    case Step::SeekFromHere:
      in.seekg(number - 150, std::ios::cur);
      break;
    case Step::SeekFromEnd:
      in.seekg(100 - number, std::ios::end);
      break;
    case Step::Clear:
      in.clear();
      break;
  }
  return got + " state " + std::to_string(in.rdstate()) + " at " + std::to_string(in.tellg());
}

TEST(InputFile, ReadsAndSeeksAsAFileStreamDoes) {
  std::string bytes(1000, '\0');
  for (std::size_t n = 0; n < bytes.size(); ++n) bytes[n] = static_cast<char>(n % 251);
  const testing_support::TempFolder folder;
  const std::string name = folder.file("bytes.dat", bytes);
  std::ifstream expected(std::filesystem::u8path(name), std::ios::binary);
  InputFile actual(name);
  recording::Dice random(5);
  for (int n = 0; n < 20'000; ++n) {
    const auto step = static_cast<Step>(random.below(7));
    const int number = random.below(step == Step::SeekFromStart ? 1100 : 200);
    ASSERT_EQ(outcome(actual, step, number), outcome(expected, step, number))
        << n << ": " << static_cast<int>(step) << ", " << number;
  }
}

TEST(InputFile, ReadsNothingOnceClosed) {
  const testing_support::TempFolder folder;
  InputFile in(folder.file("bytes.dat", "text"));
  EXPECT_EQ(in.get(), 't');
  in.close();
  EXPECT_FALSE(in.isOpen());
  EXPECT_EQ(in.get(), std::char_traits<char>::eof());
  in.clear();
  EXPECT_TRUE(in.seekg(0).fail());
}

TEST(InputFile, IsClosedWithoutAFile) {
  for (const char* name : {"/", "/no/such/file", ""}) {
    InputFile in(name);
    EXPECT_FALSE(in.isOpen()) << name;
    EXPECT_EQ(in.rdstate(), std::ios::failbit) << name;
  }
}

}  // namespace
}  // namespace ZRKMetaData
