#include "tools/voxa/Program.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <iostream>
#include <map>
#include <new>
#include <utility>

#include "tools/host/ParameterTypes.h"
#include "tools/series/Containers.h"
#include "tools/series/RecordTypes.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Extension.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Suggestion.h"
#include "tools/voxa/Version.h"

namespace voxa {

namespace {

const std::map<std::string, Format>& formats() {
  static const std::map<std::string, Format> names = {{"table", Format::Table},
                                                      {"csv", Format::Csv},
                                                      {"json", Format::Json},
                                                      {"host-xml", Format::HostXml},
                                                      {"host-json", Format::HostJson}};
  return names;
}

const std::map<std::string, formats::CaptionFormat>& captionFormats() {
  static const std::map<std::string, formats::CaptionFormat> names = {
      {"vtt", formats::CaptionFormat::Vtt},
      {"srt", formats::CaptionFormat::Srt},
      {"ass", formats::CaptionFormat::Ass}};
  return names;
}

const std::map<std::string, ZRKMetaData::ContainerKind>& containers() {
  static const auto names = [] {
    std::map<std::string, ZRKMetaData::ContainerKind> kinds;
    for (const auto kind : series::kContainerKinds)
      kinds.emplace(series::containerName(kind), kind);
    return kinds;
  }();
  return names;
}

const std::map<std::string, ExportFormat>& exportFormats() {
  static const std::map<std::string, ExportFormat> names = {
      {"csv", ExportFormat::Csv},   {"ndjson", ExportFormat::Ndjson},
      {"json", ExportFormat::Json}, {"xml", ExportFormat::Xml},
      {"mlt", ExportFormat::Mlt},   {"ffmetadata", ExportFormat::FfMetadata},
      {"otio", ExportFormat::Otio}};
  return names;
}

// The format whose name is the extension of the file, CSV where there is none.
ExportFormat exportFormatOf(const std::string& file) {
  const std::string extension = extensionOf(file);
  const auto found =
      extension.empty() ? exportFormats().end() : exportFormats().find(extension.substr(1));
  return found == exportFormats().end() ? ExportFormat::Csv : found->second;
}

const std::map<std::string, formats::Layout>& layouts() {
  static const std::map<std::string, formats::Layout> names = {{"long", formats::Layout::Long},
                                                               {"wide", formats::Layout::Wide}};
  return names;
}

const std::map<std::string, ChapterSource>& chapterSources() {
  static const std::map<std::string, ChapterSource> names = {{"strings", ChapterSource::Strings},
                                                             {"pauses", ChapterSource::Pauses}};
  return names;
}

std::vector<std::string> recordTypeNames() {
  std::vector<std::string> names;
  names.reserve(series::kRecordTypeInfos.size());
  for (const auto& info : series::kRecordTypeInfos) names.emplace_back(info.name);
  return names;
}

/// The command line. Parsing fills in the options of one command and runs it.
class CommandLine {
 public:
  CommandLine() : m_app("Prints the screen metadata of recordings, and writes sample recordings.") {
    m_app.name("voxa");
    m_app.set_version_flag("--version", kVersion);
    m_app.require_subcommand(1);
    m_app.allow_windows_style_options(false);  // "/a/b" is a file name there too
    m_app.footer(
        "voxa help COMMAND shows the options of a command.\nExample: voxa streams take1.voxa");
    addInfo();
    addPrivacy();
    addStreams();
    addRecords();
    addLoad();
    addStats();
    addSlots();
    addPlot();
    addHeatMap();
    addGuess();
    addFrames();
    addExport();
    addCaptions();
    addOverlay();
    addImages();
    addSalvage();
    addSample();
    addReport();
    addDiff();
    addCheck();
    addSidecar();
    addGraft();
    for (CLI::App* const command : m_app.get_subcommands({})) {
      command->add_flag_callback("-q,--quiet", beQuiet,
                                 "Print neither progress nor notes on standard error");
      refuseEmptyValues(*command);
    }
  }

  void run(std::vector<std::string> arguments) {
    if (arguments.empty()) arguments = {"--help"};
    if (arguments.front() == "help") {
      arguments.erase(arguments.begin());
      arguments.insert(arguments.end(), "--help");
    }
    const std::string& command = arguments.front();
    if (!isOption(command) && commandNamed(command) == nullptr) {
      wrongUse("unknown command '" + command + "'" + suggestion(command, commands()), m_app);
    }
    refuseSeparateValues(arguments);
    parse(arguments);
  }

