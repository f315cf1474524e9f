// The scrubber, the play button and the keyboard.

class Transport {
  constructor(streams, clock) {
    this.clock = clock;
    this.streams = streams;
    this.scrubber = byId("scrubber");
    byId("transport").hidden = false;
    Object.assign(this.scrubber, {min: String(clock.first), max: String(clock.last)});
    if (clock.length === 0) byId("play").disabled = this.scrubber.disabled = true;
    this.scrubber.addEventListener("input", () => clock.setTime(Number(this.scrubber.value)));
    byId("play").addEventListener("click", () => clock.play(!clock.isPlaying));
    byId("speed").addEventListener("change", () => { clock.speed = Number(byId("speed").value); });
    clock.timeListeners.push((time) => this.show(time));
    clock.playListeners.push((isPlaying) => {
      byId("play").setAttribute("aria-label", isPlaying ? "Pause" : "Play");
      byId("play-shape").setAttribute("d", isPlaying ? "M7 5h4v14H7zM13 5h4v14h-4z" : "M8 5v14l11-7z");
    });
    document.addEventListener("keydown", (event) => this.onKey(event));
    this.end = make("small", {}, ` / ${clockText(clock.last, 1)}`);
    this.present = make("span");
    byId("clock").append(this.present, this.end);
    this.show(clock.time);
  }

  show(time) {
    this.scrubber.value = String(time);
    this.scrubber.setAttribute("aria-valuetext", clockText(time));
    setText(this.present, clockText(time));
  }

  // To the nearest record of any stream after (1) or before (-1) the present time.
  jump(direction) {
    const {time} = this.clock;
    let nearest = null;
    for (const {times} of this.streams) {
      if (!times?.length) continue;
      let low = 0;
      let high = times.length;
      while (low < high) {
        const middle = (low + high) >>> 1;
        if (direction > 0 ? times[middle] <= time : times[middle] < time) low = middle + 1; else high = middle;
      }
      const candidate = direction > 0 ? times[low] : times[low - 1];
      if (candidate === undefined) continue;
      if (nearest === null || (candidate - nearest) * direction < 0) nearest = candidate;
    }
    if (nearest !== null) this.clock.setTime(nearest);
  }

  onKey(event) {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    const {target, key} = event;
    const isScrubber = target === this.scrubber;
    if (!isScrubber && target.closest("input:not([type=checkbox]), select, textarea")) {
      if (key === "Escape" && target.id === "search") target.blur();
      return;
    }
    const {clock} = this;
    const factor = event.shiftKey ? 10 : 1;
    const actions = {
      "/": () => { byId("search").focus(); byId("search").select(); },
      " ": () => clock.play(!clock.isPlaying),
      ArrowLeft: () => clock.setTime(clock.time - factor * clock.step),
      ArrowRight: () => clock.setTime(clock.time + factor * clock.step),
      ",": () => this.jump(-1),
      ".": () => this.jump(1),
      "+": () => clock.zoom(0.5),
      "=": () => clock.zoom(0.5),
      "-": () => clock.zoom(2),
      0: () => clock.setView(clock.first, clock.last),
    };
    if (isScrubber) {
      Object.assign(actions, {
        ArrowDown: actions.ArrowLeft,
        ArrowUp: actions.ArrowRight,
        PageDown: () => clock.setTime(clock.time - clock.length / 10),
        PageUp: () => clock.setTime(clock.time + clock.length / 10),
        Home: () => clock.setTime(clock.first),
        End: () => clock.setTime(clock.last),
      });
    }
    // Buttons and links keep their own use of the space bar.
    if (!actions[key] || (key === " " && target.closest("button, a, summary, input[type=checkbox]"))) return;
    event.preventDefault();
    actions[key]();
  }
}
