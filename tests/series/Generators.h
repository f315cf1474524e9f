// Streams of every record type as recorders of many kinds would write them. They share only the
// dice with the samples of `voxa`, and were written before the guess was tuned.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/recording/Dice.h"
#include "tools/recording/Records.h"

namespace series_tests {

class Random : public recording::Dice {
 public:
  using Dice::Dice;

  int within(int low, int high) { return low + below(high - low + 1); }
  bool chance(int percent) { return below(100) < percent; }
  template <class List>
  const auto& oneOf(const List& list) {
    return list[bits() % std::size(list)];
  }
};

/// Times that never fall, in one of the ways in which recorders take them.
class Clock {
 public:
  explicit Clock(Random& random)
      : m_random(random), m_kind(random.within(0, 6)), m_rate(random.within(1, 120)) {
    static constexpr double kStarts[] = {0, 0, 0, 0.25, 12.034, 3600.5, 1.7e9};
    m_time = m_start = random.oneOf(kStarts);
  }

  double next() {
    const double time = m_kind == 5   ? std::round(m_time * 1000) / 1000
                        : m_kind == 6 ? double(float(m_time - m_start))
                                      : m_time;
    ++m_count;
    if (m_kind == 0) {
      m_time = m_start + m_count / double(m_rate);
    } else if (m_kind == 1) {
      m_time = m_start + m_count * (1001.0 / 30000);
    } else if (m_kind == 2) {
      m_time += m_random.chance(20) ? 0 : m_random.between(0.001, 3);
    } else if (m_kind == 3) {
      m_time = m_start + m_count;  // whole seconds
    } else {
      m_time += m_random.between(0.005, 0.5);
    }
    return time;
  }

