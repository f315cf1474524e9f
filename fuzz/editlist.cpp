// Fuzzes the readers of lists of cuts. The input is a byte that selects the rate, and the list.
#include <iterator>
#include <optional>
#include <stdexcept>
#include <vector>

#include "fuzz/Fuzz.h"
#include "tools/keep/EditList.h"
#include "tools/keep/EditListFile.h"

namespace {

using series::FrameRate;

std::optional<FrameRate> rateOf(std::uint8_t choice) {
  const std::optional<FrameRate> rates[] = {std::nullopt, FrameRate(25), FrameRate(30000, 1001),
                                            FrameRate(60000, 1001), FrameRate(4294967295U)};
  return rates[choice % std::size(rates)];
}

void check(const std::string& list, const std::optional<FrameRate>& rate) {
  std::vector<keep::Piece> pieces = keep::readEditList(list, "take1.voxa", rate);
  fuzz::require(!pieces.empty(), "a list without parts is refused");
  if (pieces.size() > keep::kMaxPieces) pieces.resize(keep::kMaxPieces);
  double end = 0;  // of the part in front
  for (const keep::Segment& segment : keep::segmentsOf(pieces, {})) {
    fuzz::require(segment.hasStart(), "each part begins somewhere");
    fuzz::require(segment.start >= end, "parts are in the order of the edit and do not overlap");
    fuzz::require(segment.end >= segment.start, "a part does not end before it begins");
    fuzz::require(segment.range.from() <= segment.range.to(), "a part keeps a range of times");
    end = segment.end;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const auto rate = rateOf(input.take<std::uint8_t>());
  const std::string list = input.rest();
  try {
    check(list, rate);
  } catch (const std::invalid_argument& error) {
    // An exception of the JSON library is none of these, and ends the run.
    fuzz::require(*error.what() != '\0', "a refusal says why");
  }
  return 0;
}