 private:
  // The value of these flags stands behind "=", so that FILE may follow the flag. A word behind one
  // that is a value was meant for it.
  void refuseSeparateValues(const std::vector<std::string>& arguments) const {
    for (std::size_t index = 1; index < arguments.size(); ++index) {
      const std::string& flag = arguments[index - 1];
      const std::string& word = arguments[index];
      if (flag == "--") return;
      const bool isValue = (flag == "--redact" && series::redactionNamed(word)) ||
                           (flag == "--simplify" && numberOf(word));
      if (!isValue) continue;
      const CLI::App* const command = commandNamed(arguments.front());
      wrongUse(fmt::format("{0} {1}: write {0}={1}, or put a file or stream of this name in front "
                           "of the option",
                           flag, word),
               command == nullptr ? m_app : *command);
    }
  }

  void parse(const std::vector<std::string>& arguments) {
    try {
      // CLI11 takes them in reverse order.
      m_app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
      print(m_app.help());
    } catch (const CLI::CallForVersion&) {
      print(m_app.version() + "\n");
    } catch (const CLI::ParseError& error) {
      const CLI::App* const command = commandNamed(arguments.front());
      const CLI::App& used = command == nullptr ? m_app : *command;
      const std::string option = unknownOption(used, arguments);
      if (option.empty()) wrongUse(error.what(), used);
      wrongUse("unknown option " + option + suggestion(option, optionsOf(used)), used);
    }
  }

  static void print(const std::string& text) {
    Output out;
    out.write(text);
    out.flush();
  }

  [[noreturn]] void wrongUse(const std::string& message, const CLI::App& used) const {
    const std::string command = &used == &m_app ? "" : used.get_name() + " ";
    throw Failure(Status::WrongUse, message + " (see voxa " + command + "--help)");
  }

  static bool isOption(const std::string& argument) {
    return argument.size() > 1 && argument[0] == '-' &&
           std::isdigit(static_cast<unsigned char>(argument[1])) == 0;
  }

  // Returns the first option that the command does not have, or an empty string.
  static std::string unknownOption(const CLI::App& command,
                                   const std::vector<std::string>& arguments) {
    for (std::size_t index = 0; index < arguments.size(); ++index) {
      if (arguments[index] == "--") break;
      if (!isOption(arguments[index])) continue;
      const auto equals = arguments[index].find('=');
      std::string name = arguments[index].substr(0, equals);
      const CLI::Option* const option = command.get_option_no_throw(name);
      if (option == nullptr) return name;
      const bool isValueNext = equals == std::string::npos && option->get_items_expected_max() > 0;
      if (isValueNext) ++index;
    }
    return {};
  }

  // Null when there is none.
  const CLI::App* commandNamed(const std::string& name) const {
    for (const CLI::App* command : m_app.get_subcommands(nullptr)) {
      if (command->get_name() == name) return command;
    }
    return nullptr;
  }

  std::vector<std::string> commands() const {
    std::vector<std::string> names = {"help"};
    for (const CLI::App* command : m_app.get_subcommands(nullptr)) {
      names.push_back(command->get_name());
    }
    return names;
  }

  static std::vector<std::string> optionsOf(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return names;
  }

  // `cost` says what memory holds, of a command whose memory grows with the streams.
  CLI::App* add(const char* name, const char* description, const char* example,
                const std::string& cost = {}) {
    CLI::App* const command = m_app.add_subcommand(name, description);
    command->footer((cost.empty() ? cost : cost + "\n") + "Example: " + example);
    return command;
  }

  /// An option whose values are the names in a map.
  template <class Choice, class Value>
  static void addChoice(CLI::App* command, const std::string& option,
                        const std::map<std::string, Choice>& choices, Value& value,
                        const std::string& description) {
    command
        ->add_option_function<std::string>(
            option, [&choices, &value](const std::string& name) { value = choices.at(name); },
            description)
        ->check(CLI::IsMember(choices));
  }

  // A flag with an optional value, because an option would take the FILE behind it for its value.
  void addSimplify(CLI::App* command, std::optional<double>& tolerance,
                   const std::string& description) {
    command->add_flag("--simplify", m_simplify, description)
        ->option_text("[=TOL]")
        ->check(CLI::Validator(
            [](const std::string& text) { return text == kNoValue ? "" : checkNumber(text); }, ""))
        ->each([&tolerance](const std::string& text) {
          tolerance = text == kNoValue ? 0 : numberOf(text);
        });
  }

  template <class Options>
  static void addFormat(CLI::App* command, Options& options,
                        const std::vector<std::string>& names) {
    command
        ->add_option_function<std::string>(
            "--format",
            [&options](const std::string& name) { options.format = formats().at(name); },
            "Output format (default: table)")
        ->check(CLI::IsMember(names));
  }