 private:
  Random& m_random;
  const int m_kind;
  const int m_rate;
  double m_start = 0;
  double m_time = 0;
  int m_count = 0;
};

using recording::Bytes;

/// `count` records, each of which `record(time, index)` gives.
template <class Record>
Bytes stream(Random& random, int count, Record record) {
  Clock clock(random);
  Bytes bytes;
  for (int index = 0; index < count; ++index) bytes += record(clock.next(), index);
  return bytes;
}

struct Generator {
  const char* type;
  const char* what;
  Bytes (*bytes)(Random& random, int count);
};

inline const char* const kProse =
    "It was a bright cold day in April, and the clocks were striking 13. Is \"this\" typed? "
    "for (int i = 0; i < n; ++i) { sum += a[i]; }\r\b\b\t/usr/bin/env: no such file; 42% of 17.5";

inline Bytes walk(Random& random, int count, int left, int top, int right, int bottom,
                  double scale) {
  double x = random.between(left, right), y = random.between(top, bottom), toX = x, toY = y;
  int rest = 0;
  return stream(random, count, [&](double time, int) {
    if (std::abs(toX - x) + std::abs(toY - y) < 1.5 && --rest < 0) {
      toX = random.between(left, right);
      toY = random.between(top, bottom);
      rest = random.within(0, 90);
    }
    const double share = random.between(0.05, 0.3);
    x += (toX - x) * share;
    y += (toY - y) * share;
    return recording::pointRecord(time, int(x * scale), int(y * scale));
  });
}

inline Bytes keys(Random& random, int count, const std::vector<int>& characters,
                  const std::vector<int>& flags, int plainPercent, bool inOrder) {
  std::size_t next = random.bits() % characters.size();
  return stream(random, count, [&, next](double time, int) mutable {
    const int character =
        inOrder ? characters[next++ % characters.size()] : random.oneOf(characters);
    return recording::keystrokeRecord(time, character,
                                      random.chance(plainPercent) ? flags[0] : random.oneOf(flags));
  });
}

inline std::vector<int> codes(const char* text) {
  return {text, text + std::char_traits<char>::length(text)};
}
inline std::vector<int> range(int first, int last) {
  std::vector<int> all;
  for (int code = first; code <= last; ++code) all.push_back(code);
  return all;
}

template <class Value>
Bytes numbers(Random& random, int count, Bytes (*record)(double, Value),
              Value (*value)(Random&, int, Value)) {
  Value before{};
  return stream(random, count, [&](double time, int index) {
    return record(time, before = value(random, index, before));
  });
}

#define NUMBERS(type, name, what, Value, expression)                      \
  {                                                                       \
    type, what, [](Random& random, int count) {                           \
      return numbers<Value>(random, count, recording::name##Record,       \
                            [](Random& r, int i, Value before) -> Value { \
                              (void)r, (void)i, (void)before;             \
                              return static_cast<Value>(expression);      \
                            });                                           \
    }                                                                     \
  }

template <class Text>
Bytes texts(Random& random, int count, Text text) {
  return stream(random, count,
                [&](double time, int) { return recording::stringRecord(time, text(random)); });
}

inline Bytes sentence(Random& random, int words, const std::vector<std::string>& vocabulary) {
  Bytes text;
  for (int word = 0; word < words; ++word)
    text += (word == 0 ? "" : " ") + random.oneOf(vocabulary);
  return text;
}

template <class Box>
Bytes boxes(Random& random, int count, Box box) {
  std::array<int, 4> now = {random.within(0, 800), random.within(0, 600), random.within(60, 900),
                            random.within(40, 700)};
  return stream(random, count, [&](double time, int) {
    box(random, now);
    return recording::rectRecord(time, now[0], now[1], now[2], now[3]);
  });
}

// `newPercent` of the records store an image of `bytes` bytes at most; the others refer.
inline Bytes images(Random& random, int count, int newPercent, int maxBytes, std::uint64_t idMask) {
  std::vector<std::uint64_t> ids;
  return stream(random, count, [&](double time, int) {
    if (!ids.empty() && !random.chance(newPercent)) {
      return recording::cursorReferenceRecord(time, random.oneOf(ids));
    }
    ids.push_back(random.bits() & idMask);
    Bytes image = random.chance(50) ? "\x89PNG\r\n\x1A\n" : Bytes(16, '\0');
    const int size = random.within(1, maxBytes);
    while (int(image.size()) < size) {
      image += recording::littleEndian(random.chance(40) ? 0 : random.bits());
    }
    return recording::cursorImageRecord(time, ids.back(), random.within(0, 64),
                                        random.within(0, 64), image);
  });
}

inline const std::vector<Generator>& generators() {
  using std::int64_t;
  static const std::vector<Generator> all = {
      {"points", "full HD", [](Random& r, int n) { return walk(r, n, 0, 0, 1919, 1079, 1); }},
      {"points", "screen to the left",
       [](Random& r, int n) { return walk(r, n, -2560, -400, 1919, 1439, 1); }},
      {"points", "double resolution",
       [](Random& r, int n) { return walk(r, n, 0, 0, 2560, 1440, 2); }},
      {"points", "small corner", [](Random& r, int n) { return walk(r, n, 0, 0, 120, 60, 1); }},
      {"points", "clicks", [](Random& r, int n) {
         return stream(r, n, [&](double t, int) {
           return recording::pointRecord(t, r.within(0, 1919), r.within(0, 1079));
         });
       }},
      {"points", "clicks on a few buttons", [](Random& r, int n) {
         return stream(r, n, [&](double t, int) {
           return recording::pointRecord(t, 100 + 220 * r.within(0, 5), 40 + 300 * r.within(0, 2));
         });
       }},
      {"points", "along a row", [](Random& r, int n) {
         int x = r.within(0, 300);
         const int y = r.within(1, 1000);
         return stream(r, n, [&](double t, int) {
           return recording::pointRecord(t, x += r.within(-2, 9), y);
         });
       }},
      {"points", "circles", [](Random& r, int n) {
         const double radius = r.between(20, 400);
         return stream(r, n, [&](double t, int i) {
           return recording::pointRecord(t, int(700 + radius * std::cos(i / 9.0)),
                                         int(500 + radius * std::sin(i / 9.0)));
         });
       }},

      {"keystrokes", "prose without flags",
       [](Random& r, int n) { return keys(r, n, codes(kProse), {0}, 100, true); }},
      {"keystrokes", "prose with shift",
       [](Random& r, int n) { return keys(r, n, codes(kProse), {0, 1, 2}, 80, true); }},
      {"keystrokes", "device-dependent modifiers", [](Random& r, int n) {
         return keys(r, n, codes(kProse), {256, 0x20102, 0x100108, 0x80120, 0x40101}, 85, true);
       }},
      {"keystrokes", "virtual key codes", [](Random& r, int n) {
         return keys(r, n, codes("THE QUICK BROWN FOX\b\r\x11\x10%&'(.SAYS 1234567890"),
                     {0, 1, 0x20, 0x80, 0x81}, 60, true);
       }},
      {"keystrokes", "shortcuts", [](Random& r, int n) {
         return keys(r, n, codes("cvxzsa\x03\x16\x18tw\x1B"), {8, 8, 12, 4, 0x100000}, 50, false);
       }},
      {"keystrokes", "game keys",
       [](Random& r, int n) { return keys(r, n, codes("wwwwaassddd  "), {0}, 100, false); }},
      {"keystrokes", "Cyrillic",
       [](Random& r, int n) { return keys(r, n, range(0x430, 0x44F), {0, 2}, 90, false); }},
      {"keystrokes", "Chinese",
       [](Random& r, int n) { return keys(r, n, range(0x4E00, 0x5200), {0}, 100, false); }},
      {"keystrokes", "function keys and letters", [](Random& r, int n) {
         return keys(r, n, {0xF700, 0xF701, 0xF702, 0xF703, 'a', 'b', 'n', 13}, {0x800100, 256}, 50,
                     false);
       }},
      {"keystrokes", "key symbols", [](Random& r, int n) {
         return keys(r, n, {0x01000003, 0x01000004, 0x01000012, 'A', 'E', 'N', ' ', 'T'},
                     {0, 0x02000000, 0x04000000}, 80, false);
       }},

      NUMBERS("doubles", double, "opacity ramp", double, std::min(1.0, (i % 200) / 30.0)),
      NUMBERS("doubles", double, "decibels", double, r.between(-60, 0)),
      NUMBERS("doubles", double, "zoom levels", double,
              r.chance(80) && i != 0 ? before : 1 + 0.25 * r.within(0, 12)),
      NUMBERS("doubles", double, "sine", double, std::sin(i / 25.0)),
      NUMBERS("doubles", double, "random walk", double, before + r.between(-1, 1)),
      NUMBERS("doubles", double, "tenths", double, 20 + r.within(-50, 50) / 10.0),
      NUMBERS("doubles", double, "whole numbers", double, r.within(0, 100)),
      NUMBERS("doubles", double, "floats", double, float(r.between(0, 1))),
      NUMBERS("doubles", double, "wall clock", double, 1.7e9 + i / 60.0),
      NUMBERS("doubles", double, "on and off", double, r.chance(50)),
      NUMBERS("doubles", double, "gaps of NaN", double, r.chance(10) ? NAN : r.between(0, 500)),
      NUMBERS("doubles", double, "mostly zero", double, r.chance(80) ? 0.0 : r.between(0, 1)),

      NUMBERS("int64s", int64, "ticks of 100 ns", int64_t, i * int64_t{166667}),
      NUMBERS("int64s", int64, "frame numbers", int64_t, i),
      NUMBERS("int64s", int64, "microseconds since 1970", int64_t,
              (i == 0 ? 1700000000000000 : before) + r.within(1000, 40000)),
      NUMBERS("int64s", int64, "nanoseconds of a clock", int64_t,
              (i == 0 ? 812345678901234 : before) + r.within(16000000, 17000000)),
      NUMBERS("int64s", int64, "file times", int64_t,
              (i == 0 ? 133400000000000000 : before) + r.within(10000, 4000000)),
      NUMBERS("int64s", int64, "bytes written", int64_t, before + r.within(0, 90000)),
      NUMBERS("int64s", int64, "hashes", int64_t, r.bits()),
      NUMBERS("int64s", int64, "window handles", int64_t,
              r.chance(70) && i != 0 ? before : 0x10000 + 2 * r.within(0, 900000)),
      NUMBERS("int64s", int64, "states", int64_t, r.within(0, 3)),
      NUMBERS("int64s", int64, "signed steps", int64_t, r.within(-500, 500)),
      NUMBERS("int64s", int64, "pointers", int64_t,
              0x7F3000000000 + 16 * int64_t{r.within(0, 1 << 24)}),

      NUMBERS("ints", int, "buttons", std::int32_t, r.within(0, 2)),
      NUMBERS("ints", int, "counter", std::int32_t, i + 1),
      NUMBERS("ints", int, "volume", std::int32_t, r.within(0, 100)),
      NUMBERS("ints", int, "colours", std::int32_t, 0xFF000000U | (r.bits() & 0xFFFFFFU)),
      NUMBERS("ints", int, "signed steps", std::int32_t, r.within(-120, 120)),
      NUMBERS("ints", int, "process ids", std::int32_t, r.chance(70) ? before : r.within(1, 99999)),
      NUMBERS("ints", int, "any bits", std::int32_t, r.bits()),
      NUMBERS("ints", int, "constant", std::int32_t, 7),

      {"strings", "window titles", [](Random& r, int n) {
         return texts(r, n, [](Random& d) {
           return sentence(d, d.within(1, 6), {"Inbox", "-", "main.cpp", "Untitled", "Browser", "(2)"});
         });
       }},
      {"strings", "addresses", [](Random& r, int n) {
         return texts(r, n, [](Random& d) {
           return "https://example.org/" + std::to_string(d.bits()) + "?q=" + sentence(d, 1, {"a", "b"});
         });
       }},
      {"strings", "often empty", [](Random& r, int n) {
         return texts(r, n, [](Random& d) { return d.chance(50) ? Bytes() : Bytes("Editor"); });
       }},
      {"strings", "single letters", [](Random& r, int n) {
         return texts(r, n, [](Random& d) { return Bytes(1, char(d.within('a', 'z'))); });
       }},
      {"strings", "several scripts", [](Random& r, int n) {
         return texts(r, n, [](Random& d) {
           return sentence(d, d.within(1, 9), {u8"Straße", u8"Привет", u8"日本語", u8"🙂", "ok"});
         });
       }},
      {"strings", "old code page", [](Random& r, int n) {
         return texts(r, n, [](Random& d) {
           return sentence(d, d.within(2, 8), {"M\xFCnchen", "caf\xE9", "text", "\xCF\xF0\xE8"});
         });
       }},
      {"strings", "paragraphs", [](Random& r, int n) {
         return texts(r, n, [](Random& d) { return sentence(d, d.within(20, 150), {kProse, "\n", "so"}); });
       }},
      {"strings", "twelve characters", [](Random& r, int n) {
         return texts(r, n, [](Random& d) { return "item " + std::to_string(d.within(1000000, 9999999)); });
       }},

      {"rects", "moved and resized", [](Random& r, int n) {
         return boxes(r, n, [](Random& d, auto& box) {
           box[std::size_t(d.within(0, 3))] += d.within(-30, 30);
         });
       }},
      {"rects", "other windows", [](Random& r, int n) {
         return boxes(r, n, [](Random& d, auto& box) {
           box = {d.within(-8, 900), d.within(-8, 500), d.within(100, 1920), d.within(80, 1080)};
         });
       }},
      {"rects", "left screen, minimised", [](Random& r, int n) {
         return boxes(r, n, [](Random& d, auto& box) {
           if (d.chance(20)) {
             box = {-32000, -32000, -31840, -31972};
           } else {
             box = {d.within(-1920, 0), d.within(-200, 500), d.within(1, 1920), d.within(500, 1080)};
           }
         });
       }},
      {"rects", "caret", [](Random& r, int n) {
         return boxes(r, n, [](Random& d, auto& box) { box = {box[0] + 8, 20 * d.within(1, 40), 1, 16}; });
       }},
      {"rects", "selection from the origin", [](Random& r, int n) {
         return boxes(r, n, [](Random& d, auto& box) { box = {0, 0, box[2] + d.within(0, 9), box[3]}; });
       }},

      {"cursor-images", "small images, references",
       [](Random& r, int n) { return images(r, n, 15, 4096, 0xF); }},
      {"cursor-images", "an image each", [](Random& r, int n) { return images(r, n, 100, 300, 0xFFFF); }},
      {"cursor-images", "hashes", [](Random& r, int n) { return images(r, n, 30, 1200, ~0ULL); }},
      {"cursor-images", "one image", [](Random& r, int n) { return images(r, n, 0, 4000, 0xFFFF0); }},
      {"cursor-images", "handles", [](Random& r, int n) { return images(r, n, 10, 20000, 0x1FFFE); }},
  };
  return all;
}

#undef NUMBERS

}  // namespace series_tests
