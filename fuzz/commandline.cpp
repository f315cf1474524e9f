// Fuzzes the parsers of rates and times on the command line. The input is the text.
#include <sstream>

#include "fuzz/Fuzz.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Rates.h"

namespace {

template <class Parse>
void expectValueOrWrongUse(Parse parse) {
  try {
    parse();
  } catch (const voxa::Failure& failure) {
    fuzz::require(failure.status() == voxa::Status::WrongUse, "rejected text is wrong use");
  }
}

// The text that a member function writes, without flushing it to standard output.
std::string written(std::string_view text, void (voxa::Output::*write)(std::string_view)) {
  voxa::Output out;
  (out.*write)(text);
  std::string all(out.buffer().data(), out.buffer().size());
  out.buffer().clear();
  return all;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  expectValueOrWrongUse([&] {
    const auto rate = voxa::parseRate(text);
    fuzz::require(rate.numerator() != 0, "a rate is positive");
    const std::string again =
        std::to_string(rate.numerator()) + "/" + std::to_string(rate.denominator());
    fuzz::require(voxa::parseRate(again) == rate, "a rate reads back the same");
  });
  for (const auto& rate : {boost::rational<unsigned int>(30000, 1001),
                           boost::rational<unsigned int>(4294967295U, 4294967294U)}) {
    expectValueOrWrongUse([&] {
      const Kestova::RationalTime time = voxa::frameOf(voxa::parseTime(text), rate);
      if (text.back() != 's') {
        fuzz::require(time.isWhole() && std::to_string(time.numerator()).size() <= text.size(),
                      "a frame number equals its text");
      }
    });
  }
  const std::string field = written(text, &voxa::Output::writeCsvField);
  fuzz::require(
      field.empty() || field.front() == '"' || field.find_first_of(",\"\r\n") == std::string::npos,
      "a field is quoted if it needs quotes");
  for (const char byte : written(text, &voxa::Output::writePrintable)) {
    fuzz::require(static_cast<unsigned char>(byte) >= 0x20,
                  "printable text has no control characters");
  }
  return 0;
}
