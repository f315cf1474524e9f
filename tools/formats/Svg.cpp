#include "tools/formats/Svg.h"

#include <cmath>

#include "text/Printable.h"
#include "text/Utf8.h"

namespace formats {

namespace {

// Generous average widths in ems: most fonts are narrower, the widest of those asked for is not.
double emsOf(char32_t character) {
  if (character == ' ' || character == '.' || character == ',' || character == ':' ||
      character == 'i' || character == 'l' || character == 'j') {
    return 0.36;
  }
  if (character >= 0x2E80) return 1.05;  // ideographs and symbols beyond
  if (character == 'm' || character == 'w' || character == 'W' || character == 'M') return 1.0;
  if (character >= 'A' && character <= 'Z') return 0.74;
  return 0.65;
}

template <class Visit>
void forEachCharacter(std::string_view bytes, Visit visit) {
  for (std::size_t at = 0; at < bytes.size();) {
    const text::Utf8Character character = text::firstCharacter(bytes.substr(at));
    at += character.length;
    visit(character.codePoint, at);
  }
}

}  // namespace

std::string svgText(std::string_view bytes) {
  const std::string printable = text::printable(bytes);
  std::string escaped;
  escaped.reserve(printable.size());
  std::size_t from = 0;
  forEachCharacter(printable, [&](char32_t character, std::size_t end) {
    switch (character) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case 0xFFFE:  // forbidden by XML 1.0
      case 0xFFFF:
        escaped += text::kEncodedReplacementCharacter;
        break;
      default:
        escaped.append(printable, from, end - from);
    }
    from = end;
  });
  return escaped;
}

std::string svgNumber(double number) {
  std::string digits = fmt::format("{:.2f}", number);
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  return digits == "-0" ? "0" : digits;
}

double textWidth(std::string_view bytes, double fontSize) {
  double ems = 0;
  forEachCharacter(bytes, [&](char32_t character, std::size_t) { ems += emsOf(character); });
  return ems * fontSize;
}

std::string textThatFits(std::string_view bytes, double fontSize, double width) {
  std::string printable = text::printable(bytes);
  if (textWidth(printable, fontSize) <= width) return printable;
  constexpr double kEllipsisEms = 1.0;
  const double room = width / fontSize - kEllipsisEms;
  double ems = 0;
  std::size_t count = 0;
  std::size_t length = 0;
  forEachCharacter(printable, [&](char32_t character, std::size_t end) {
    ems += emsOf(character);
    if (ems > room) return;
    ++count;
    length = end;
  });
  return count < 3 ? std::string() : printable.substr(0, length) + "\u2026";
}

void Svg::text(double x, double y, std::string_view bytes, std::string_view attributes,
               Anchor anchor) {
  static constexpr std::string_view kAnchors[] = {"", " text-anchor=\"middle\"",
                                                  " text-anchor=\"end\""};
  m_body += fmt::format("<text x=\"{}\" y=\"{}\"{} {}>{}</text>\n", svgNumber(x), svgNumber(y),
                        kAnchors[static_cast<int>(anchor)], attributes, svgText(bytes));
}

void Svg::line(double x1, double y1, double x2, double y2, std::string_view attributes) {
  m_body += fmt::format("<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" {}/>\n", svgNumber(x1),
                        svgNumber(y1), svgNumber(x2), svgNumber(y2), attributes);
}

void Svg::rect(double x, double y, double width, double height, std::string_view attributes) {
  m_body += fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" {}/>\n", svgNumber(x),
                        svgNumber(y), svgNumber(width), svgNumber(height), attributes);
}

void Svg::circle(double x, double y, double radius, std::string_view attributes) {
  m_body += fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"{}\" {}/>\n", svgNumber(x), svgNumber(y),
                        svgNumber(radius), attributes);
}

void Svg::strip(double x, double y, double width, double height, StripTo to,
                Color (*scale)(double)) {
  constexpr int kStops = 16;
  static constexpr std::string_view kDirections[] = {"", " x2=\"0\" y2=\"1\"",
                                                     " y1=\"1\" x2=\"0\""};
  const int id = m_gradientCount++;
  m_body +=
      fmt::format("<linearGradient id=\"gradient-{}\"{}>", id, kDirections[static_cast<int>(to)]);
  for (int stop = 0; stop <= kStops; ++stop) {
    const double share = static_cast<double>(stop) / kStops;
    m_body += fmt::format("<stop offset=\"{}%\" stop-color=\"{}\"/>", svgNumber(share * 100),
                          hexText(scale(share)));
  }
  m_body += "</linearGradient>\n";
  rect(x, y, width, height, fmt::format("fill=\"url(#gradient-{})\"", id));
}

std::string Svg::document(double width, double height) {
  height = std::ceil(height);
  return fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"{0}\" height=\"{1}\" "
      "viewBox=\"0 0 {0} {1}\" role=\"img\" font-family=\"Helvetica Neue, Helvetica, Arial, "
      "Liberation Sans, DejaVu Sans, sans-serif\">\n"
      "<title>{2}</title>\n<desc>{3}</desc>\n"
      "<rect width=\"{0}\" height=\"{1}\" fill=\"#ffffff\"/>\n{4}</svg>\n",
      svgNumber(width), svgNumber(height), svgText(m_title), svgText(m_description), m_body);
}

}  // namespace formats