  static constexpr const char* kOtherExtensions =
      "Read files whose extension names no container as this one";

  // For a command that reads several files, `what` tells which.
  template <class Options>
  static void addContainer(
      CLI::App* command, Options& options,
      const char* what = "Read the file as this container, whatever its extension") {
    command
        ->add_option_function<std::string>(
            "--container",
            [&options](const std::string& name) { options.container = containers().at(name); },
            what)
        ->transform(CLI::IsMember(containers(), CLI::ignore_case));
  }

  static void addDestination(CLI::App* command, Destination& out) {
    command->add_option("-o,--out", out.file, "Write to this file (default: standard output, -)")
        ->type_name("FILE");
    command->add_flag("--force", out.force, "Replace the file if it exists");
  }

  static void addTypes(CLI::App* command, std::vector<std::string>& types) {
    command
        ->add_option(
            "--as", types,
            "Record type of a stream, or of all: [STREAM=]TYPE; repeatable (default: guess)")
        ->type_name("[STREAM=]TYPE")
        ->allow_extra_args(false);  // one per option, so that STREAM may follow
  }

  // The streams of a command that takes several files.
  static CLI::Option* addStreamList(CLI::App* command, SourceOptions& sources) {
    return command
        ->add_option("--streams", sources.streams,
                     "Identifiers, or their two-digit keys, or all: KEY[,KEY...] (default: all)")
        ->type_name("KEY[,KEY...]")
        ->delimiter(',')
        ->check(CLI::Validator(
            [](const std::string& text) {
              const bool isKnown = text == kAllStreams || isStreamText(text);
              return isKnown ? ""
                             : text + " is neither a 36-character identifier nor a two-digit key";
            },
            ""))
        ->allow_extra_args(false);  // one list, so that FILE may follow
  }

  static void addTimes(CLI::App* command, TimeOptions& times) {
    command->add_option("--from", times.from, "Leave out records before this time")
        ->type_name("TIME");
    command
        ->add_option("--to", times.to,
                     std::string("Leave out records from this time on: ") + kTimeForms)
        ->type_name("TIME");
    command->add_option("--rate", times.rate, "Frames per second, for times in frames: N or N/D");
  }

  void addRedact(CLI::App* command) {
    command
        ->add_flag("--redact", m_redact,
                   "Mask typed characters and texts: letters become x, digits 0 and, with all (the "
                   "default), everything else *")
        ->check(CLI::Validator(
            [](const std::string& name) {
              const bool isKnown = name == kNoValue || series::redactionNamed(name);
              return isKnown ? "" : name + " is not letters, digits or all";
            },
            ""))
        ->option_text("[=letters|digits|all]");
  }

  // Of the command that was parsed.
  series::Redaction redaction() const {
    if (m_redact == kNoValue) return series::Redaction::All;
    return series::redactionNamed(m_redact).value_or(series::Redaction::None);
  }

  static std::optional<double> numberOf(const std::string& text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    const bool isNumber = error == std::errc() && rest == end && std::isfinite(number);
    return isNumber && number >= 0 ? std::optional(number) : std::nullopt;
  }

  static std::string checkNumber(const std::string& text) {
    return numberOf(text) ? "" : text + " is not a number of at least 0";
  }

  // CLI11's range check accepts NaN.
  static std::string checkLength(const std::string& text) {
    constexpr double kMaxSeconds = 1e6;
    double seconds = 0;
    const bool isInRange =
        CLI::detail::lexical_cast(text, seconds) && seconds >= 0 && seconds <= kMaxSeconds;
    return isInRange ? "" : text + " is not a number of seconds from 0 to 1000000";
  }

  // CLI11 converts negative numbers to large ones.
  static std::uint64_t parseSeed(const std::string& text) {
    std::uint64_t seed = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, seed);
    if (error != std::errc() || rest != end) {
      throw CLI::ValidationError("--seed", text + " is not a whole number from 0 to 2^64 - 1");
    }
    return seed;
  }

  // To a command an empty text means that the option was not given. Scripts pass one for a variable
  // that is not set.
  static void refuseEmptyValues(CLI::App& command) {
    const CLI::Validator isGiven(
        [](const std::string& value) {
          return value.empty() ? std::string("the value is empty") : std::string();
        },
        "");
    // As a transformation it comes before the other checks, whose messages would show no value.
    for (CLI::Option* const option : command.get_options()) option->transform(isGiven);
  }

