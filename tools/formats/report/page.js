// Puts the page together.

async function open() {
  const element = byId("recording");
  const recording = JSON.parse(element.textContent);
  element.remove();
  showFacts(recording);
  const streams = recording.streams.map((description, i) => new Stream(description, i));
  for (const stream of streams) {
    stream.decode();
    await new Promise((resolve) => setTimeout(resolve));  // lets the page be drawn in between
  }
  let first = Infinity;
  let last = -Infinity;
  for (const {times} of streams) {
    if (!times?.length) continue;
    first = Math.min(first, times[0]);
    last = Math.max(last, times[times.length - 1]);
  }
  const hasTimes = first <= last;
  if (first === last) last = first + 1;  // a single moment, and the second after it
  // A recording starts at 0, whenever its first record is.
  if (first > 0 && first <= last / 2 && recording.range === null) first = 0;
  const clock = new Clock(hasTimes ? first : 0, hasTimes ? last : 0);
  const records = new Records(streams, clock);
  showStreams(recording, streams, (stream) => {
    records.showStream(stream.id);
    byId("records").scrollIntoView();
    byId("records-stream").focus({preventScroll: true});
  });
  showTracks(recording);
  const area = screenArea(recording, streams);
  if (hasTimes) {
    if (area) new Screen(recording, streams, clock, area);
    else byId("stage").closest("figure").hidden = true;
    new Values(streams, clock);
    new Timeline(streams, clock);
    new Transport(streams, clock);
  } else {
    byId("player").hidden = byId("timeline").hidden = true;
  }
  new HeatMap(streams, area);
  document.documentElement.dataset.state = "ready";  // the page shows all that it holds
  document.documentElement.dataset.ready = String(performance.now());  // milliseconds from the navigation
}

open();
