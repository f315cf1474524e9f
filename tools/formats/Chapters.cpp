#include "tools/formats/Chapters.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "text/Utf8.h"

namespace formats {

namespace {

// Escapes what has a meaning in ffmpeg's format.
struct MetadataRule {
  static constexpr bool isPlain(char32_t character) {
    return character != '=' && character != ';' && character != '#' && character != '\\' &&
           character != '\n' && character != 0;
  }
  static text::Escape escape(const text::Utf8Character& character, std::string_view bytes) {
    text::Escape escape;
    if (!character.isWellFormed || character.codePoint == 0) {
      escape.append(text::kEncodedReplacementCharacter);
    } else {
      escape.append("\\");
      escape.append(bytes);
    }
    return escape;
  }
};

void writeTime(TextSink& out, const char* name, double seconds) {
  constexpr double kNanoseconds = 1e9;
  out.write(name);
  out.writeNumber(std::llround(seconds * kNanoseconds));
  out.write("\n");
}

}  // namespace

void TextChapters::add(double seconds, const std::string& text) {
  m_texts.insert_or_assign(seconds, text);
}

std::vector<Chapter> TextChapters::chapters(double end) const {
  std::vector<Chapter> chapters;
  for (const auto& [seconds, text] : m_texts) {
    const double start = std::max(seconds, 0.0);
    if (!chapters.empty()) {
      if (chapters.back().start == start) chapters.pop_back();
    }
    if (!chapters.empty()) chapters.back().end = start;
    chapters.push_back({start, std::max(start, end), text});
  }
  return chapters;
}

void PauseChapters::add(double seconds) {
  const auto isPause = [this](double from, double to) { return to - from >= m_gap; };
  const double time = std::max(seconds, 0.0);
  auto next = m_stretches.upper_bound(time);
  double first = time;
  double last = time;
  if (next != m_stretches.begin()) {
    const auto before = std::prev(next);
    if (before->second >= time) return;
    if (!isPause(before->second, time)) {
      first = before->first;
      m_stretches.erase(before);
    }
  }
  if (next != m_stretches.end() && !isPause(time, next->first)) {
    last = next->second;
    m_stretches.erase(next);
  }
  m_stretches.emplace(first, last);
}

std::vector<Chapter> PauseChapters::chapters(double end) const {
  std::vector<Chapter> chapters;
  for (const auto& stretch : m_stretches) {
    if (!chapters.empty()) chapters.back().end = stretch.first;
    chapters.push_back({stretch.first, std::max(stretch.second, end),
                        "Chapter " + std::to_string(chapters.size() + 1)});
  }
  return chapters;
}

void writeFfMetadata(TextSink& out, const std::vector<Chapter>& chapters) {
  out.write(";FFMETADATA1\n");
  for (const Chapter& chapter : chapters) {
    out.write("\n[CHAPTER]\nTIMEBASE=1/1000000000\n");
    writeTime(out, "START=", chapter.start);
    writeTime(out, "END=", chapter.end);
    out.write("title=");
    out.writeEscaped<MetadataRule>(chapter.title);
    // ffmpeg takes a line end behind a backslash for escaped, even where the backslash is.
    const bool endsInBackslash = !chapter.title.empty() && chapter.title.back() == '\\';
    out.write(endsInBackslash ? " \n" : "\n");
  }
}

}  // namespace formats