  void addInfo() {
    CLI::App* const command = add("info", "Show what recordings hold.", "voxa info take1.voxa");
    command->add_option("FILE", m_info.sources.files, "The recordings")->required();
    addStreamList(command, m_info.sources);
    addTypes(command, m_info.sources.types);
    addFormat(command, m_info, {"table", "json"});
    addContainer(command, m_info.sources);
    command->callback([this] { showInfo(m_info); });
  }

  void addPrivacy() {
    CLI::App* const command =
        add("privacy", "Show which streams hold typed text, and what looks like a secret.",
            "voxa privacy take1.voxa");
    command->add_option("FILE", m_privacy.sources.files, "The recordings")->required();
    addStreamList(command, m_privacy.sources);
    addTypes(command, m_privacy.sources.types);
    addFormat(command, m_privacy, {"table", "json"});
    addContainer(command, m_privacy.sources);
    command->callback([this] { showPrivacy(m_privacy); });
  }

  void addStreams() {
    CLI::App* const command = add("streams", "List the metadata streams of a recording.",
                                  "voxa streams take1.voxa --format json");
    command->add_option("FILE", m_streams.file, "The recording")->required();
    addFormat(command, m_streams, {"table", "json"});
    addContainer(command, m_streams);
    command->callback([this] { listStreams(m_streams); });
  }

  void addRecords() {
    CLI::App* const command = add("records", "Print the records of a stream.",
                                  "voxa records take1.voxa F0 --format csv -o take1.csv");
    command->add_option("FILE", m_records.file, "The recording")->required();
    command->add_option("STREAM", m_records.stream, "Identifier, or its two-digit key")->required();
    command->add_option("--as", m_records.type, "Record type (default: guess)")
        ->check(CLI::IsMember(recordTypeNames()));
    addTimes(command, m_records.times);
    addFormat(command, m_records, {"table", "csv", "json"});
    addDestination(command, m_records.out);
    addContainer(command, m_records);
    addRedact(command);
    command->callback([this] {
      m_records.redaction = redaction();
      printRecords(m_records);
    });
  }

  void addLoad() {
    CLI::App* const command = add("load", "Load a stream as keyframes on the frames of a project.",
                                  "voxa load take1.voxa F0 --as points --rate 30000/1001 --at 2.5s",
                                  "Memory holds the keyframes of the stream.");
    command->add_option("FILE", m_load.file, "The recording")->required();
    command->add_option("STREAM", m_load.stream, "Identifier, or its two-digit key")->required();
    command->add_option("--as", m_load.type, "Type of the values (default: guess)")
        ->check(CLI::IsMember(hosting::parameterTypeNames()));
    command->add_option("--rate", m_load.rate,
                        "Edit rate in frames per second: N or N/D (default with --at in seconds: "
                        "the rate of the screen track)");
    command->add_option("--at", m_load.at, "Print only the value at a frame (75) or a time (2.5s)");
    command->add_option("--from", m_load.from, "Leave out keyframes before this time")
        ->type_name("TIME");
    command
        ->add_option("--to", m_load.to,
                     std::string("Leave out keyframes from this time on: ") + kTimeForms)
        ->type_name("TIME");
    addFormat(command, m_load, {"table", "csv", "json", "host-xml", "host-json"});
    addDestination(command, m_load.out);
    addRedact(command);
    command->callback([this] {
      m_load.redaction = redaction();
      loadParameter(m_load);
    });
  }

  void addStats() {
    CLI::App* const command = add("stats", "Show the tracks of a recording as its host sees them.",
                                  "voxa stats take1.voxa --format json");
    command->add_option("FILE", m_stats.file, "The recording")->required();
    addFormat(command, m_stats, {"table", "json"});
    command->callback([this] { showStats(m_stats); });
  }

  void addSlots() {
    CLI::App* const command =
        add("slots", "Show the host's slot for each stream.", "voxa slots take1.voxa");
    command->add_option("FILE", m_slots.file, "The recording")->required();
    addFormat(command, m_slots, {"table", "json"});
    command->callback([this] { showSlots(m_slots); });
  }

  // What both commands that draw take.
  template <class Options>
  static void addPicture(CLI::App* command, Options& options, const char* out) {
    command->add_option("-o,--out", options.out, out)->required()->type_name("FILE");
    addTypes(command, options.types);
    addTimes(command, options.times);
    command
        ->add_option("--screen", options.screen,
                     "Size of the screen in pixels (default: that of the screen track)")
        ->type_name("WxH");
    command->add_flag("--force", options.force, "Replace the picture if it exists");
    addContainer(command, options);
  }

