#include "tools/formats/Captions.h"

#include <string>
#include <utility>

#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Extension.h"
#include "tools/voxa/KeyCaptions.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using formats::CaptionFormat;
using ZRKMetaData::KeyStroke;

namespace {

CaptionFormat formatOf(const CaptionsOptions& options) {
  if (options.format) return *options.format;
  const std::string extension = extensionOf(options.out.file);
  if (extension == ".srt") return CaptionFormat::Srt;
  return extension == ".ass" ? CaptionFormat::Ass : CaptionFormat::Vtt;
}

}  // namespace

void writeCaptions(const CaptionsOptions& options) {
  const series::TimeRange range = timeRangeOf(options.times);
  const CaptionFormat format = formatOf(options);
  formats::KeyCueOptions cueOptions = keyCueOptions(options.keys);
  const auto parser = openRecording(options.file, options.container);
  requireOtherFile(options.out.file, options.file);
  const ChosenStream stream = chooseOfType(*parser, options.file, options.stream, options.types,
                                           series::recordTypeOf<KeyStroke>());
  const Progress progress(options.file, bytesOf(*parser, {stream}));
  Output out(options.out);
  formats::CaptionWriter captions(format, [&out](std::string_view text) { out.write(text); });
  formats::KeyCues cues(std::move(cueOptions), formats::CueClock(formats::ticksPerSecond(format)),
                        [&captions](const formats::Cue& cue) { captions.add(cue); });
  std::string damage;
  try {
    const QuietModule quiet;
    series::forEachRecord<KeyStroke>(
        *parser, stream.id, range,
        [&cues](double seconds, const KeyStroke& key) { cues.add(seconds, key); });
  } catch (const series::DamagedStream& error) {
    damage = error.message(options.file);
  }
  cues.finish();
  out.finish();
  sayLeftOut(options.file, stream.name, cues.leftOutCount(), cues.keyCount());
  if (!damage.empty()) {
    throw Failure(Status::DamagedData, damage + "; the captions show the keys before");
  }
}

}  // namespace voxa
