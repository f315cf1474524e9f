#include "tools/recording/Append.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <istream>
#include <optional>
#include <stdexcept>

#include "tools/recording/Container.h"
#include "tools/recording/TrackTags.h"

namespace recording {

namespace {

constexpr std::uint64_t kTypeOffset = 4;  // in the header of an atom

// Tagging holds a header in memory several times. The headers of hours of video are smaller.
constexpr std::uint64_t kMaxMovieHeaderBytes = 8U << 20U;

// The changes to the copy of a media file, apart from the block.
struct Plan {
  Bytes append;                            // in front of the block
  std::optional<std::uint64_t> freedType;  // byte offset of the type of the old movie header
  std::string whyUntagged;
};

Bytes readPayload(std::istream& media, const Structure& structure) {
  Bytes payload(structure.end - structure.payload, '\0');
  media.clear();
  media.seekg(static_cast<std::streamoff>(structure.payload));
  media.read(payload.data(), static_cast<std::streamsize>(payload.size()));
  return payload;
}

Plan planForAtoms(std::istream& media) {
  std::optional<Structure> moov;
  eachStructure(media, Layout::Atoms, [&moov](const Structure& structure) {
    if (!moov && structure.type == "moov") moov = structure;
  });
  if (!moov) return {{}, {}, "there is no movie header"};
  if (moov->end - moov->payload > kMaxMovieHeaderBytes) {
    return {{}, {}, "the movie header has over 8 MiB"};
  }
  try {
    const Bytes payload = readPayload(media, *moov);
    if (isFragmented(payload)) return {{}, {}, "the movie is fragmented"};
    return {atom("moov", taggedMovieHeader(payload)), moov->start + kTypeOffset, {}};
  } catch (const std::runtime_error& error) {
    return {{}, {}, std::string("in the movie header ") + error.what()};
  }
}

// Throws when the scan for entries would not reach what follows: nothing can follow the last
// structure, or entries of a block do not fill it.
void requireFollowable(std::istream& media, Layout layout) {
  eachStructure(media, layout, [&media, layout](const Structure& structure) {
    if (structure.type != "ZRKM") return;
    eachStructureIn(media, layout, structure, [](const Structure&) {});
  });
}

Plan planForChunks(std::istream& media) {
  std::uint64_t end = 0;
  eachStructure(media, Layout::Chunks, [&end](const Structure& last) { end = last.end; });
  media.clear();
  media.seekg(0, std::ios::end);
  const auto size = static_cast<std::uint64_t>(static_cast<std::streamoff>(media.tellg()));
  const bool lacksPadByte = end % 2 == 1 && end == size;
  return {Bytes(lacksPadByte ? 1 : 0, '\0'), {}, {}};
}

// Writes a copy of the file, with "free" in place of the four bytes at `freedType`.
void copy(std::istream& media, std::optional<std::uint64_t> freedType, const Write& write) {
  constexpr std::string_view kFree = "free";
  constexpr std::size_t kPieceBytes = 1U << 20U;
  Bytes piece(kPieceBytes, '\0');
  media.clear();
  media.seekg(0);
  for (std::uint64_t start = 0; media; start += kPieceBytes) {
    media.read(piece.data(), static_cast<std::streamsize>(kPieceBytes));
    const auto count = static_cast<std::size_t>(media.gcount());
    for (std::size_t index = 0; freedType && index < kFree.size(); ++index) {
      const std::uint64_t offset = *freedType + index;
      if (offset >= start && offset - start < count) piece[offset - start] = kFree[index];
    }
    write(std::string_view(piece).substr(0, count));
  }
}

// Copies as `planFor(media)` says. Returns why the tracks are not tagged.
template <class PlanFor>
std::string copyWith(const std::string& media, PlanFor planFor, const Write& write) {
  std::ifstream file(std::filesystem::u8path(media), std::ios::binary);
  if (!file) throw std::runtime_error(media + ": cannot be opened");
  Plan plan;
  try {
    plan = planFor(file);
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(media + ": " + error.what());
  }
  copy(file, plan.freedType, write);
  if (file.bad()) throw std::runtime_error(media + ": cannot be read");
  write(plan.append);
  return plan.whyUntagged;
}

}  // namespace

void copyForBlock(const std::string& media, Layout layout, const Write& write) {
  const auto planFor = [layout](std::istream& file) {
    requireFollowable(file, layout);
    return layout == Layout::Atoms ? Plan() : planForChunks(file);
  };
  copyWith(media, planFor, write);
}

std::string writeOnto(const std::string& media, Layout layout, const Bytes& block,
                      const Write& write) {
  std::string whyUntagged =
      copyWith(media, layout == Layout::Atoms ? planForAtoms : planForChunks, write);
  write(block);
  return whyUntagged;
}

}  // namespace recording