  void addPlot() {
    CLI::App* const command =
        add("plot", "Draw streams over time, and positions and rectangles on the screen, as SVG.",
            "voxa plot take1.voxa F0 F3 -o take1.svg");
    command->add_option("FILE", m_plot.file, "The recording")->required();
    command->add_option("STREAM", m_plot.streams,
                        "Identifiers, or their two-digit keys (default: all)");
    addPicture(command, m_plot, "The picture, or - for standard output");
    addRedact(command);
    command->callback([this] {
      m_plot.redaction = redaction();
      drawPlot(m_plot);
    });
  }

  void addHeatMap() {
    CLI::App* const command =
        add("heatmap", "Draw how long the cursor was in each part of the screen.",
            "voxa heatmap take1.voxa F0 -o take1.png");
    command->add_option("FILE", m_heatMap.file, "The recording")->required();
    command->add_option("STREAM", m_heatMap.stream,
                        "Identifier, or its two-digit key (default: the only stream of points)");
    addPicture(command, m_heatMap, "The picture, .png or .svg, or - for SVG on standard output");
    command->add_option("--cell", m_heatMap.cell, "Side of a cell (default: about 120 cells fit)")
        ->type_name("PX")
        ->check(CLI::Range(1, 1'000'000));
    command->callback([this] { drawHeatMap(m_heatMap); });
  }

  void addGuess() {
    CLI::App* const command = add("guess", "Guess the record type of each stream, with reasons.",
                                  "voxa guess take1.voxa F0");
    SourceOptions& sources = m_guess.sources;
    command->add_option("FILE", m_guessFile, "The recording")->required();
    command->add_option("STREAM", m_guessRest,
                        "Identifiers, or their two-digit keys (default: all); with --streams, "
                        "further recordings");
    const CLI::Option* const streams = addStreamList(command, sources);
    addFormat(command, m_guess, {"table", "json"});
    addContainer(command, sources);
    command->callback([this, &sources, streams] {
      m_guess.isList = streams->count() != 0;
      sources.files = {m_guessFile};
      auto& target = m_guess.isList ? sources.files : sources.streams;
      target.insert(target.end(), m_guessRest.begin(), m_guessRest.end());
      guessTypes(m_guess);
    });
  }

  void addFrames() {
    CLI::App* const command = add("frames", "Print the value of each stream at each video frame.",
                                  "voxa frames take1.voxa F0 F6 --rate 30000/1001 -o take1.csv");
    command->add_option("FILE", m_frames.file, "The recording")->required();
    command->add_option("STREAM", m_frames.streams,
                        "Identifiers, or their two-digit keys (default: all)");
    command->add_option("--rate", m_frames.times.rate, "Frames per second: N or N/D")->required();
    command->add_option("--from", m_frames.times.from, "First time (default: frame 0)")
        ->type_name("TIME");
    command
        ->add_option("--to", m_frames.times.to,
                     "Leave out frames from this time on (default: after the last record): " +
                         std::string(kTimeForms))
        ->type_name("TIME");
    addTypes(command, m_frames.types);
    addSimplify(command, m_frames.tolerance,
                "Leave out frames that change nothing, or no number by more than TOL");
    command
        ->add_option_function<std::string>(
            "--format", [this](const std::string& name) { m_frames.format = formats().at(name); },
            "Output format (default: csv)")
        ->check(CLI::IsMember({"csv", "json"}));
    addDestination(command, m_frames.out);
    addContainer(command, m_frames);
    addRedact(command);
    command->callback([this] {
      m_frames.redaction = redaction();
      printFrames(m_frames);
    });
  }

  void addExport() {
    CLI::App* const command =
        add("export", "Write streams for spreadsheets, scripts and video editors.",
            "voxa export take1.voxa take2.mp4 --format ndjson -o takes.ndjson");
    SourceOptions& sources = m_export.sources;
    command->add_option("FILE", sources.files, "The recordings")->required();
    addStreamList(command, sources);
    addTypes(command, sources.types);
    addTimes(command, m_export.times);
    addChoice(command, "--format", exportFormats(), m_exportFormat,
              "Output format (default: by the extension of the file, or csv)");
    addChoice(command, "--layout", layouts(), m_export.layout,
              "One table for all streams, or a file per stream in the folder OUT (default: long)");
    command->add_flag("--spreadsheet-safe", m_export.isSpreadsheetSafe,
                      "Write texts in CSV so that no spreadsheet takes them for formulas");
    addSimplify(command, m_export.tolerance,
                "Drop records that change nothing, or no number by more than TOL");
    command->add_option("--property", m_export.property, "Name of the animated property, for mlt")
        ->type_name("NAME");
    command->add_option("--field", m_export.field, "Only this field of the records, for mlt")
        ->type_name("NAME");
    addChoice(command, "--chapters", chapterSources(), m_export.chapters,
              "A chapter per text, or between pauses, for ffmetadata (default: strings)");
    command
        ->add_option_function<std::string>(
            "--gap",
            [this](const std::string& text) {
              m_export.gap = numberOf(text);
              if (m_export.gap == 0) throw CLI::ValidationError("--gap", "must be above 0");
            },
            "Seconds without a record that are a pause (default: 5)")
        ->check(CLI::Validator(checkNumber, ""))
        ->type_name("S");
    addDestination(command, m_export.out);
    addContainer(command, sources);
    addRedact(command);
    command->callback([this] {
      m_export.sources.redaction = redaction();
      m_export.format = m_exportFormat.value_or(exportFormatOf(m_export.out.file));
      exportRecordings(m_export);
    });
  }

