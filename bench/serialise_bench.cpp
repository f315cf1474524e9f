// Writes keyframes as the host's XML and JSON; the floors, and that of the CSV of the command line,
// write the same bytes with std::to_chars. All overwrite one file from its begin.
#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <fstream>
#include <sstream>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "bench/Project.h"

namespace {

using Kestova::Parameter;

class File {
 public:
  File() : m_file(KESTOVA_BENCH_RECORDINGS "/text", std::ios::binary) {}

  std::ostream& rewound() {
    m_file.seekp(0);
    return m_file;
  }

 private:
  std::ofstream m_file;
};

// A text buffer of 64 KiB.
class Blocks {
 public:
  explicit Blocks(std::streambuf& out) : m_out(out) {}
  ~Blocks() { flush(); }
  Blocks(const Blocks&) = delete;
  Blocks& operator=(const Blocks&) = delete;

  Blocks& operator<<(std::string_view text) {
    makeRoom(text.size());
    m_next = std::copy(text.begin(), text.end(), m_next);
    return *this;
  }

  /// `form`: the arguments of std::to_chars after the number.
  template <class Number, class... Form>
  Blocks& number(Number value, Form... form) {
    constexpr std::size_t kMaxNumberLength = 32;
    makeRoom(kMaxNumberLength);
    m_next = std::to_chars(m_next, m_block.data() + m_block.size(), value, form...).ptr;
    return *this;
  }

 private:
  void makeRoom(std::size_t count) {
    if (count > static_cast<std::size_t>(m_block.data() + m_block.size() - m_next)) flush();
  }
  void flush() {
    m_out.sputn(m_block.data(), m_next - m_block.data());
    m_next = m_block.data();
  }

  std::streambuf& m_out;
  std::array<char, std::size_t{64} << 10U> m_block{};
  char* m_next = m_block.data();
};

template <class T>
using KeyFrames = std::vector<std::pair<std::int64_t, T>>;

// A loaded parameter, and its keyframes in a vector.
template <class T>
struct Written {
  template <class Operation>
  Written(Operation operation, bench::Stream stream, std::int64_t count)
      : parameter(
            project.load(operation, bench::streamFileName(stream, bench::Order::Rising, count))) {
    const auto times = parameter->keyFrameTimes();
    for (const auto& time : *times) {
      keyFrames.emplace_back(time.numerator(), parameter->keyFrameAt(time)->value());
    }
  }

  const bench::Project project;
  const boost::shared_ptr<const Parameter<T>> parameter;
  KeyFrames<T> keyFrames;
};

template <class T>
Written<T> written(std::int64_t count) {
  using Loader = bench::Project::Loader;
  if constexpr (std::is_same_v<T, int>) {
    return {&Loader::loadInts, bench::Stream::Ints, count};
  } else {
    return {&Loader::loadDoubles, bench::Stream::Doubles, count};
  }
}

struct Xml {
  template <class T>
  static void byHost(const Written<T>& what, std::ostream& out) {
    Kestova::XMLOptions options(out);
    what.parameter->toXML(options, 0, "");
  }

  template <class T>
  static void leanly(const Written<T>& what, std::ostream& out) {
    Blocks blocks(*out.rdbuf());
    blocks << "<Parameter>\n  <Keyframes>\n";
    for (const auto& [frame, value] : what.keyFrames) {
      blocks << "  <Keyframe  time=\"";
      blocks.number(frame) << "\" value=\"";
      if constexpr (std::is_same_v<T, double>) {
        blocks.number(value, std::chars_format::general, 17);
      } else {
        blocks.number(value);
      }
      blocks << "\" leadInLength=\"";
      blocks.number(0) << "\" />\n";
    }
    blocks << "  </Keyframes>\n</Parameter>\n";
  }
};

struct Json {
  template <class T>
  static void byHost(const Written<T>& what, std::ostream& out) {
    what.parameter->toJSON(Kestova::JSONOptions(out), 0, "", "");
  }

  template <class T>
  static void leanly(const Written<T>& what, std::ostream& out) {
    Blocks blocks(*out.rdbuf());
    blocks << "\"cursor\" : {\n  \"type\" : \"" << (std::is_same_v<T, int> ? "int" : "double")
           << "\",\n  \"keyframes\" : [";
    std::string_view separator = "\n";
    for (const auto& [frame, value] : what.keyFrames) {
      blocks << separator << "    {\n      \"time\" : ";
      blocks.number(frame) << ",\n      \"value\" : ";
      blocks.number(value) << ",\n      \"duration\" : ";
      blocks.number(0) << "\n    }";
      separator = ",\n";
    }
    blocks << "\n  ]\n}";
  }
};

template <class Form, class T>
void serialise(benchmark::State& state) {
  const auto what = written<T>(state.range());
  File file;
  while (state.KeepRunning()) Form::byHost(what, file.rewound());
  state.SetItemsProcessed(state.iterations() * state.range());
}

template <class Form, class T>
void serialiseLeanly(benchmark::State& state) {
  const auto what = written<T>(state.range());
  std::ostringstream ours;
  std::ostringstream least;
  Form::byHost(what, ours);
  Form::leanly(what, least);
  if (ours.str() != least.str()) state.SkipWithError("the texts differ");
  File file;
  while (state.KeepRunning()) Form::leanly(what, file.rewound());
  state.SetItemsProcessed(state.iterations() * state.range());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(least.str().size()));
}

BENCHMARK_TEMPLATE(serialise, Xml, int)->Arg(100'000);
BENCHMARK_TEMPLATE(serialise, Xml, double)->Arg(100'000);
BENCHMARK_TEMPLATE(serialise, Json, int)->Arg(100'000);
BENCHMARK_TEMPLATE(serialise, Json, double)->Arg(100'000);
BENCHMARK_TEMPLATE(serialiseLeanly, Xml, int)->Arg(100'000);
BENCHMARK_TEMPLATE(serialiseLeanly, Xml, double)->Arg(100'000);
BENCHMARK_TEMPLATE(serialiseLeanly, Json, int)->Arg(100'000);
BENCHMARK_TEMPLATE(serialiseLeanly, Json, double)->Arg(100'000);

// The lines of `voxa load --format csv` for points.
void writeCsvLeanly(benchmark::State& state) {
  const auto frames = bench::keyedFrames(state.range(), bench::Order::Rising);
  File file;
  while (state.KeepRunning()) {
    Blocks blocks(*file.rewound().rdbuf());
    for (const std::int64_t frame : frames) {
      blocks.number(frame) << ",";
      blocks.number(static_cast<double>(bench::pixelAt(frame))) << ",";
      blocks.number(static_cast<double>(bench::pixelAt(2 * frame))) << "\n";
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}
BENCHMARK(writeCsvLeanly)->Arg(1'000'000);

}  // namespace
