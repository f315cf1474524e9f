// The screen with the cursor, its path, rectangles and texts at the present time.

const kTrailSeconds = 1.5;
const kKeysSeconds = 2;
const kMaxKeys = 24;
const kMaxPathPoints = 20000;

// Where the cursor and the rectangles are, in pixels: the size that the recording states, or else the
// bounding box of the points and rectangles.
function screenArea(recording, streams) {
  if (recording.screen) return {x: 0, y: 0, ...recording.screen, isStated: true};
  let left = Infinity, top = Infinity, right = -Infinity, bottom = -Infinity;
  const add = (x, y) => {
    if (x < left) left = x;
    if (x > right) right = x;
    if (y < top) top = y;
    if (y > bottom) bottom = y;
  };
  for (const stream of streams) {
    if (stream.rowCount === 0 || (stream.type !== "points" && stream.type !== "rects")) continue;
    const [xs, ys, widths, heights] = stream.fields.map((field) => field.values);
    for (let row = 0; row < stream.rowCount; ++row) {
      add(xs[row], ys[row]);
      if (widths) add(xs[row] + widths[row], ys[row] + heights[row]);
    }
  }
  if (left > right) return null;
  return {x: left, y: top, width: Math.max(1, right - left), height: Math.max(1, bottom - top), isStated: false};
}

class Screen {
  constructor(recording, streams, clock, area) {
    this.clock = clock;
    this.area = area;
    this.points = streams.filter((stream) => stream.type === "points" && stream.times.length > 0);
    this.rects = streams.filter((stream) => stream.type === "rects" && stream.times.length > 0);
    this.texts = streams.find((stream) => stream.type === "strings" && stream.times.length > 0);
    this.keys = streams.find((stream) => stream.type === "keystrokes" && stream.times.length > 0);
    this.canvas = byId("screen");
    this.path = document.createElement("canvas");
    const ratio = Math.min(2.6, Math.max(0.6, area.width / area.height));
    byId("stage").style.aspectRatio = String(ratio);
    const size = `${area.width} × ${area.height} px`;
    byId("screen-caption").textContent = area.isStated
        ? `Screen ${size}. The line is the path of the cursor, violet at the start and yellow at the end.`
        : `No screen track: the area is the bounding box of the points and rectangles, ${size}.`;
    new ResizeObserver(() => {
      const {width, height} = this.canvas.getBoundingClientRect();
      if (width !== this.width || height !== this.height) this.resize();  // not at the first call, which reports the size that was drawn
    }).observe(byId("stage"));
    themeListeners.push(() => this.resize());
    clock.timeListeners.push(() => this.draw());
    this.resize();
  }

  resize() {
    const {context, width, height} = prepareCanvas(this.canvas);
    Object.assign(this, {context, width, height});
    const margin = 14;
    this.scale = Math.min((width - 2 * margin) / this.area.width, (height - 2 * margin) / this.area.height);
    this.left = (width - this.area.width * this.scale) / 2;
    this.top = (height - this.area.height * this.scale) / 2;
    this.colors = Object.fromEntries(["--surface", "--line", "--ink", "--muted", "--accent", "--now"]
        .map((name) => [name, themeColor(name)]));
    for (const stream of [...this.points, ...this.rects]) stream.paint = themeColor(stream.color);
    this.drawPath();
    this.draw();
  }

  x(value) { return this.left + (value - this.area.x) * this.scale; }
  y(value) { return this.top + (value - this.area.y) * this.scale; }

  // The whole path, once per size: at most kMaxPathPoints, each at least half a pixel from the last.
  drawPath() {
    this.path.width = this.canvas.width;
    this.path.height = this.canvas.height;
    const context = this.path.getContext("2d");
    context.setTransform(this.context.getTransform());
    context.lineWidth = 1.25;
    context.lineJoin = "round";
    context.globalAlpha = 0.5;
    for (const stream of this.points) {
      const [kept, keptCount] = this.keptIndexes(stream);
      const stride = Math.max(1, Math.ceil(keptCount / kMaxPathPoints));
      const kColors = 32;
      const count = Math.ceil(keptCount / stride);
      const piece = Math.max(1, Math.ceil(count / kColors));
      for (let first = 0; first < count - 1; first += piece) {
        const [red, green, blue] = heatColor(0.2 + 0.66 * first / count);
        context.strokeStyle = `rgb(${red} ${green} ${blue})`;
        context.beginPath();
        for (let i = first; i <= Math.min(count - 1, first + piece); ++i) {
          const row = stream.row(kept[i * stride]);
          context.lineTo(this.x(stream.value(0, row)), this.y(stream.value(1, row)));
        }
        context.stroke();
      }
    }
  }