  static void addKeyText(CLI::App* command, KeyTextOptions& keys) {
    const CLI::Validator isLength(checkLength, "SECONDS");
    command->add_option("--gap", keys.gap, "Longest pause between keys of one cue (default 0.7)")
        ->check(isLength);
    command
        ->add_option("--hold", keys.hold,
                     "How long a cue stays after its last key, unless the next one begins "
                     "(default 1.5)")
        ->check(isLength);
    command
        ->add_option("--labels", keys.labels,
                     "JSON file with texts of character codes and flag bits")
        ->type_name("FILE");
    command->add_flag("--shortcuts-only", keys.onlyShortcuts,
                      "Leave out keys without a flag that is shown");
    command->add_flag("--apply-backspace", keys.appliesBackspace,
                      "Let Backspace remove the character before it from the cue");
  }

  void addCaptions() {
    CLI::App* const command = add("captions", "Write keystrokes as captions.",
                                  "voxa captions take1.voxa F3 -o take1.srt");
    command->add_option("FILE", m_captions.file, "The recording")->required();
    command->add_option("STREAM", m_captions.stream,
                        "Identifier, or its two-digit key (default: the only one of keystrokes)");
    command
        ->add_option_function<std::string>(
            "--format",
            [this](const std::string& name) { m_captions.format = captionFormats().at(name); },
            "Output format (default: by the extension of the file, or vtt)")
        ->check(CLI::IsMember({"vtt", "srt", "ass"}));
    addKeyText(command, m_captions.keys);
    addTypes(command, m_captions.types);
    addTimes(command, m_captions.times);
    addDestination(command, m_captions.out);
    addContainer(command, m_captions);
    addRedact(command);
    command->callback([this] {
      m_captions.keys.redaction = redaction();
      writeCaptions(m_captions);
    });
  }

  void addOverlay() {
    CLI::App* const command = add(
        "overlay", "Write the cursor and the keys as an ASS script that ffmpeg draws on a video.",
        "voxa overlay take1.mp4 --clicks F6 --rate 30 -o take1.ass");
    command->add_option("FILE", m_overlay.file, "The recording")->required();
    command
        ->add_option("--cursor", m_overlay.cursor,
                     "Stream of positions, or none (default: the only one of points)")
        ->type_name("STREAM");
    command
        ->add_option("--keys", m_overlay.keysStream,
                     "Stream of keystrokes, or none (default: the only one of keystrokes)")
        ->type_name("STREAM");
    command
        ->add_option("--clicks", m_overlay.clicks,
                     "Stream of pressed buttons: a ring while one is down (default: none)")
        ->type_name("STREAM");
    CLI::Option* const video =
        command->add_option("--video", m_overlay.video, "Media file that states the size")
            ->type_name("MEDIA");
    command
        ->add_option("--screen", m_overlay.screen,
                     "Size of the screen in pixels (default: that of the screen track)")
        ->type_name("WxH")
        ->excludes(video);
    addKeyText(command, m_overlay.keys);
    addSimplify(command, m_overlay.tolerance,
                "Drop positions that change nothing, or no coordinate by more than TOL");
    addTypes(command, m_overlay.types);
    command->add_option("--from", m_overlay.times.from, "Leave out records before this time")
        ->type_name("TIME");
    command
        ->add_option("--to", m_overlay.times.to,
                     std::string("Leave out records from this time on: ") + kTimeForms)
        ->type_name("TIME");
    command->add_option("--rate", m_overlay.times.rate,
                        "Frames per second of the video, N or N/D: show each record on the frame "
                        "that a loaded parameter has it on");
    command->add_option("-o,--out", m_overlay.out.file, "The script, or - for standard output")
        ->required()
        ->type_name("FILE");
    command->add_flag("--force", m_overlay.out.force, "Replace the script if it exists");
    addContainer(command, m_overlay);
    addRedact(command);
    command->callback([this] {
      m_overlay.keys.redaction = redaction();
      writeOverlay(m_overlay);
    });
  }

