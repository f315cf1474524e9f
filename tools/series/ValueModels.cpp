#include "tools/series/ValueModels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

#include "text/Utf8.h"

namespace series::detail {

namespace {

// Beyond it is no screen: 16 bits hold the coordinates of every desktop.
constexpr int32 kMaxCoordinate = 65535;

constexpr int32 kMaxCodePoint = 0x10FFFF;
constexpr int32 kKeySymbol =
    0x01000000;  // window systems set this bit for keys without a character

bool isPossibleCoordinate(int32 coordinate) {
  return coordinate >= -kMaxCoordinate && coordinate <= kMaxCoordinate;
}

bool isBetween(int64 value, int64 first, int64 last) {
  return value >= first && value <= last;
}

// What people type, roughly by how often.
double characterBits(int32 character) {
  static constexpr std::string_view kFrequent = " etaoinsrh";
  if (isBetween(character, 0, 127)) {
    const char ascii = static_cast<char>(character);
    if (kFrequent.find(ascii) != std::string_view::npos) return 4.3;
    if (isBetween(ascii, 'a', 'z')) return 5.5;
    if (ascii == 8 || ascii == 9 || ascii == 10 || ascii == 13 || ascii == 127) return 6;
    return ascii > 27 ? 7.5 : ascii > 0 ? 11 : 16;
  }
  if (isBetween(character, 0x80, 0x6FF)) return 12;
  if (isBetween(character, 0x3000, 0x30FF)) return 9;
  if (isBetween(character, 0x3400, 0x9FFF) || isBetween(character, 0xAC00, 0xD7A3)) return 13;
  if (isBetween(character, 0xD800, 0xFFFF)) return 15;  // surrogates, function keys, key symbols
  if (isBetween(character, 0x1F000, 0x1FAFF)) return 15;
  if (isBetween(character, kKeySymbol, kKeySymbol + 0xFF)) return 12;
  if (character > kKeySymbol) return 26;
  if (character > 0xFFFF) return character <= 0x3FFFF ? 26 : 34;  // most planes are empty
  return 18;
}

// Flags are few bits of 32.
double flagBits(int32 flags) {
  double setBits = 0;
  for (auto rest = static_cast<uint32>(flags); rest != 0; rest &= rest - 1) ++setBits;
  return flags == 0 ? 1 : std::min(5 + 4.5 * setBits, 36.0);
}

// Movements along one axis are common.
double moveBits(double x, double y) {
  if (y == 0) return integerBits(x);
  return 0.5 + integerBits(y) + (x == 0 ? 0 : integerBits(x));
}

// A place on a screen, by common sizes of screens.
double placeBits(double x, double y) {
  const auto isOn = [&](double width, double height) {
    return x >= 0 && y >= 0 && x < width && y < height;
  };
  if (isOn(1920, 1080)) return 21 + 1;
  if (isOn(3840, 2160)) return 23 + 2;
  return isOn(8192, 4096) ? 25 + 4 : 34 + 4;
}

double anyIntegerBits(double magnitude) {
  const double log = std::log2(magnitude + 1);
  return log + 2 * std::log2(log + 1) + (magnitude == 0 ? 1 : 2);
}

// Wraps around.
int64 difference(int64 left, int64 right) {
  return static_cast<int64>(static_cast<uint64>(left) - static_cast<uint64>(right));
}

int64 patternOf(double value) {
  int64 pattern = 0;
  std::memcpy(&pattern, &value, sizeof pattern);
  return pattern;
}

// A double that people or programs write as a short decimal, in bits.
double decimalBits(double value) {
  static constexpr double kScales[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
  for (const double scale : kScales) {
    const double scaled = std::round(value * scale);
    if (std::abs(scaled) >= 0x1p52) break;
    if (scaled / scale == value) return 3 + integerBits(scaled);
  }
  return 200;
}

}  // namespace

double integerBits(double number) {
  static const auto kSmall = [] {
    std::array<double, 4096> bits{};
    for (std::size_t index = 0; index < bits.size(); ++index) {
      bits[index] = anyIntegerBits(static_cast<double>(index));
    }
    return bits;
  }();
  const double magnitude = std::abs(number);
  return magnitude < static_cast<double>(kSmall.size())
             ? kSmall[static_cast<std::size_t>(magnitude)]
             : anyIntegerBits(magnitude);
}

bool isPossibleTime(double seconds) {
  const double magnitude = std::abs(seconds);
  return seconds == 0 || (magnitude >= 1e-9 && magnitude < 1e10);
}

double timeBits(double seconds, double before, bool isFirst) {
  if (isFirst) return seconds == 0 ? 3 : 59;
  if (seconds == before) return 3;
  const double unit = std::nextafter(std::abs(seconds), INFINITY) - std::abs(seconds);
  return std::min(8 + std::log2(std::abs(seconds - before) / unit + 1), 66.0);
}

double NumberModel::bits(int64 value) {
  const auto number = static_cast<double>(value);
  const int64 step = difference(value, m_before);
  const bool isInBounds = std::abs(number) <= m_bound;
  const double bits = std::min({2 + integerBits(number), 2 + integerBits(static_cast<double>(step)),
                                2 + integerBits(static_cast<double>(difference(step, m_step))),
                                isInBounds ? 3 + std::log2(2 * m_bound + 1) : kNever,
                                3 + m_steps.bits(step), 3 + m_rawBits});
  m_before = value;
  m_step = step;
  m_bound = std::max(m_bound, std::abs(number));
  return bits;
}

double ValueModel<int64>::bits(int64 value) {
  // Clocks and counters stay below; what is above has the pattern of a double near 1.
  constexpr int64 kRare = 1LL << 61U;
  const bool isRare = value > kRare || value < -kRare;
  return m_numbers.bits(value) + (isRare ? 4 : 0);
}

const char* ValueModel<double>::impossible(double value) {
  if (std::isnan(value)) {
    constexpr uint64 kQuietNan = 0x7FF8000000000000U;
    constexpr uint64 kAllButSign = 0x7FFFFFFFFFFFFFFFU;
    return (static_cast<uint64>(patternOf(value)) & kAllButSign) == kQuietNan
               ? nullptr
               : "it is not a number that arithmetic gives";
  }
  const double magnitude = std::abs(value);
  const bool isPossible =
      value == 0 || std::isinf(value) || (magnitude > 1e-100 && magnitude < 1e100);
  return isPossible ? nullptr : "its magnitude is beyond 1e-100 to 1e100";
}

double ValueModel<double>::bits(double value) {
  const int64 pattern = patternOf(value);
  double generalBits = 66;
  double dyadicBits = 4;
  double shortBits = 200;
  if (value != 0 && std::isfinite(value)) {
    const double exponentBits = integerBits(std::ilogb(value));
    int mantissaBits = 52;
    for (uint64 rest = static_cast<uint64>(pattern); (rest & 1U) == 0 && mantissaBits > 0;
         rest >>= 1U) {
      --mantissaBits;
    }
    generalBits = 52 + exponentBits;
    dyadicBits = exponentBits + integerBits(mantissaBits) + mantissaBits;
    shortBits = decimalBits(value);
  }
  const int64 step = difference(pattern, m_before);
  const double bits = std::min(
      {2 + generalBits, 2 + dyadicBits, 2 + shortBits, 2 + integerBits(static_cast<double>(step)),
       2 + integerBits(static_cast<double>(difference(step, m_step))), 3 + m_steps.bits(step)});
  m_before = pattern;
  m_step = step;
  return bits;
}

const char* ValueModel<ZRKMetaData::KeyStroke>::impossible(const ZRKMetaData::KeyStroke& key) {
  return isBetween(key.character, 0, kMaxCodePoint) ||
                 isBetween(key.character, kKeySymbol, kKeySymbol + kMaxCodePoint)
             ? nullptr
             : "the character is no code point";
}

double ValueModel<ZRKMetaData::KeyStroke>::bits(const ZRKMetaData::KeyStroke& key) {
  constexpr int32 kBlock = 128;  // an alphabet
  const bool isNear = key.character >= kBlock && key.character / kBlock == m_before / kBlock;
  m_before = key.character;
  return std::min({1 + characterBits(key.character), isNear ? 8 : kNever,
                   1.5 + m_characters.bits(key.character)}) +
         std::min(1.5 + flagBits(key.eventFlags), 0.5 + m_flags.bits(key.eventFlags));
}

const char* ValueModel<ZRKMetaData::Point>::impossible(const ZRKMetaData::Point& point) {
  return isPossibleCoordinate(point.x) && isPossibleCoordinate(point.y)
             ? nullptr
             : "a coordinate is beyond 65535 px";
}

double ValueModel<ZRKMetaData::Point>::bits(const ZRKMetaData::Point& point) {
  const double stepX = point.x - m_x;
  const double stepY = point.y - m_y;
  const auto stepKey = static_cast<int64>(stepX * (8 * kMaxCoordinate) + stepY);
  const double bits =
      std::min({2 + moveBits(stepX, stepY), 2 + moveBits(stepX - m_stepX, stepY - m_stepY),
                2 + placeBits(point.x, point.y), 3 + m_steps.bits(stepKey),
                2 + m_columns.bits(point.x) + m_rows.bits(point.y)});
  m_x = point.x;
  m_y = point.y;
  m_stepX = stepX;
  m_stepY = stepY;
  return bits + edgeBits(point);
}

// Nobody moves a cursor along the upper edge alone: a stream that never leaves it is one of small
// 64-bit numbers or of characters. What it was charged is returned when it does leave.
double ValueModel<ZRKMetaData::Point>::edgeBits(const ZRKMetaData::Point& point) {
  constexpr double kPlaceBits = 10;
  constexpr double kMaxBits = 70;
  if (!m_isOnEdge) return 0;
  m_isOnEdge = point.y == 0 || point.y == -1;
  const double charge = m_isOnEdge ? std::min(kPlaceBits, kMaxBits - m_charge) : -m_charge;
  m_charge += charge;
  return charge;
}

const char* ValueModel<ZRKMetaData::Rect>::impossible(const ZRKMetaData::Rect& rect) {
  return std::all_of(std::begin(rect.coordinates), std::end(rect.coordinates), isPossibleCoordinate)
             ? nullptr
             : "a coordinate is beyond 65535 px";
}

double ValueModel<ZRKMetaData::Rect>::bits(const ZRKMetaData::Rect& rect) {
  double bits = 0;
  for (int index = 0; index < 4; ++index) {
    const double coordinate = rect.coordinates[index];
    const bool isOnScreen = coordinate >= 0 && coordinate < 4096;
    bits += std::min(1 + integerBits(coordinate - m_before[index]), isOnScreen ? 13.0 : 20.0);
    m_before[index] = coordinate;
  }
  return bits;
}

namespace {

struct TextCount {
  double printable = 0;  // bytes of ASCII
  double wide = 0;       // bytes of other characters
  double odd = 0;        // control characters and malformed bytes
  double control = 0;
};

TextCount countText(std::string_view text) {
  TextCount count;
  while (!text.empty()) {
    const auto character = text::firstCharacter(text);
    const bool isControl = character.codePoint < 0x20 && character.codePoint != '\t' &&
                           character.codePoint != '\n' && character.codePoint != '\r';
    const auto bytes = static_cast<double>(character.length);
    if (isControl || character.codePoint == 0x7F) {
      count.control += bytes;
      count.odd += bytes;
    } else if (!character.isWellFormed) {
      count.odd += bytes;
    } else {
      (character.length == 1 ? count.printable : count.wide) += bytes;
    }
    text.remove_prefix(character.length);
  }
  return count;
}

}  // namespace

const char* ValueModel<std::string>::impossible(std::string_view text) {
  const double control = countText(text).control;
  return control <= 1 + 0.1 * static_cast<double>(text.size())
             ? nullptr
             : "more than a tenth of the text are control characters";
}

double ValueModel<std::string>::bits(std::string_view text, uint32 announced) {
  const TextCount count = countText(text);
  const double textBits =
      integerBits(announced) + 5.5 * count.printable + 6.5 * count.wide + 12 * count.odd;
  return std::min(1 + textBits, 1 + m_texts.bits(text));
}

const char* ValueModel<ZRKMetaData::CursorImage>::impossible(const CursorImageHead& image) {
  return image.dataSize == 0 || image.dataSize > ZRKMetaData::CursorImage::kInfoByteCount
             ? nullptr
             : "the data size is from 1 to 8";
}

double ValueModel<ZRKMetaData::CursorImage>::bits(const CursorImageHead& image) {
  constexpr uint64 kSizeOfRest = 20;  // time, identifier, data size
  const double sizeBits = image.recordSize == kSizeOfRest + image.dataSize ? 1 : 34;
  const double idBits = std::min(
      {2 + integerBits(static_cast<double>(image.imageId)), 66.0, 1 + m_ids.bits(image.imageId)});
  if (image.dataSize == 0) return sizeBits + idBits + 1;
  return sizeBits + idBits + 1 + std::min(integerBits(image.dataSize), 33.0) +
         std::min(integerBits(image.info0), 34.0) + std::min(integerBits(image.info1), 34.0);
}

}  // namespace series::detail
