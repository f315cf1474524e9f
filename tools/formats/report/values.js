// What every stream holds at the present time, under the step rule: a value holds until the next.

const kMaxValues = 64;

class Values {
  constructor(streams, clock) {
    const body = byId("values").tBodies[0];
    this.rows = streams.slice(0, kMaxValues).map((stream) => {
      const value = make("span");
      const since = make("small");
      const picture = stream.type === "cursor-images" ? make("img", {alt: ""}) : null;
      if (picture) picture.hidden = true;
      const element = make("tr", {"data-stream": stream.id},
          make("th", {scope: "row"}, dotOf(stream), stream.key, make("small", {}, stream.type ?? (stream.records === 0 ? "empty" : "unknown type"))),
          make("td", {}, picture, value, since));
      body.append(element);
      return {stream, value, since, picture, row: undefined};
    });
    if (streams.length > kMaxValues) {
      body.append(make("tr", {}, make("th", {scope: "row"}, "…"),
          make("td", {}, make("small", {}, `${plural(streams.length - kMaxValues, "more stream", "more streams")} below`))));
    }
    clock.timeListeners.push((time) => this.show(time));
    this.show(clock.time);
  }

  show(time) {
    setText(byId("values-time"), clockText(time));
    for (const entry of this.rows) {
      const {stream} = entry;
      const index = stream.times?.length ? stream.indexAt(time) : null;
      const row = index === null ? null : stream.row(Math.max(0, index));
      const key = index === null ? null : Math.max(-1, index);
      if (key === entry.row) continue;
      entry.row = key;
      if (row === null) {
        setText(entry.value, "—");
        setText(entry.since, stream.records === 0 ? "no records" : "not shown");
        continue;
      }
      setText(entry.value, stream.summary(row));
      setText(entry.since, index < 0 ? `first record, at ${clockText(stream.times[0])}`
                                     : `since ${clockText(stream.times[index])}`);
      if (entry.picture) {
        const address = stream.image(row);
        entry.picture.hidden = !address;
        if (address && entry.picture.src !== address) entry.picture.src = address;
      }
    }
  }
}

function dotOf(stream) {
  return make("span", {class: "dot", style: `--dot: var(${stream.color})`, "aria-hidden": "true"});
}