  void addImages() {
    CLI::App* const command =
        add("images", "Write the cursor images of a stream to files, and when each is shown.",
            "voxa images take1.voxa F1 -o cursors",
            "Memory holds the name and the digest of each distinct image.");
    command->add_option("FILE", m_images.file, "The recording")->required();
    command->add_option("STREAM", m_images.stream,
                        "Identifier, or its two-digit key (default: the only one of cursor "
                        "images)");
    command->add_option("-o,--out", m_images.folder, "The folder, which must be new or empty")
        ->required()
        ->type_name("FOLDER");
    addTypes(command, m_images.types);
    command->add_flag("--force", m_images.force, "Replace files of the same names in the folder");
    addContainer(command, m_images);
    command->callback([this] { extractImages(m_images); });
  }

  void addSalvage() {
    CLI::App* const command = add("salvage", "Recover the streams of a damaged or cut recording.",
                                  "voxa salvage take1.mp4 -o saved.voxa");
    command->add_option("FILE", m_salvage.file, "The damaged recording")->required();
    command
        ->add_option("-o,--out", m_salvage.out,
                     "The new recording, .voxa; doubtful streams go to OUT.doubtful.voxa")
        ->required()
        ->type_name("FILE");
    command->add_flag("--force", m_salvage.force, "Replace the files if they exist");
    addFormat(command, m_salvage, {"table", "json"});
    addContainer(command, m_salvage);
    command->callback([this] { salvageRecording(m_salvage); });
  }

  void addSample() {
    CLI::App* const command = add("sample", "Write a synthetic recording.",
                                  "voxa sample take1.mp4 --onto clip.mp4 --seconds 30");
    command->add_option("OUT", m_sample.out, "The new file: .voxa .mp4 .mov .avi .wav or .dat")
        ->required();
    command->add_option("--seconds", m_sample.seconds, "Length (default 10)")
        ->check(CLI::Validator(checkLength, "NUMBER"));
    command->add_option("--onto", m_sample.onto, "A media file to copy and append to");
    const CLI::IsMember isType(recordTypeNames());
    command->add_option("--type", m_sample.type, "Only the stream of this type")->check(isType);
    command->add_option("--stream", m_sample.type)->check(isType)->group("");  // former name
    command
        ->add_option_function<std::string>(
            "--seed", [this](const std::string& text) { m_sample.seed = parseSeed(text); },
            "Same seed, same bytes (default 1)")
        ->type_name("NUMBER");
    command->add_flag("--force", m_sample.force, "Replace OUT if it exists");
    command->callback([this] { writeSample(m_sample); });
  }

  void addReport() {
    CLI::App* const command =
        add("report", "Write a recording as one page for a browser, which works offline.",
            "voxa report take1.voxa -o take1.html", "Memory holds the records of one stream.");
    command->add_option("FILE", m_report.file, "The recording")->required();
    command->add_option("STREAM", m_report.streams,
                        "Identifiers, or their two-digit keys (default: all)");
    command->add_option("-o,--out", m_report.out.file, "The page, or - for standard output")
        ->required()
        ->type_name("FILE");
    addTypes(command, m_report.types);
    addTimes(command, m_report.times);
    command->add_flag("--force", m_report.out.force, "Replace the page if it exists");
    addRedact(command);
    addContainer(command, m_report);
    command->callback([this] {
      m_report.redaction = redaction();
      writeReport(m_report);
    });
  }

  void addDiff() {
    CLI::App* const command =
        add("diff", "Compare the records of two recordings.", "voxa diff take1.voxa take2.voxa",
            "Memory holds the records of one stream of both files.");
    command->add_option("BEFORE", m_diff.before, "The first recording")->required();
    command->add_option("AFTER", m_diff.after, "The second recording")->required();
    addTypes(command, m_diff.types);
    command->add_flag("--align", m_diff.aligns,
                      "Compare each stream at its best constant time offset");
    command
        ->add_option("--tolerance", m_diff.tolerance,
                     "Seconds by which the times of one record may differ (default 0)")
        ->check(CLI::Validator(checkLength, "NUMBER"));
    addRedact(command);
    addFormat(command, m_diff, {"table", "json"});
    addContainer(command, m_diff);
    command->callback([this] {
      m_diff.redaction = redaction();
      showDiff(m_diff);
    });
  }

