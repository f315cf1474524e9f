#include <fmt/format.h>

#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cmath>
#include <cstddef>
#include <string>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "text/Counted.h"
#include "tools/series/Guess.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/Sources.h"

namespace voxa {

using series::Guess;
using series::GuessCandidate;

namespace {

// The types that pass every test, or of a tie those at the front.
std::string likelyTypes(const Guess& guess) {
  std::string names;
  for (std::size_t index = 0; index < guess.candidates.size(); ++index) {
    const GuessCandidate& candidate = guess.candidates[index];
    if (!candidate.passes || (guess.tieCount > 1 && index >= guess.tieCount)) break;
    names += (names.empty() ? "" : " or ") + std::string(infoOf(candidate.type).name);
  }
  return names;
}

const char* verdictOf(const Guess& guess) {
  if (guess.isEmpty) return "empty";
  if (guess.isUnknown) return "unknown";
  if (guess.isCertain) return "certain";
  return guess.tieCount > 1 ? "tie" : "ambiguous";
}

std::string verdictText(const Guess& guess) {
  if (guess.isEmpty) return "no records; every type fits";
  if (guess.isUnknown) return "unknown";
  if (guess.isCertain) return likelyTypes(guess) + ", certain";
  return guess.tieCount > 1 ? "a tie of " + likelyTypes(guess) : "probably " + likelyTypes(guess);
}

void writeText(Output& out, const boost::uuids::uuid& id, const Guess& guess) {
  out.write(fmt::format("\n{}  {}  {}\n", ZRKMetaData::MetaDataUUID::shortKey(id),
                        boost::uuids::to_string(id), verdictText(guess)));
  for (const GuessCandidate& candidate : guess.candidates) {
    out.write(fmt::format("  {:<13}  {:>3.0f} %", infoOf(candidate.type).name,
                          std::floor(candidate.score * 100)));
    const char* before = "  ";
    for (const std::string& reason : candidate.reasons) {
      out.write(before);
      out.writePrintable(reason);
      before = "; ";
    }
    out.write("\n");
  }
}

void writeJson(Output& out, const boost::uuids::uuid& id, const Guess& guess) {
  JsonRow row(out);
  row.field("id", boost::uuids::to_string(id));
  row.field("key", ZRKMetaData::MetaDataUUID::shortKey(id));
  row.field("verdict", verdictOf(guess));
  if (guess.isCertain) {
    row.field("type", infoOf(guess.candidates.front().type).name);
  } else {
    row.null("type");
  }
  row.field("tieCount", guess.tieCount);
  row.array("candidates", guess.candidates, [&out](const GuessCandidate& candidate) {
    JsonRow inner(out);
    inner.field("type", infoOf(candidate.type).name);
    inner.field("score", candidate.score);
    inner.field("passes", candidate.passes);
    inner.array("reasons", candidate.reasons,
                [&out](const std::string& reason) { out.writeJsonString(reason); });
    inner.end();
  });
  row.end();
}

Guess guessOf(const IndexedSource& source, const boost::uuids::uuid& id) {
  const QuietModule quiet;
  return series::guessRecordType(source.parser, id);
}

void writeText(Output& out, const IndexedSource& source) {
  const auto ids = streamsNamed(source.parser, source.file, source.streams);
  out.writePrintable(source.file);
  out.write(": " + text::counted(ids.size(), "stream") + "\n");
  for (const auto& id : ids) writeText(out, id, guessOf(source, id));
}

void writeJson(Output& out, const IndexedSource& source) {
  JsonRow document(out);
  document.field("file", source.file);
  const auto ids = streamsNamed(source.parser, source.file, source.streams);
  document.array("streams", ids, [&](const auto& id) { writeJson(out, id, guessOf(source, id)); });
  document.end();
}

}  // namespace

void guessTypes(const GuessOptions& options) {
  Output out;
  const bool isJson = options.format == Format::Json;
  const bool isJsonList = isJson && options.isList;
  if (isJsonList) out.write("{\"files\":[");
  const char* before = "";
  const Status worst = forEachIndexedSource(options.sources, [&](const IndexedSource& source) {
    out.write(before);
    if (isJson) {
      writeJson(out, source);
      before = ",";
    } else {
      writeText(out, source);
      before = "\n";
    }
  });
  if (isJsonList) out.write("]}");
  if (isJsonList || (isJson && *before != '\0')) out.write("\n");
  out.finish();
  endWith(worst);
}

}  // namespace voxa
