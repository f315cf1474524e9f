#include "tools/formats/Colors.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace formats {

namespace {

// The scales at equal distances; between them the channels are interpolated, which stays within
// 3 of 255 of the full tables.
constexpr std::array<Color, 17> kViridis = {{{68, 1, 84},
                                             {72, 24, 106},
                                             {71, 45, 123},
                                             {66, 64, 134},
                                             {59, 82, 139},
                                             {51, 99, 141},
                                             {44, 114, 142},
                                             {38, 130, 142},
                                             {33, 145, 140},
                                             {31, 160, 136},
                                             {40, 174, 128},
                                             {63, 188, 115},
                                             {94, 201, 98},
                                             {132, 212, 75},
                                             {173, 220, 48},
                                             {216, 226, 25},
                                             {253, 231, 37}}};
constexpr std::array<Color, 17> kMagma = {{{0, 0, 4},
                                           {12, 9, 38},
                                           {34, 17, 80},
                                           {59, 15, 112},
                                           {86, 20, 125},
                                           {112, 31, 129},
                                           {137, 40, 129},
                                           {163, 48, 126},
                                           {190, 58, 119},
                                           {213, 74, 108},
                                           {234, 96, 96},
                                           {246, 124, 93},
                                           {251, 152, 102},
                                           {254, 180, 120},
                                           {254, 206, 145},
                                           {253, 231, 172},
                                           {252, 253, 191}}};

unsigned char mixed(unsigned char from, unsigned char to, double share) {
  return static_cast<unsigned char>(std::lround(from + share * (to - from)));
}

Color interpolated(const std::array<Color, 17>& scale, double position) {
  const double scaled = std::clamp(position, 0.0, 1.0) * static_cast<double>(scale.size() - 1);
  const auto index = std::min(static_cast<std::size_t>(scaled), scale.size() - 2);
  const double share = scaled - static_cast<double>(index);
  const Color& from = scale[index];
  const Color& to = scale[index + 1];
  return {mixed(from.red, to.red, share), mixed(from.green, to.green, share),
          mixed(from.blue, to.blue, share)};
}

}  // namespace

std::string hexText(Color color) {
  return fmt::format("#{:02x}{:02x}{:02x}", color.red, color.green, color.blue);
}

Color timeColor(double position) {
  constexpr double kEnd = 0.84;
  return interpolated(kViridis, kEnd * std::clamp(position, 0.0, 1.0));
}

Color heatColor(double position) {
  constexpr double kPalest = 0.94;
  return interpolated(kMagma, kPalest * (1 - std::clamp(position, 0.0, 1.0)));
}

}  // namespace formats