  void addCheck() {
    CLI::App* const command =
        add("check", "Check that an edited copy still holds every stream of a recording.",
            "voxa check take1.voxa edited.mp4");
    command->add_option("ORIGINAL", m_check.original, "The recording, or a folder of voxa sidecar")
        ->required();
    command->add_option("EDITED", m_check.edited, "The edited copy")->required();
    addTypes(command, m_check.types);
    addContainer(command, m_check, kOtherExtensions);
    addFormat(command, m_check, {"table", "json"});
    command->callback([this] { checkCopy(m_check); });
  }

  void addSidecar() {
    CLI::App* const command =
        add("sidecar", "Write each stream of a recording to a file of its own, to keep it.",
            "voxa sidecar take1.voxa");
    command->add_option("FILE", m_sidecar.file, "The recording")->required();
    command
        ->add_option("-o,--out", m_sidecar.folder,
                     "The folder, which must be new or empty (default: FILE.streams)")
        ->type_name("FOLDER");
    command->add_flag("--force", m_sidecar.force, "Replace files of the same names in the folder");
    addContainer(command, m_sidecar);
    command->callback([this] { writeSidecar(m_sidecar); });
  }

  void addGraft() {
    CLI::App* const command =
        add("graft", "Append the streams of a recording to an edited copy that lost them.",
            "voxa graft edited.mp4 --from take1.voxa --cut 5-20 --cut 31.5-40 -o new.mp4");
    command->add_option("EDITED", m_graft.edited, "The edited copy, which is only read")
        ->required();
    command->add_option("--from", m_graft.original, "The recording, or a folder of voxa sidecar")
        ->required()
        ->type_name("ORIGINAL");
    command->add_option("-o,--out", m_graft.out, "The new file: .voxa .mp4 .mov .avi or .wav")
        ->required()
        ->type_name("NEW");
    CLI::Option* const cuts =
        command
            ->add_option("--cut", m_graft.cuts,
                         "A part of the recording that the edit kept, up to TO or to the end; "
                         "repeatable, in the order of the edit")
            ->type_name("FROM-[TO]")
            ->allow_extra_args(false);
    command
        ->add_option("--edl", m_graft.editList,
                     "Read the cuts from an FFmpeg concat list, a CMX 3600 EDL or an OTIO file")
        ->type_name("LIST")
        ->excludes(cuts);
    command->add_option("--shift", m_graft.shift, "Seconds by which all records move")
        ->type_name("TIME");
    command->add_option("--rate", m_graft.rate, "Frames per second, for times in frames: N or N/D");
    addTypes(command, m_graft.types);
    addContainer(command, m_graft, kOtherExtensions);
    command->add_flag("--force", m_graft.force, "Replace NEW if it exists");
    command->callback([this] { graftStreams(m_graft); });
  }

  static constexpr const char* kTimeForms =
      "12.5, [HH:]MM:SS[.mmm] (12:30 is 12 minutes 30 seconds), 1001/30 or 75f";
  CLI::App m_app;
  static constexpr const char* kNoValue = "true";  // CLI11's word for a flag alone
  std::string m_redact;                            // the value of --redact, empty without it
  StreamsOptions m_streams;
  RecordsOptions m_records;
  LoadOptions m_load;
  FileOptions m_stats;
  FileOptions m_slots;
  PlotOptions m_plot;
  HeatMapOptions m_heatMap;
  GuessOptions m_guess;
  std::string m_guessFile;
  std::vector<std::string> m_guessRest;  // streams or files
  FramesOptions m_frames;
  ExportOptions m_export;
  std::optional<ExportFormat> m_exportFormat;
  std::string m_simplify;  // the value of --simplify, which its option reads
  CaptionsOptions m_captions;
  OverlayOptions m_overlay;
  ImagesOptions m_images;
  SalvageOptions m_salvage;
  SampleOptions m_sample;
  InfoOptions m_info;
  PrivacyOptions m_privacy;
  DiffOptions m_diff;
  CheckOptions m_check;
  SidecarOptions m_sidecar;
  GraftOptions m_graft;
  ReportOptions m_report;
};

int fail(Status status, const std::string& message) {
  if (!message.empty()) sayError(message);
  return static_cast<int>(status);
}

}  // namespace

int run(std::vector<std::string> arguments) {
  // A scan may write a million messages: unsynchronised streams buffer them.
  std::ios::sync_with_stdio(false);
  const EscapedErrors escaped;
  try {
    CommandLine().run(std::move(arguments));
    return static_cast<int>(Status::Done);
  } catch (const Failure& failure) {
    return fail(failure.status(), failure.what());
  } catch (const std::bad_alloc&) {
    return fail(Status::Failed, "out of memory");
  } catch (const std::exception& error) {
    return fail(Status::Failed, error.what());
  }
}

}  // namespace voxa
