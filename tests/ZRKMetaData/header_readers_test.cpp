#include <gtest/gtest.h>

#include <sstream>

#include "ZRKMetaData/src/ZRKMParserUtil.h"
#include "tests/support/Captured.h"
#include "tools/recording/Container.h"

namespace ZRKMetaData {
namespace {

constexpr uint32 kFreeType = 0x66726565;

TEST(AtomHeader, IsReadIfItFitsIntoTheFile) {
  const std::string plain = recording::atom("free", "12345678");
  const std::string wide = recording::wideAtom("free", "12345678");
  struct Case {
    const std::string& bytes;
    int64 position;
    uint64 fileSize;
    bool fits;
    int64 end;  // the position afterwards: what does not fit is not read
  };
  for (const Case& c : {
           Case{plain, 0, 7, false, 0},
           Case{plain, 0, 8, true, 8},
           Case{plain, 0, 9, true, 8},
           Case{plain, 1, 8, false, 1},
           // The 64-bit size is checked separately, after the first eight bytes.
           Case{wide, 0, 15, false, 8},
           Case{wide, 0, 16, true, 16},
           Case{wide, 0, 17, true, 16},
           Case{wide, 0, 0, false, 0},
       }) {
    std::istringstream in(c.bytes);
    in.seekg(c.position);
    uint64 size = 0;
    uint32 type = 0;
    EXPECT_EQ(readAtomHeader(in, c.fileSize, &size, &type), c.fits) << c.fileSize;
    EXPECT_EQ(in.tellg(), c.end) << c.fileSize;
    if (c.fits) {
      EXPECT_EQ(size, c.bytes.size());
      EXPECT_EQ(type, kFreeType);
    }
  }
}

TEST(AtomHeader, HasAWideSizeForEverySizeBelowEight) {
  for (unsigned char small = 0; small <= 8; ++small) {
    const std::string bytes = recording::bigEndian(uint32{small}) + "free" +
                              recording::bigEndian(uint64{0x1122334455667788});
    std::istringstream in(bytes);
    uint64 size = 0;
    uint32 type = 0;
    ASSERT_TRUE(readAtomHeader(in, bytes.size(), &size, &type));
    EXPECT_EQ(size, small < 8 ? 0x1122334455667788ULL : 8ULL) << int{small};
  }
}

TEST(AtomHeader, FailsIfTheFileIsShorterThanItsSize) {
  std::istringstream in(recording::atom("free", "").substr(0, 6));
  uint64 size = 0;
  uint32 type = 0;
  EXPECT_FALSE(readAtomHeader(in, 100, &size, &type));
}

TEST(ChunkHeader, IsReadIfItFitsIntoTheFile) {
  const std::string bytes = recording::chunk("JUNK", "123456");
  struct Case {
    uint64 fileSize;
    bool fits;
    int64 end;
  };
  for (const Case& c :
       {Case{3, false, 0}, Case{4, false, 4}, Case{7, false, 4}, Case{8, true, 8}}) {
    std::istringstream in(bytes);
    char type[4] = {};
    uint32 size = 0;
    EXPECT_EQ(readChunkHeader(in, c.fileSize, type, &size), c.fits) << c.fileSize;
    EXPECT_EQ(in.tellg(), c.end) << c.fileSize;
    if (c.fits) {
      EXPECT_EQ(std::string(type, 4), "JUNK");
      EXPECT_EQ(size, 6U);
    }
  }
}

TEST(Headers, ReportNullDestinations) {
  const testing_support::AssertionLog log;
  std::istringstream in(std::string(32, '\0'));
  EXPECT_FALSE(readAtomHeader(in, 32, nullptr, nullptr));
  EXPECT_FALSE(readChunkHeader(in, 32, nullptr, nullptr));
  EXPECT_EQ(log.text(),
            "ZRKMParserUtil:40 atomSize\nZRKMParserUtil:41 atomType\n"
            "ZRKMParserUtil:65 chunkType\nZRKMParserUtil:66 chunkSize\n");
}

TEST(BigEndian, ReadsMissingBytesAsZero) {
  std::istringstream in("\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A");
  EXPECT_EQ(readBigEndian32(in), 0x01020304U);
  EXPECT_EQ(readBigEndian64(in), 0x05060708090A0000ULL);
}

}  // namespace
}  // namespace ZRKMetaData
