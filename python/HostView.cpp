#include "python/HostView.h"

#include <pybind11/stl.h>

#include "host/Kestova/MediaFileStats.h"
#include "python/Arrays.h"
#include "python/Messages.h"
#include "stats/VOXAStatsLoader.h"
#include "tools/host/SlotFinder.h"

namespace py = pybind11;

namespace python {

using Kestova::MediaFileStats;

namespace {

py::tuple edges(const Kestova::Rect<int>& rect) {
  return py::make_tuple(rect.x, rect.y, rect.width, rect.height);
}

py::tuple describe(const MediaFileStats::TrackStats& track) {
  py::list names;
  for (const std::string& name : track.metaDataFilenames) names.append(textOf(name));
  return py::make_tuple(track.index, track.type, static_cast<int>(track.tag),
                        track.rate.numerator(), track.rate.denominator(), track.range.length,
                        edges(track.rect), track.sampleRate, track.channelCount,
                        track.bitsPerSample, track.bytesPerSample, names);
}

// (rectangle, [track]), each in the order of the fields of the package's classes.
py::tuple statsOf(const py::bytes& path) {
  const std::string file = path;
  MediaFileStats stats;
  CollectedMessages messages;
  {
    const py::gil_scoped_release unlocked;
    VOXAStatsLoader().loadStats(file, &stats);
  }
  messages.warn(file);
  py::list tracks;
  for (const auto& track : stats.trackStats()) tracks.append(describe(track));
  return py::make_tuple(edges(stats.rect()), tracks);
}

// The short key of the slot, None where the host has none.
std::optional<std::string> slotOf(const py::bytes& streamFileName) {
  const std::string slot = hosting::SlotFinder().slotOf(streamFileName);
  return slot.empty() ? std::nullopt : std::optional(slot);
}

}  // namespace

void defineHostView(py::module_& module) {
  module.def("stats", &statsOf, py::arg("path"));
  module.def("slot", &slotOf, py::arg("stream_file_name"));
}

}  // namespace python
