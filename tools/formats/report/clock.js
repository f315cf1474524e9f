// The time that the page shows and the part of the recording that the timeline shows.

class Clock {
  constructor(first, last) {
    this.first = first;
    this.last = last;
    this.time = first;
    this.view = [first, last];
    this.speed = 1;
    this.isPlaying = false;
    this.timeListeners = [];
    this.viewListeners = [];
    this.playListeners = [];
  }

  get length() { return this.last - this.first; }

  // An arrow key's step in seconds.
  get step() { return Math.min(0.1, this.length / 100) || 0.1; }

  setTime(time) {
    this.time = Math.min(this.last, Math.max(this.first, time));
    for (const listener of this.timeListeners) listener(this.time);
  }

  setView(from, to) {
    const least = Math.max(this.length * 1e-7, 1e-6);
    const length = Math.min(this.length, Math.max(least, to - from));
    from = Math.min(Math.max(this.first, from), this.last - length);
    this.view = [from, from + length];
    for (const listener of this.viewListeners) listener(this.view);
  }

  // Zooms about the present time, or about the middle when that is not in view.
  zoom(factor) {
    const [from, to] = this.view;
    const about = this.time >= from && this.time <= to ? this.time : (from + to) / 2;
    this.setView(about - (about - from) * factor, about + (to - about) * factor);
  }

  play(isPlaying) {
    if (isPlaying === this.isPlaying || (isPlaying && this.length === 0)) return;
    this.isPlaying = isPlaying;
    for (const listener of this.playListeners) listener(isPlaying);
    if (!isPlaying) return;
    if (this.time >= this.last) this.setTime(this.first);
    let before = performance.now();
    const tick = (now) => {
      if (!this.isPlaying) return;
      this.setTime(this.time + Math.max(0, now - before) / 1000 * this.speed);
      before = now;
      if (this.time >= this.last) return this.play(false);
      requestAnimationFrame(tick);
    };
    requestAnimationFrame(tick);
  }
}
