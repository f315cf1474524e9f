// The file's facts, warnings, streams and tracks: what `voxa info` prints.

function showFacts(recording) {
  const streams = recording.streams;
  const records = streams.reduce((sum, stream) => sum + (stream.records ?? 0), 0);
  const facts = [
    ["Container", recording.container],
    ["Size", byteText(recording.bytes)],
    ["Duration", recording.duration === null ? "—" : durationText(recording.duration)],
    ["Screen", recording.screen ? `${recording.screen.width} × ${recording.screen.height}` : "—"],
    ["Streams", recording.otherStreams > 0 ? `${streams.length} of ${streams.length + recording.moreStreams + recording.otherStreams}`
                                           : streams.length.toLocaleString("en-US")],
    ["Records", records.toLocaleString("en-US")],
  ];
  if (recording.range) facts.push(["Times", rangeText(recording.range)]);
  byId("facts").append(...facts.map(([name, value]) =>
      make("div", {}, make("dt", {}, name), make("dd", {id: `fact-${name.toLowerCase()}`}, value))));
  byId("generator").textContent = recording.generator;
  if (recording.warnings.length === 0) return;
  byId("warnings").hidden = false;
  byId("warnings-title").textContent = plural(recording.warnings.length, "warning", "warnings");
  byId("warnings").querySelector("ul").append(...recording.warnings.map((text) => make("li", {}, visible(text))));
}

function rangeText({from, to}) {
  if (from === null) return `before ${clockText(to)}`;
  return to === null ? `from ${clockText(from)}` : `${clockText(from)} to ${clockText(to)}`;
}

// Fills a table that becomes blocks of labelled values on a narrow screen. `columns` are pairs of a
// heading and a class.
function fillTable(id, columns, rows) {
  byId(id).append(
      make("thead", {role: "rowgroup"}, make("tr", {role: "row"}, ...columns.map(([name, kind]) =>
          make("th", {scope: "col", role: "columnheader", class: kind}, name)))),
      make("tbody", {role: "rowgroup"}, ...rows.map(({cells, key}) =>
          make("tr", {role: "row", "data-stream": key}, ...cells.map((cell, i) =>
              make("td", {role: "cell", class: [columns[i][1], cell === "" || cell === "—" ? "blank" : ""].join(" ").trim() || null,
                          "data-label": i > 0 ? columns[i][0] : null}, cell))))));
}

function showStreams(recording, streams, chooseStream) {
  if (streams.length === 0) {
    byId("contents-hint").textContent = "The recording holds no metadata stream.";
    byId("streams").closest(".card").hidden = true;
    return;
  }
  const time = (value) => value === null ? "—" : clockText(value);
  fillTable("streams",
      [["Stream"], ["Type"], ["Records", "number"], ["First", "number"], ["Last", "number"], ["Duration", "number"],
       ["Per second", "number"], ["Bytes", "number"], ["Version", "number"], ["Slot"]],
      streams.map((stream) => {
        const name = make(stream.rowCount > 0 ? "button" : "span", {class: stream.rowCount > 0 ? "link" : null});
        if (stream.rowCount > 0) {
          name.type = "button";
          name.title = `Show the records of ${stream.key}`;
          name.addEventListener("click", () => chooseStream(stream));
        }
        name.append(dotOf(stream), stream.key);
        const type = make("span", {title: stream.candidates}, stream.type ?? (stream.records === 0 ? "empty" : "unknown"));
        if (stream.damage) type.append(" ", make("span", {class: "flag"}, "damaged"));
        return {key: stream.id, cells: [
          make("span", {title: stream.id}, name),
          type,
          stream.records === null ? "—" : stream.records.toLocaleString("en-US"),
          time(stream.first), time(stream.last),
          stream.duration === null ? "—" : durationText(stream.duration),
          stream.meanRate === null ? "—" : shortNumber(stream.meanRate, 4),
          stream.bytes.toLocaleString("en-US"),
          String(stream.version),
          stream.slot ?? "—",
        ]};
      }));
  if (recording.moreStreams > 0) {
    byId("contents-hint").textContent = `The first ${streams.length} of ${streams.length + recording.moreStreams}; “voxa streams” lists all`;
  }
}

function showTracks(recording) {
  if (recording.tracks.length === 0) {
    byId("tracks-section").hidden = true;
    return;
  }
  fillTable("tracks",
      [["Track"], ["Kind"], ["Size"], ["Units per second", "number"], ["Duration", "number"], ["Sample rate", "number"], ["Channels", "number"]],
      recording.tracks.map((track) => ({cells: [
        String(track.index),
        track.tag ? `${track.kind}, ${track.tag}` : track.kind,
        track.width ? `${track.width} × ${track.height}` : "—",
        track.rate,
        track.seconds === null ? "—" : durationText(track.seconds),
        track.sampleRate ? `${track.sampleRate} Hz` : "—",
        track.sampleRate ? String(track.channelCount) : "—",
      ]})));
}