  // The indexes of the points that are at least half a pixel from the last one, and how many they are.
  keptIndexes(stream) {
    const kept = new Uint32Array(stream.times.length);
    let count = 0;
    const {rowAt, times: {length}} = stream;
    const [xs, ys] = stream.fields.map((field) => field.values);
    const least = 0.5 / this.scale;
    let lastX = NaN;
    let lastY = NaN;
    for (let index = 0; index < length; ++index) {
      const row = rowAt ? rowAt[index] : index;
      const x = xs[row];
      const y = ys[row];
      if (Math.abs(x - lastX) + Math.abs(y - lastY) < least) continue;
      kept[count++] = index;
      lastX = x;
      lastY = y;
    }
    return [kept, count];
  }

  draw() {
    const {context, colors} = this;
    const time = this.clock.time;
    context.clearRect(0, 0, this.width, this.height);
    context.fillStyle = colors["--surface"];
    context.strokeStyle = colors["--line"];
    context.lineWidth = 1;
    context.beginPath();
    context.rect(this.left, this.top, this.area.width * this.scale, this.area.height * this.scale);
    context.fill();
    context.stroke();
    context.drawImage(this.path, 0, 0, this.width, this.height);
    for (const stream of this.rects) this.drawRect(stream, time);
    const spoken = [];
    for (const stream of this.points) {
      this.drawTrail(stream, time);
      const row = stream.row(Math.max(0, stream.indexAt(time)));
      this.drawCursor(this.x(stream.value(0, row)), this.y(stream.value(1, row)));
      spoken.push(`cursor at ${stream.value(0, row)}, ${stream.value(1, row)}`);
    }
    this.canvas.setAttribute("aria-label", `Screen at ${clockText(time)}: ${spoken.join("; ") || "no cursor"}`);
    this.drawTexts(time);
  }

  drawRect(stream, time) {
    const row = stream.row(Math.max(0, stream.indexAt(time)));
    const [x, y, width, height] = [0, 1, 2, 3].map((field) => stream.value(field, row));
    const {context} = this;
    context.strokeStyle = context.fillStyle = stream.paint;
    context.lineWidth = 1.5;
    context.globalAlpha = 0.07;
    context.fillRect(this.x(x), this.y(y), width * this.scale, height * this.scale);
    context.globalAlpha = 1;
    context.strokeRect(this.x(x), this.y(y), width * this.scale, height * this.scale);
  }

  drawTrail(stream, time) {
    const {context} = this;
    const last = stream.indexAt(time);
    const kMaxSegments = 400;
    const first = Math.max(0, stream.indexAt(time - kTrailSeconds), last - kMaxSegments);
    context.strokeStyle = this.colors["--accent"];
    context.lineWidth = 3;
    for (let index = first + 1; index <= last; ++index) {
      const from = stream.row(index - 1);
      const to = stream.row(index);
      context.globalAlpha = 0.75 * (index - first) / (last - first);
      context.beginPath();
      context.moveTo(this.x(stream.value(0, from)), this.y(stream.value(1, from)));
      context.lineTo(this.x(stream.value(0, to)), this.y(stream.value(1, to)));
      context.stroke();
    }
    context.globalAlpha = 1;
  }

  // An arrow whose tip is at the point, inside a ring that is seen from afar.
  drawCursor(x, y) {
    const {context} = this;
    context.fillStyle = this.colors["--accent"];
    context.globalAlpha = 0.18;
    context.beginPath();
    context.arc(x, y, 19, 0, 2 * Math.PI);
    context.fill();
    context.globalAlpha = 1;
    context.beginPath();
    for (const [dx, dy] of [[0, 0], [0, 17], [4, 13.4], [6.8, 19.6], [9.6, 18.4], [6.9, 12.4], [12.2, 12.2]]) {
      context.lineTo(x + dx, y + dy);
    }
    context.closePath();
    context.lineWidth = 2.5;
    context.lineJoin = "round";
    context.strokeStyle = "#ffffff";
    context.stroke();
    context.fillStyle = "#14171c";
    context.fill();
  }

  drawTexts(time) {
    const index = this.texts ? this.texts.indexAt(time) : -1;
    setText(byId("screen-text"), index < 0 ? "" : visible(this.texts.text(this.texts.row(index))).slice(0, 200));
    let typed = "";
    if (this.keys) {
      const last = this.keys.indexAt(time);
      const first = Math.max(this.keys.indexAt(time - kKeysSeconds) + 1, last - kMaxKeys + 1);
      for (let at = first; at <= last; ++at) {
        const name = keyText(this.keys.value(0, this.keys.row(at)));
        typed += name === "Space" ? " " : [...name].length === 1 ? name : ` ${name} `;
      }
    }
    setText(byId("screen-keys"), typed);
  }
}

function setText(element, text) {
  if (element.textContent !== text) element.textContent = text;
}
