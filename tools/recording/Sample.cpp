#include "tools/recording/Sample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include "tools/recording/Cursors.h"
#include "tools/recording/Dice.h"
#include "tools/recording/Records.h"

namespace recording {

namespace {

constexpr int kScreenWidth = 1920;
constexpr int kScreenHeight = 1080;

// Records at irregular times up to `seconds`, `shortest` to `longest` seconds apart.
template <class Record>
Bytes atIntervals(double seconds, double shortest, double longest, Dice& dice, Record record) {
  Bytes bytes;
  double time = 0;
  while (time < seconds) {
    bytes += record(time);
    time += dice.between(shortest, longest);
  }
  return bytes;
}

template <class Record>
Bytes atEverySample(double seconds, Record record) {
  Bytes bytes;
  const auto count = std::llround(seconds * kSamplesPerSecond);
  for (long long sample = 0; sample < count; ++sample) {
    bytes += record(static_cast<double>(sample) / kSamplesPerSecond);
  }
  return bytes;
}

// The cursor moves from target to target, slows down near each one, and rests there.
Bytes cursorPositions(double seconds, Dice& dice) {
  double x = kScreenWidth / 2.0;
  double y = kScreenHeight / 2.0;
  double aimX = x;
  double aimY = y;
  int rest = 0;
  return atEverySample(seconds, [&](double time) {
    if (std::abs(aimX - x) + std::abs(aimY - y) < 1 && --rest <= 0) {
      aimX = dice.between(0, kScreenWidth);
      aimY = dice.between(0, kScreenHeight);
      rest = dice.below(kSamplesPerSecond);
    }
    x += (aimX - x) / 8;
    y += (aimY - y) / 8;
    return pointRecord(time, static_cast<std::int32_t>(x), static_cast<std::int32_t>(y));
  });
}

Bytes cursorOpacity(double seconds) {
  constexpr double kFadeSeconds = 0.5;
  return atEverySample(seconds, [&](double time) {
    const double toEdge = std::min(time, seconds - time);
    return doubleRecord(time, std::clamp(toEdge / kFadeSeconds, 0.0, 1.0));
  });
}

Bytes pressedButtons(double seconds, Dice& dice) {
  std::int32_t buttons = 1;
  return atIntervals(seconds, 0.1, 1.5, dice, [&](double time) {
    buttons = buttons == 0 ? 1 + dice.below(2) : 0;
    return intRecord(time, buttons);
  });
}

Bytes capturedFrames(double seconds) {
  constexpr std::int64_t kTicksPerSecond = 10'000'000;
  return atEverySample(seconds, [](double time) {
    return int64Record(time, std::llround(time * static_cast<double>(kTicksPerSecond)));
  });
}

Bytes typedKeys(double seconds, Dice& dice) {
  static constexpr std::string_view kText = "The quick brown fox jumps over the lazy dog. ";
  constexpr std::int32_t kShift = 2;
  std::size_t next = 0;
  return atIntervals(seconds, 0.05, 0.4, dice, [&](double time) {
    const char key = kText[next++ % kText.size()];
    return keystrokeRecord(time, key, key >= 'A' && key <= 'Z' ? kShift : 0);
  });
}

Bytes windowTitles(double seconds, Dice& dice) {
  static constexpr std::array<const char*, 5> kTitles = {"Editor", "Terminal \xE2\x80\x94 build",
                                                         "Browser",
                                                         "Stra\xC3\x9F"
                                                         "enkarte",
                                                         "Notes, \"drafts\""};
  return atIntervals(seconds, 1, 6, dice, [&](double time) {
    return stringRecord(time, kTitles[static_cast<std::size_t>(dice.below(kTitles.size()))]);
  });
}

Bytes windowRectangles(double seconds, Dice& dice) {
  return atIntervals(seconds, 1, 6, dice, [&](double time) {
    const int width = 320 + dice.below(kScreenWidth - 320);
    const int height = 200 + dice.below(kScreenHeight - 200);
    // One statement each: compilers differ in the order in which they evaluate arguments.
    const int left = dice.below(kScreenWidth - width + 1);
    const int top = dice.below(kScreenHeight - height + 1);
    return rectRecord(time, left, top, width, height);
  });
}

// Each image is stored when it first appears; later records refer to it.
Bytes cursorImages(double seconds, Dice& dice) {
  const std::vector<Cursor>& cursors = sampleCursors();
  std::vector<bool> stored(cursors.size());
  return atIntervals(seconds, 0.3, 3, dice, [&](double time) {
    const auto image = static_cast<std::size_t>(dice.below(static_cast<int>(cursors.size())));
    if (stored[image]) return cursorReferenceRecord(time, image);
    stored[image] = true;
    const Cursor& cursor = cursors[image];
    return cursorImageRecord(time, image, cursor.hotX, cursor.hotY, cursor.png);
  });
}

// The identifiers of the streams. The format does not tie types to identifiers.
struct Kind {
  const char* type;
  unsigned char key;
  Bytes (*records)(double seconds, Dice& dice);
};

constexpr std::array<Kind, 8> kKinds = {{
    {"ints", 0xF6, pressedButtons},
    {"doubles", 0xF2, [](double seconds, Dice&) { return cursorOpacity(seconds); }},
    {"int64s", 0xF8, [](double seconds, Dice&) { return capturedFrames(seconds); }},
    {"strings", 0xF9, windowTitles},
    {"keystrokes", 0xF3, typedKeys},
    {"points", 0xF0, cursorPositions},
    {"rects", 0xF5, windowRectangles},
    {"cursor-images", 0xF1, cursorImages},
}};

}  // namespace

const std::vector<std::string>& sampleTypes() {
  static const std::vector<std::string> types = [] {
    std::vector<std::string> names;
    names.reserve(kKinds.size());
    for (const Kind& kind : kKinds) names.emplace_back(kind.type);
    return names;
  }();
  return types;
}

Entry sampleEntry(std::string_view type, double seconds, std::uint64_t seed) {
  const auto* const kind = std::find_if(kKinds.begin(), kKinds.end(),
                                        [type](const Kind& row) { return row.type == type; });
  if (kind == kKinds.end()) throw std::invalid_argument("no sample of type " + std::string(type));
  Dice dice(seed ^ kind->key);  // so that a stream is the same alone and among others
  return {streamId(kind->key), kind->records(seconds, dice)};
}

std::vector<Entry> sampleEntries(double seconds, std::uint64_t seed) {
  std::vector<Entry> entries;
  entries.reserve(kKinds.size());
  for (const Kind& kind : kKinds) entries.push_back(sampleEntry(kind.type, seconds, seed));
  return entries;
}

}  // namespace recording
