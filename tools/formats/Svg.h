// The text of an SVG 1.1 picture: elements with numbers that follow no locale and texts that are
// escaped, whatever bytes they hold.
#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>

#include "tools/formats/Colors.h"

namespace formats {

/// Where a text stands relative to its position.
enum class Anchor { Start, Middle, End };

/// Where a strip of colours has its 1.
enum class StripTo { Right, Bottom, Top };

/// Text of any origin, made safe for XML 1.0 and for the eye: malformed UTF-8, control characters
/// and characters that reorder text become visible escapes.
std::string svgText(std::string_view bytes);

/// A coordinate with at most two decimals.
std::string svgNumber(double number);

/// The width in pixels that `bytes`, drawn at `fontSize`, has at most in the fonts that a picture
/// asks for. An estimate, with a margin for wide fonts.
double textWidth(std::string_view bytes, double fontSize);

/// The longest beginning of `bytes` that fits into `width` pixels, with an ellipsis when it is
/// shorter than the whole; empty when not even three characters fit.
std::string textThatFits(std::string_view bytes, double fontSize, double width);

/// Collects the elements of a picture. Coordinates are pixels from its left upper corner. Used by
/// one thread.
class Svg {
 public:
  /// The title and description are what a screen reader reads.
  Svg(std::string_view title, std::string_view description)
      : m_title(title), m_description(description) {}

  /// `attributes` are written as they are, escaped by the caller.
  void text(double x, double y, std::string_view bytes, std::string_view attributes,
            Anchor anchor = Anchor::Start);
  void line(double x1, double y1, double x2, double y2, std::string_view attributes);
  void rect(double x, double y, double width, double height, std::string_view attributes);
  void circle(double x, double y, double radius, std::string_view attributes);
  void raw(std::string_view markup) { m_body += markup; }

  /// A strip of the colours of `scale`, from 0 to 1 in the direction `to`.
  void strip(double x, double y, double width, double height, StripTo to, Color (*scale)(double));

  /// The finished document for a picture of this size. Ends the use of the object.
  std::string document(double width, double height);

 private:
  std::string m_title;
  std::string m_description;
  std::string m_body;
  int m_gradientCount = 0;
};

}  // namespace formats
