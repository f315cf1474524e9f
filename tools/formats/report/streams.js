// The streams of the recording, decoded, and what holds at a time.

// Times beyond this many seconds are in the tables, but not on the timeline.
const kLargestTime = 1e9;

// How a type is drawn: as lines, as spans that hold until the next record, or as single marks.
const kLooks = {
  ints: "lines", doubles: "lines", int64s: "lines", points: "lines",
  strings: "spans", rects: "spans", "cursor-images": "spans", keystrokes: "marks",
};

class Stream {
  constructor(description, colorIndex) {
    Object.assign(this, description);
    this.color = `--s${colorIndex % 8}`;
    this.look = kLooks[this.type] ?? null;
    this.name = `${this.key} ${this.type}`;
    this.rowCount = 0;
  }

  // Decodes the columns. To be called once.
  decode() {
    if (!this.columns) return;
    if (this.rows === 0) {
      this.fields = [];
      this.times = new Float64Array(0);
      return;
    }
    const [time, ...fields] = this.columns;
    this.rowCount = this.rows;
    this.fileTimes = takeColumn(time, this.rows);
    this.fields = fields.map((field) => ({...field, values: takeColumn(field, this.rows)}));
    this.texts = new Texts(this.texts);
    this.sortByTime();
  }

  // `times` ascend, and `rowAt` says which row each belongs to; null where that is the same.
  sortByTime() {
    const times = this.fileTimes;
    let isSorted = true;
    let previous = -kLargestTime;
    for (let i = 0; i < times.length && isSorted; ++i) {
      isSorted = times[i] >= previous && times[i] <= kLargestTime;
      previous = times[i];
    }
    this.rowAt = null;
    this.times = times;
    if (isSorted) return;
    const rows = [];
    for (let i = 0; i < times.length; ++i) if (Math.abs(times[i]) <= kLargestTime) rows.push(i);
    this.rowAt = Uint32Array.from(rows).sort((a, b) => times[a] - times[b] || a - b);
    this.times = Float64Array.from(this.rowAt, (row) => times[row]);
  }

  row(index) { return this.rowAt ? this.rowAt[index] : index; }

  // The index of the last record at or before `time`, -1 for none.
  indexAt(time) {
    let low = 0;
    let high = this.times.length;
    while (low < high) {
      const middle = (low + high) >>> 1;
      if (this.times[middle] <= time) low = middle + 1; else high = middle;
    }
    return low - 1;
  }

  value(field, row) { return this.fields[field].values[row]; }
  text(row) { return this.texts.at(this.value(0, row)); }
  number(field, row) { return Number(this.fields[field].values[row]); }

  // The image that row `row` shows: the last one stored under its identifier, or null.
  image(row) {
    const index = this.value(4, row);
    return index < 0 ? null : imageUrl(this.images[index]);
  }

  // The cells of row `row` in the table, the time first, as texts.
  cells(row) {
    const cells = [String(this.fileTimes[row])];
    if (this.type === "strings") {
      cells.push(this.text(row));
    } else if (this.type === "keystrokes") {
      cells.push(keyText(this.value(0, row)), String(this.value(0, row)), String(this.value(1, row)));
    } else {
      const shown = this.type === "cursor-images" ? 4 : this.fields.length;
      for (let field = 0; field < shown; ++field) cells.push(String(this.value(field, row)));
    }
    return cells;
  }

  headings() {
    const unit = (field) => field.unit ? `${field.name}, ${field.unit}` : field.name;
    const names = this.fields.map(unit);
    if (this.type === "keystrokes") names.unshift("key");
    if (this.type === "cursor-images") names[4] = "image";
    return ["time, s", ...names];
  }

  // What row `row` says, on one line.
  summary(row) {
    switch (this.type) {
      case "strings": return visible(this.text(row)) || "(empty)";
      case "keystrokes": {
        const flags = this.value(1, row);
        return keyText(this.value(0, row)) + (flags ? `  flags ${flags}` : "");
      }
      case "points": return `${this.value(0, row)}, ${this.value(1, row)}`;
      case "rects":
        return `${this.value(2, row)} × ${this.value(3, row)} at ${this.value(0, row)}, ${this.value(1, row)}`;
      case "cursor-images": return `image ${this.value(0, row)}`;
      case "doubles": return shortNumber(this.value(0, row), 9);
      default: return String(this.value(0, row));
    }
  }

  // The least and greatest finite value over all fields that are drawn as lines.
  range() {
    if (this.knownRange) return this.knownRange;
    let low = Infinity;
    let high = -Infinity;
    for (const {values} of this.fields) {
      for (let i = 0; i < values.length; ++i) {
        const value = Number(values[i]);
        if (value < low && value !== -Infinity) low = value;
        if (value > high && value !== Infinity) high = value;
      }
    }
    this.knownRange = low <= high ? [low, high] : [0, 1];
    return this.knownRange;
  }
}

const imageUrls = new Map();

// An image as a data address, or null for what is not shown: other formats than PNG, and sizes
// that a cursor does not have and that could take a browser's memory.
function imageUrl(base64) {
  if (imageUrls.has(base64)) return imageUrls.get(base64);
  const kLargestSide = 512;
  const head = atob(base64.slice(0, 32));
  const number = (at) => ((head.charCodeAt(at) << 24) | (head.charCodeAt(at + 1) << 16) |
                          (head.charCodeAt(at + 2) << 8) | head.charCodeAt(at + 3)) >>> 0;
  const isShown = head.length >= 24 && head.startsWith("\x89PNG\r\n\x1a\n") &&
      number(16) <= kLargestSide && number(20) <= kLargestSide;
  imageUrls.set(base64, isShown ? `data:image/png;base64,${base64}` : null);
  return imageUrls.get(base64);
}
