#include "tools/voxa/Program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <map>

#include "tools/recording/Sample.h"
#include "tools/voxa/Commands.h"
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

const std::map<std::string, ZRKMetaData::ContainerKind>& containers() {
  static const std::map<std::string, ZRKMetaData::ContainerKind> names = {
      {"Riff", ZRKMetaData::Riff}, {"Atoms", ZRKMetaData::Atoms}, {"Raw", ZRKMetaData::Raw}};
  return names;
}

/// The command line as the user types it. Parsing fills in the options of one command and says
/// which it was.
class CommandLine {
 public:
  CommandLine() : m_app("Screen metadata of recordings: see it, extract it, make samples of it.") {
    m_app.name("voxa");
    m_app.set_version_flag("--version", kVersion);
    m_app.require_subcommand(1);
    m_app.allow_windows_style_options(false);  // "/a/b" is a file name there too
    m_app.footer("Example: voxa streams take1.voxa");
    addStreams();
    addRecords();
    addLoad();
    addStats();
    addSlots();
    addSample();
  }

  int run(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
    try {
      m_app.parse(std::move(arguments));
    } catch (const CLI::Success& wish) {  // --help, --version
      return m_app.exit(wish);
    } catch (const CLI::ParseError& error) {
      throw Failure(Status::WrongUse, error.what());
    }
    return 0;
  }

 private:
  CLI::App* add(const char* name, const char* description, const char* example) {
    CLI::App* const command = m_app.add_subcommand(name, description);
    command->footer(std::string("Example: ") + example);
    return command;
  }

  template <class Options>
  static void addFormat(CLI::App* command, Options& options,
                        const std::vector<std::string>& names) {
    command
        ->add_option_function<std::string>(
            "--format",
            [&options](const std::string& name) { options.format = formats().at(name); },
            "Form of the output (default table)")
        ->check(CLI::IsMember(names));
  }

  template <class Options>
  static void addContainer(CLI::App* command, Options& options) {
    command
        ->add_option_function<std::string>(
            "--container",
            [&options](const std::string& name) { options.container = containers().at(name); },
            "Read the file as this container, whatever its name says")
        ->check(CLI::IsMember(containers()));
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
    CLI::App* const command = add("records", "Print the records of a stream as the file has them.",
                                  "voxa records take1.voxa F0 --as points --format csv");
    command->add_option("FILE", m_records.file, "The recording")->required();
    command->add_option("STREAM", m_records.stream, "Identifier, or its two-digit key")->required();
    command->add_option("--as", m_records.type, "Record type")
        ->required()
        ->check(CLI::IsMember(recording::sampleTypes()));
    addFormat(command, m_records, {"table", "csv", "json"});
    addContainer(command, m_records);
    command->callback([this] { printRecords(m_records); });
  }

  void addLoad() {
    CLI::App* const command =
        add("load", "Load a stream as keyframes on a project's frame grid.",
            "voxa load take1.voxa F0 --as points --rate 30000/1001 --at 2.5s");
    std::vector<std::string> types = recording::sampleTypes();
    types.insert(types.end(), {"rect-collections", "opacity"});
    command->add_option("FILE", m_load.file, "The recording")->required();
    command->add_option("STREAM", m_load.stream, "Identifier, or its two-digit key")->required();
    command->add_option("--as", m_load.type, "Type of the values")
        ->required()
        ->check(CLI::IsMember(types));
    command->add_option("--rate", m_load.rate, "Edit rate in frames per second: N or N/D")
        ->required();
    command->add_option("--at", m_load.at,
                        "Only the value at this frame, or at these seconds: 75 or 2.5s");
    addFormat(command, m_load, {"table", "csv", "json", "host-xml", "host-json"});
    command->callback([this] { loadParameter(m_load); });
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
        add("slots", "Show under which slot of the host each stream is filed.",
            "voxa slots take1.voxa");
    command->add_option("FILE", m_slots.file, "The recording")->required();
    addFormat(command, m_slots, {"table", "json"});
    command->callback([this] { showSlots(m_slots); });
  }

  void addSample() {
    CLI::App* const command = add("sample", "Write a made-up recording.",
                                  "voxa sample take1.mp4 --onto clip.mp4 --seconds 30");
    command->add_option("OUT", m_sample.out, "The new file: .voxa .mp4 .mov .avi .wav or .dat")
        ->required();
    command->add_option("--seconds", m_sample.seconds, "Length (default 10)")
        ->check(CLI::Range(0.0, 1e6));
    command->add_option("--onto", m_sample.onto, "A media file to copy and append to");
    command->add_option("--stream", m_sample.stream, "Only the stream of this type")
        ->check(CLI::IsMember(recording::sampleTypes()));
    command->add_option("--seed", m_sample.seed, "Same seed, same bytes (default 1)");
    command->callback([this] { writeSample(m_sample); });
  }

  CLI::App m_app;
  StreamsOptions m_streams;
  RecordsOptions m_records;
  LoadOptions m_load;
  FileOptions m_stats;
  FileOptions m_slots;
  SampleOptions m_sample;
};

int complain(Status status, const std::string& message) {
  std::cerr << "voxa: " << message << std::endl;
  return static_cast<int>(status);
}

}  // namespace

int run(std::vector<std::string> arguments) {
  // What the module says of each of a million records is then written in large pieces, behind the
  // reports of assertions where both are said of one record.
  std::ios::sync_with_stdio(false);
  try {
    return CommandLine().run(std::move(arguments));
  } catch (const Failure& failure) {
    return complain(failure.status(), failure.what());
  } catch (const std::exception& error) {
    return complain(Status::Failed, error.what());
  }
}

}  // namespace voxa
