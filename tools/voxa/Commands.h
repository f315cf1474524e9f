// The commands of the program. Each writes its result to standard output, or throws Failure or an
// exception of the module.
#pragma once

#include <boost/rational.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/formats/Captions.h"
#include "tools/formats/RecordFields.h"
#include "tools/series/Redact.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/Sources.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

struct StreamsOptions {
  std::string file;
  Format format = Format::Table;
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Lists the indexed streams of a recording.
void listStreams(const StreamsOptions& options);

struct FileOptions {
  std::string file;
  Format format = Format::Table;
};

/// Prints the tracks of a recording as the host sees them.
void showStats(const FileOptions& options);

struct InfoOptions {
  SourceOptions sources;
  Format format = Format::Table;
};

/// Shows what each recording holds. Goes on after a file that cannot be read.
void showInfo(const InfoOptions& options);

struct PrivacyOptions {
  SourceOptions sources;
  Format format = Format::Table;
};

/// Shows how much text the streams of each recording hold, and where it looks like a secret, but
/// not the text. Goes on after a file that cannot be read. Throws Failure (SecretsFound) when
/// something looks like a secret.
void showPrivacy(const PrivacyOptions& options);

struct DiffOptions {
  std::string before;
  std::string after;
  std::vector<std::string> types;  ///< "[STREAM=]TYPE"
  bool aligns = false;             ///< compare at the best constant time offset of each stream
  double tolerance = 0;            ///< seconds by which the times of one record may differ
  series::Redaction redaction = series::Redaction::None;
  Format format = Format::Table;
  std::optional<ZRKMetaData::ContainerKind> container;  ///< of both recordings
};

/// Prints the records that were added, removed or changed from one recording to another. Memory
/// holds the records of one stream. Throws Failure (Different) when there is a difference.
void showDiff(const DiffOptions& options);

struct CheckOptions {
  std::string original;  ///< a recording, or a folder of `voxa sidecar`
  std::string edited;
  std::vector<std::string> types;  ///< "[STREAM=]TYPE"
  Format format = Format::Table;
  std::optional<ZRKMetaData::ContainerKind> container;  ///< of files whose extension names none
};

/// Prints whether an edited copy holds each stream of the original, byte for byte. Throws Failure
/// (Lost) when it does not. Memory does not grow with the length of a stream.
void checkCopy(const CheckOptions& options);

struct SidecarOptions {
  std::string file;
  std::string folder;  ///< empty for the name of the file and ".streams"
  bool force = false;  ///< replace files of the same names
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Writes each stream of a recording to a raw file of its own, named by its identifier.
void writeSidecar(const SidecarOptions& options);

struct GraftOptions {
  std::string edited;    ///< the media that is copied
  std::string original;  ///< a recording, or a folder of `voxa sidecar`
  std::string out;
  std::vector<std::string> cuts;   ///< "FROM-TO", in the order of the edited timeline
  std::string editList;            ///< a file in place of `cuts`, empty for none
  std::string shift;               ///< empty for none
  std::string rate;                ///< for times in frames
  std::vector<std::string> types;  ///< "[STREAM=]TYPE", for cuts and shifts
  bool force = false;              ///< replace an existing file
  std::optional<ZRKMetaData::ContainerKind> container;  ///< of files whose extension names none
};

/// Writes a copy of edited media with the streams of the original appended. With cuts or a shift,
/// records are moved to where the edit put them; otherwise streams are copied byte for byte. Memory
/// grows neither with the media nor with the length of a stream.
void graftStreams(const GraftOptions& options);

struct ReportOptions {
  std::string file;
  std::vector<std::string> streams;  ///< empty for all
  std::vector<std::string> types;    ///< "[STREAM=]TYPE"
  TimeOptions times;
  series::Redaction redaction = series::Redaction::None;
  Destination out;
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Writes a recording as one page for a browser.
void writeReport(const ReportOptions& options);

/// Prints the host's slot for each indexed stream.
void showSlots(const FileOptions& options);

struct RecordsOptions {
  std::string file;
  std::string stream;
  std::string type;  ///< empty for the guessed one
  TimeOptions times;
  series::Redaction redaction = series::Redaction::None;
  Format format = Format::Table;
  Destination out;
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Prints the records of one stream as the file has them. In a damaged stream, the records before
/// the damage are printed.
void printRecords(const RecordsOptions& options);

struct LoadOptions {
  std::string file;
  std::string stream;
  std::string type;  ///< empty for the guessed one
  std::string rate;  ///< empty for the rate of the screen track, where `at` is in seconds
  std::string at;    ///< empty for the whole parameter
  std::string from;  ///< empty for all keyframes
  std::string to;    ///< empty for all keyframes
  series::Redaction redaction = series::Redaction::None;
  Format format = Format::Table;
  Destination out;
};

/// Loads one stream through the module, as a host does, and prints its keyframes, its value at one
/// time, or the parameter in the host's own formats.
void loadParameter(const LoadOptions& options);

struct PlotOptions {
  std::string file;
  std::vector<std::string> streams;  ///< empty for all
  std::vector<std::string> types;    ///< "[STREAM=]TYPE"
  TimeOptions times;
  std::string screen;  ///< "WxH", empty for that of the screen track
  series::Redaction redaction = series::Redaction::None;
  std::string out;
  bool force = false;  ///< replace an existing file
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Draws streams over time, and positions and rectangles on the screen, as SVG.
void drawPlot(const PlotOptions& options);

struct HeatMapOptions {
  std::string file;
  std::string stream;              ///< empty for the only one of points
  std::vector<std::string> types;  ///< "[STREAM=]TYPE"
  TimeOptions times;
  std::string screen;       ///< "WxH", empty for that of the screen track
  std::optional<int> cell;  ///< pixels
  std::string out;          ///< its extension decides: .png or .svg
  bool force = false;       ///< replace an existing file
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Draws how long the cursor was in each cell of the screen.
void drawHeatMap(const HeatMapOptions& options);

struct GuessOptions {
  SourceOptions sources;
  bool isList = false;  ///< JSON has a list of files
  Format format = Format::Table;
};

/// Ranks the record types of each stream, with reasons. An unknown type is no failure. Goes on
/// after a file that cannot be read.
void guessTypes(const GuessOptions& options);

struct FramesOptions {
  std::string file;
  std::vector<std::string> streams;  ///< empty for all
  std::vector<std::string> types;    ///< "[STREAM=]TYPE"
  TimeOptions times;                 ///< the rate is required
  series::Redaction redaction = series::Redaction::None;
  std::optional<double> tolerance;  ///< --simplify
  Format format = Format::Csv;
  Destination out;
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Prints one row per video frame: the value that each stream holds at it, as a loaded parameter
/// does. Memory does not grow with the length of a stream.
void printFrames(const FramesOptions& options);

enum class ExportFormat { Csv, Ndjson, Json, Xml, Mlt, FfMetadata, Otio };

enum class ChapterSource { Strings, Pauses };

struct ExportOptions {
  SourceOptions sources;
  TimeOptions times;
  ExportFormat format = ExportFormat::Csv;
  formats::Layout layout = formats::Layout::Long;
  bool isSpreadsheetSafe = false;
  std::optional<double> tolerance;        ///< --simplify
  std::string property;                   ///< of MLT
  std::string field;                      ///< of MLT; empty for all
  std::optional<ChapterSource> chapters;  ///< of ffmetadata
  std::optional<double> gap;              ///< of ffmetadata, seconds
  Destination out;                        ///< a folder for the wide layout
};

/// Writes the streams of recordings for other programs. Memory does not grow with the length of a
/// stream, but with the number of chapters, and of the keys of a stream whose times fall.
void exportRecordings(const ExportOptions& options);

struct ImagesOptions {
  std::string file;
  std::string stream;              ///< empty for the only one of cursor images
  std::vector<std::string> types;  ///< "[STREAM=]TYPE"
  std::string folder;              ///< created if it does not exist
  bool force = false;              ///< replace files of the same names
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Writes every distinct cursor image of a stream to a file of its own, and images.csv with the
/// times at which each is shown.
void extractImages(const ImagesOptions& options);

/// How keystrokes become text.
struct KeyTextOptions {
  double gap = 0.7;   ///< seconds
  double hold = 1.5;  ///< seconds
  bool onlyShortcuts = false;
  bool appliesBackspace = false;
  std::string labels;  ///< a JSON file, empty for none
  series::Redaction redaction = series::Redaction::None;
};

struct CaptionsOptions {
  std::string file;
  std::string stream;              ///< empty for the only one of keystrokes
  std::vector<std::string> types;  ///< "[STREAM=]TYPE"
  TimeOptions times;
  KeyTextOptions keys;
  std::optional<formats::CaptionFormat> format;  ///< absent: as the extension of `out` says
  Destination out;
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Writes keystrokes as captions. Memory does not grow with the length of a stream.
void writeCaptions(const CaptionsOptions& options);

struct OverlayOptions {
  std::string file;
  std::string cursor;              ///< empty for the only stream of points, "none" for no cursor
  std::string keysStream;          ///< empty for the only stream of keystrokes, "none" for no keys
  std::string clicks;              ///< the stream of pressed buttons, empty or "none" for no clicks
  std::vector<std::string> types;  ///< "[STREAM=]TYPE"
  TimeOptions times;
  KeyTextOptions keys;
  std::string video;                ///< the media file whose size is used
  std::string screen;               ///< "WxH"; with neither, that of the recording's screen track
  std::optional<double> tolerance;  ///< --simplify, of the cursor
  Destination out;
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Writes a script of Advanced SubStation Alpha that draws the cursor and the keys on a video.
void writeOverlay(const OverlayOptions& options);

struct SalvageOptions {
  std::string file;
  std::string out;     ///< ends in ".voxa"
  bool force = false;  ///< replace existing files
  Format format = Format::Table;
  std::optional<ZRKMetaData::ContainerKind> container;
};

/// Recovers the streams of a damaged recording: the certain ones to `out`, the doubtful ones to
/// OUT.doubtful.voxa, and lists their byte ranges. A file without streams is not written. Memory
/// does not grow with the length of a stream. Throws Failure (DamagedData) when a stream is
/// doubtful.
void salvageRecording(const SalvageOptions& options);

struct SampleOptions {
  std::string out;
  double seconds = 10;
  std::string onto;  ///< empty for a file without media
  std::string type;  ///< empty for all types
  std::uint64_t seed = 1;
  bool force = false;  ///< replace an existing file
};

/// Writes a synthetic recording. No partial file is left after an error.
void writeSample(const SampleOptions& options);

}  // namespace voxa
