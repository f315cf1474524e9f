// Writes the seeds of each target: Seeds FOLDER
#include <filesystem>
#include <fstream>

#include "tools/recording/Dice.h"
#include "tools/recording/Movie.h"
#include "tools/recording/Records.h"
#include "tools/recording/Sample.h"

namespace {

using recording::Bytes;

class Folder {
 public:
  Folder(const std::filesystem::path& root, const char* target) : m_path(root / target) {
    std::filesystem::create_directories(m_path);
  }
  void write(const Bytes& bytes) {
    std::ofstream(m_path / ("seed-" + std::to_string(m_count++)), std::ios::binary) << bytes;
  }

 private:
  const std::filesystem::path m_path;
  int m_count = 0;
};

// Blocks whose entries lead back to a row of small atoms, which the scan then visits again. So many
// that a scan which does not count small steps reads more than the bound of the index target.
Bytes repeatedScan() {
  constexpr int kCount = 256;
  Bytes bytes;
  for (int n = 0; n < kCount; ++n) bytes += recording::atom("free", "");
  for (int n = 0; n < kCount; ++n) {
    const std::uint64_t back = std::uint64_t{0} - (bytes.size() + 8);
    bytes += recording::atom(
        "ZRKM", recording::bigEndian(std::uint32_t{1}) + "free" + recording::bigEndian(back));
  }
  return bytes;
}

void writeSeeds(const std::filesystem::path& root) {
  const auto entries = recording::sampleEntries(0.1, 1);
  Folder index(root, "index");
  index.write(Bytes(1, 0) + recording::chunk("RIFF", "odd") + recording::chunkBlock(entries));
  index.write(Bytes(1, 1) + recording::sampleMovie(1) + recording::atomBlock(entries));
  index.write(Bytes(1, 1) +
              recording::wideAtom(
                  "ZRKM", recording::wideAtom("DATA", recording::entryBytes(entries.front()))));
  index.write(Bytes(1, 2) + recording::entryBytes(entries.front()));
  index.write(Bytes(1, 1) + repeatedScan());

  Folder salvage(root, "salvage");
  const Bytes block = recording::atomBlock(entries);
  salvage.write(Bytes(1, 0) + recording::chunk("RIFF", "odd") + recording::chunkBlock(entries));
  salvage.write(Bytes(1, 1) + block.substr(0, block.size() - 100));
  salvage.write(Bytes(1, 1) + Bytes("\0\0\0\4abcd", 8) + block + recording::atom("free", block));
  salvage.write(Bytes(1, 1) + recording::atomBlock(
                                  {{recording::streamId(0xF9), recording::stringRecord(0, block)},
                                   entries.front()}));
  salvage.write(Bytes(1, 2) + recording::entryBytes(entries.front()));

  Folder records(root, "records");
  Folder guess(root, "guess");
  static constexpr const char* kTypes[] = {"ints",       "doubles", "int64s", "strings",
                                           "keystrokes", "points",  "rects",  "cursor-images"};
  char number = 0;  // by which the target selects the type
  for (const char* const type : kTypes) {
    records.write(Bytes(1, number++) + recording::littleEndian(10000) +
                  recording::sampleEntry(type, 0.2, 1).records);
    guess.write(Bytes(1, number) + recording::littleEndian(500) +
                recording::sampleEntry(type, 3, 1).records);
  }

  Folder movie(root, "movie");
  movie.write(recording::sampleMovie(3));
  movie.write(recording::movie({}) + recording::atom("mdat", "media"));

  Folder whole(root, "recording");
  const Bytes screens = recording::sampleMovie(1);
  for (const auto& entry : entries) {  // with the container and the edit rate in front
    whole.write(Bytes(2, 0) + screens + recording::atomBlock({entry}));
    whole.write(Bytes(1, 2) + Bytes(1, 1) + recording::entryBytes(entry));
  }
  whole.write(Bytes(2, 1) + recording::chunkBlock(entries));

  Folder onto(root, "onto");
  onto.write(Bytes(1, 0) + screens + recording::atom("mdat", "media"));
  onto.write(Bytes(1, 0) +
             recording::movie({{true, 25, 50, 64, 48, 0}, {true, 25, 50, 32, 24, 0}}));
  onto.write(Bytes(1, 0) + screens + recording::wideAtom("free", "") +
             recording::atomBlock(entries));
  onto.write(Bytes(1, 1) + recording::chunk("RIFF", "odd") + recording::chunk("LIST", "even"));

  Folder graft(root, "graft");
  for (const char choice : {'\0', '\2', '\4', '\6'}) {
    graft.write(Bytes(1, choice) + screens + recording::atomBlock(entries));
    graft.write(Bytes(1, static_cast<char>(choice + 1)) + recording::chunk("RIFF", "odd") +
                recording::chunkBlock(entries));
  }
  graft.write(Bytes(1, 0) + repeatedScan());
  graft.write(Bytes(1, 0) + screens + recording::atom("ZRKM", recording::bigEndian(0U) + "DATA"));

  Folder editList(root, "editlist");
  editList.write(Bytes(1, 0) +
                 "ffconcat version 1.0\nfile 'take1.mp4'\ninpoint 1.5\noutpoint 4\n"
                 "file a\\ b.mp4\nduration 250ms\nfile take1.mp4\ninpoint 00:00:10\n");
  const Bytes events =
      "TITLE: CUT\nFCM: NON-DROP FRAME\n"
      "001 TAKE1 V C 00:00:01:00 00:00:03:05 01:00:00:00 01:00:02:05\nM2 TAKE1 025.0 00:00:01:00\n"
      "002 AX AA/V C 00:00:10:00 00:00:11:00 01:00:02:05 01:00:03:05\n* FROM CLIP NAME: "
      "take1.mp4\n";
  editList.write(Bytes(1, 1) + events);
  editList.write(Bytes(1, 2) + "1 A V C 00:00:59;29 00:01:00;02 00:10:00;00 00:10:00;01\n");
  const Bytes range =
      R"("source_range":{"start_time":{"value":48,"rate":23.976},"duration":{"value":24,"rate":24}})";
  editList.write(Bytes(1, 0) +
                 R"({"OTIO_SCHEMA":"Timeline.1","tracks":{"OTIO_SCHEMA":"Stack.1","children":[)"
                 R"({"OTIO_SCHEMA":"Track.1","kind":"Video","enabled":true,"children":[)"
                 R"({"OTIO_SCHEMA":"Clip.2","name":"c","media_references":{"DEFAULT_MEDIA":)"
                 R"({"target_url":"file:///take%201.mp4","available_range":null}},"effects":[)"
                 R"({"OTIO_SCHEMA":"LinearTimeWarp.1","time_scalar":1.0}],)" +
                 range + R"(},{"OTIO_SCHEMA":"Gap.1",)" + range + "}]}]}}");

  Folder names(root, "names");
  for (const char* const name :
       {"C:\\rec\\a.voxa/2b7b6af0-7a1f-11e2-83d0-0017f200be7f", "\\\\srv\\share\\x", "a:b",
        "\\\\?\\C:\\a", "/a/b/", "C:/", "\xC3\xBC\xF0\x9F\x98\x80/."}) {
    names.write(name);
  }

  Folder commandLine(root, "commandline");
  for (const char* const text : {"30", "30000/1001", "12", "-5", "0.4s", "12.345678s", "a,\"b\""}) {
    commandLine.write(text);
  }

  Folder parameters(root, "parameters");
  parameters.write(Bytes("\0\x0A\0\0\0\1", 6) + Bytes("\0\x14\0\4\0\2", 6) +
                   Bytes("\x08\x0F\0\0\0", 5) + Bytes("\2\x0A\0\x0C\0", 5) + Bytes("\3\5\0\1", 4) +
                   Bytes("\6\x14\0\7", 4));

  // Any bytes are a program.
  constexpr int kProgramCount = 84;
  constexpr std::size_t kProgramSize = 50;
  recording::Dice dice(7);
  Folder window(root, "window");
  for (int program = 0; program < kProgramCount; ++program) {
    Bytes bytes(kProgramSize, '\0');
    for (char& byte : bytes) byte = static_cast<char>(dice.below(256));
    window.write(bytes);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  writeSeeds(std::filesystem::u8path(argv[1]));
  return 0;
}
