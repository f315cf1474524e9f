#include "tools/voxa/KeyCaptions.h"

#include <fmt/format.h>

#include <stdexcept>

#include "ZRKMetaData/src/ZRKMInputFile.h"
#include "text/Counted.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Recording.h"

namespace voxa {

namespace {

formats::KeyLabels readLabels(const std::string& file) {
  constexpr std::size_t kMaxBytes = 1U << 20U;  // a keyboard has a few hundred keys
  requireOpens(file);
  ZRKMetaData::InputFile in(file);
  std::string text(kMaxBytes + 1, '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(in.gcount()));
  if (text.size() > kMaxBytes) {
    throw Failure(Status::Failed, file + ": labels take more than 1 MiB; use a smaller file");
  }
  try {
    return formats::KeyLabels::fromJson(text);
  } catch (const std::invalid_argument& error) {
    throw Failure(Status::Failed, file + ": " + error.what());
  }
}

}  // namespace

formats::KeyCueOptions keyCueOptions(const KeyTextOptions& options) {
  formats::KeyCueOptions cues;
  cues.gap = options.gap;
  cues.hold = options.hold;
  cues.onlyShortcuts = options.onlyShortcuts;
  cues.appliesBackspace = options.appliesBackspace;
  cues.redaction = options.redaction;
  if (!options.labels.empty()) cues.labels = readLabels(options.labels);
  return cues;
}

void sayLeftOut(const std::string& file, const std::string& stream, std::uint64_t leftOutCount,
                std::uint64_t count) {
  if (leftOutCount == 0) return;
  say(
      fmt::format("{}: {}: {} of {} left out because of a time that falls, is not finite or is not "
                  "from 0 to 100 hours",
                  file, stream, leftOutCount, text::counted(count, "record")));
}

}  // namespace voxa
