// One chart per stream on a common time axis. A chart holds what its width can show: of the records
// in view, per pixel column the first, least, greatest and last value.

const kMaxCharts = 256;

// The indexes of the records to draw between `from` and `to` in `width` columns, in order of time.
function thinnedIndexes(stream, from, to, width) {
  const first = Math.max(0, stream.indexAt(from));
  const last = Math.min(stream.times.length - 1, stream.indexAt(to) + 1);
  const indexes = [];
  if (last - first < 4 * width) {
    for (let index = first; index <= last; ++index) indexes.push(index);
    return indexes;
  }
  const fields = stream.look === "lines" ? stream.fields.map((field) => field.values) : [];
  const columnOf = (index) => Math.floor((stream.times[index] - from) / (to - from) * width);
  let index = first;
  while (index <= last) {
    const column = columnOf(index);
    const start = index;
    const kept = new Set([index]);
    const extremes = fields.map(() => ({low: Infinity, high: -Infinity, lowIndex: start, highIndex: start}));
    for (; index <= last && columnOf(index) === column; ++index) {
      const row = stream.row(index);
      for (let field = 0; field < fields.length; ++field) {
        const value = Number(fields[field][row]);
        const extreme = extremes[field];
        if (value < extreme.low) [extreme.low, extreme.lowIndex] = [value, index];
        if (value > extreme.high) [extreme.high, extreme.highIndex] = [value, index];
      }
    }
    for (const {lowIndex, highIndex} of extremes) kept.add(lowIndex).add(highIndex);
    kept.add(index - 1);
    indexes.push(...[...kept].sort((a, b) => a - b));
  }
  return indexes;
}

class Chart {
  constructor(stream, element) {
    this.stream = stream;
    this.element = element;
    this.graph = null;
  }

  // Draws the part of the recording between `from` and `to`.
  show([from, to]) {
    const width = Math.max(50, Math.round(this.element.clientWidth));
    const rows = this.stream ? this.rowsBetween(from, to, width) : [[from, null], [to, null]];
    const options = {file: rows, dateWindow: [from, to], ...this.colors()};
    if (this.graph) {
      this.graph.updateOptions(options);
      return;
    }
    const {file, ...others} = options;
    const isAxis = !this.stream;
    this.graph = new Dygraph(this.element, file, {
      ...others,
      labels: ["time", ...(this.stream?.look === "lines" ? this.stream.fields.map((field) => field.name) : ["value"])],
      stepPlot: true,
      strokeWidth: 1.4,
      highlightCircleSize: 0,
      showLabelsOnHighlight: false,
      legend: "never",
      interactionModel: {},
      valueRange: this.valueRange(),
      ...this.plotter(),
      axes: {
        x: {drawAxis: isAxis, drawGrid: true, pixelsPerLabel: 100, axisLabelWidth: 70, axisLabelFormatter: axisText},
        y: {drawAxis: false, drawGrid: false},
      },
    });
  }

  colors() {
    const paint = this.stream ? themeColor(this.stream.color) : themeColor("--muted");
    this.paint = paint;
    this.ink = themeColor("--ink");
    return {
      colors: this.stream?.look === "lines" ? lineColors(this.stream).map(themeColor) : [paint],
      gridLineColor: themeColor("--line"),
      axisLineColor: themeColor("--line"),
    };
  }

  valueRange() {
    if (this.stream?.look !== "lines") return [0, 1];
    const [low, high] = this.stream.range();
    const margin = (high - low) * 0.1 || 1;
    return [low - margin, high + margin];
  }

  rowsBetween(from, to, width) {
    const {stream} = this;
    this.indexes = thinnedIndexes(stream, from, to, width);
    if (this.indexes.length === 0) return [[from, null], [to, null]];
    if (stream.look !== "lines") return this.indexes.map((index) => [stream.times[index], 0.5]);
    const rows = this.indexes.map((index) => {
      const row = stream.row(index);
      return [stream.times[index], ...stream.fields.map((_, field) => finiteOrNull(stream.number(field, row)))];
    });
    const end = rows[rows.length - 1];
    if (end[0] < to) rows.push([to, ...end.slice(1)]);  // the last value holds
    return rows;
  }

  plotter() {
    if (this.stream?.look === "spans") return {plotter: (event) => this.drawSpans(event)};
    if (this.stream?.look === "marks") return {plotter: (event) => this.drawMarks(event)};
    return {};  // the library's own lines
  }

  drawSpans({drawingContext: context, points, plotArea}) {
    const top = plotArea.y + 4;
    const height = plotArea.h - 8;
    context.save();
    context.font = "12px system-ui, sans-serif";
    context.textBaseline = "middle";
    points.forEach((point, i) => {
      if (point.yval === null || Number.isNaN(point.yval)) return;
      const left = Math.max(plotArea.x, point.canvasx);
      const right = i + 1 < points.length ? points[i + 1].canvasx : plotArea.x + plotArea.w;
      const width = Math.max(0, right - left - 1);
      context.globalAlpha = 0.16;
      context.fillStyle = this.paint;
      context.fillRect(left, top, width, height);
      context.globalAlpha = 1;
      context.fillRect(left, top, Math.min(2, Math.max(0.75, width)), height);
      if (width < 26) return;
      context.save();
      context.beginPath();
      context.rect(left, top, width - 3, height);
      context.clip();
      context.fillStyle = this.ink;
      context.fillText(this.stream.summary(this.stream.row(this.indexes[i])).slice(0, 200), left + 7, top + height / 2 + 1);
      context.restore();
    });
    context.restore();
  }

  drawMarks({drawingContext: context, points, plotArea}) {
    const {stream} = this;
    context.save();
    context.fillStyle = this.paint;
    context.font = "12px system-ui, sans-serif";
    context.textAlign = "center";
    points.forEach((point, i) => {
      if (point.yval === null || Number.isNaN(point.yval)) return;
      const name = keyText(stream.value(0, stream.row(this.indexes[i])));
      const label = name === "Space" ? "␣" : name;
      const room = Math.min(i > 0 ? point.canvasx - points[i - 1].canvasx : Infinity,
                            i + 1 < points.length ? points[i + 1].canvasx - point.canvasx : Infinity);
      const isNamed = room > context.measureText(label).width + 3;
      context.globalAlpha = isNamed ? 0.5 : 0.8;
      context.fillRect(point.canvasx - 0.5, plotArea.y + (isNamed ? plotArea.h - 12 : 8), 1.25, isNamed ? 8 : plotArea.h - 16);
      context.globalAlpha = 1;
      if (isNamed) context.fillText(label, point.canvasx, plotArea.y + plotArea.h - 17);
    });
    context.restore();
  }
}

// The theme's names of the colours of a stream's lines, its own first.
function lineColors(stream) {
  const others = ["--s1", "--s2", "--s3", "--s4"].filter((color) => color !== stream.color);
  return [stream.color, ...others].slice(0, stream.fields.length);
}

function finiteOrNull(value) { return Number.isFinite(value) ? value : null; }

// An axis label: as many decimals as the distance of labels needs.
function axisText(value, granularity, options, graph) {
  const [from, to] = graph.xAxisRange();
  const digits = Math.min(6, Math.max(0, Math.ceil(1.3 - Math.log10(to - from))));
  return clockText(value, digits);
}

class Timeline {
  constructor(streams, clock) {
    this.clock = clock;
    this.element = byId("rows");
    const drawn = streams.filter((stream) => stream.look && stream.times.length > 0).slice(0, kMaxCharts);
    this.charts = [...drawn.map((stream) => this.addRow(stream)), this.addRow(null)];
    byId("timeline-hint").textContent =
        matchMedia("(pointer: coarse)").matches ? "Touch a chart to go to a time" : "Click to go to a time, drag to zoom";
    byId("zoom-in").addEventListener("click", () => clock.zoom(0.5));
    byId("zoom-out").addEventListener("click", () => clock.zoom(2));
    byId("zoom-all").addEventListener("click", () => clock.setView(clock.first, clock.last));
    // Charts out of sight are drawn when they come into view.
    this.visible = new Set();
    const watcher = new IntersectionObserver((entries) => {
      for (const {target, isIntersecting} of entries) {
        const chart = this.charts.find(({element}) => element === target);
        if (!isIntersecting) {
          this.visible.delete(chart);
        } else {
          this.visible.add(chart);
          chart.show(clock.view);
        }
      }
    }, {rootMargin: "200px"});
    for (const chart of this.charts) watcher.observe(chart.element);
    clock.viewListeners.push(() => this.showView());
    clock.timeListeners.push((time) => this.showNow(time));
    themeListeners.push(() => this.showView());
    let pending = 0;
    new ResizeObserver(() => {
      clearTimeout(pending);
      pending = setTimeout(() => {
        for (const chart of this.charts) chart.graph?.resize();
        this.showView();
      }, 60);
      this.showNow(clock.time);
    }).observe(this.element);
    this.listenToPointers();
    this.showView();
  }

  addRow(stream) {
    const chart = make("div", {class: "chart", "aria-hidden": "true"});
    const label = make("div", {class: "label"});
    if (stream) {
      const about = make("small", {}, stream.type);
      if (stream.look === "lines" && stream.fields.length > 1) {
        lineColors(stream).forEach((color, i) =>
            about.append(make("span", {class: "series", style: `--dot: var(${color})`}, stream.fields[i].name)));
      }
      label.append(make("span", {}, dotOf(stream), stream.key), about);
    }
    const look = stream ? (stream.look === "lines" ? "line" : "mark") : "axis";
    this.element.append(make("div", {class: `row ${look}`}, label, chart));
    return new Chart(stream, chart);
  }

  showView() {
    for (const chart of this.visible) chart.show(this.clock.view);
    const [from, to] = this.clock.view;
    byId("zoom-all").disabled = byId("zoom-out").disabled = from <= this.clock.first && to >= this.clock.last;
    this.showNow(this.clock.time);
  }

  // The left edge and the width of the charts, in pixels from the left of the rows.
  plot() {
    const chart = this.charts[0].element.getBoundingClientRect();
    return {left: chart.left - this.element.getBoundingClientRect().left, width: chart.width};
  }

  showNow(time) {
    const [from, to] = this.clock.view;
    const {left, width} = this.plot();
    const share = (time - from) / (to - from);
    const now = byId("now");
    now.style.visibility = share >= 0 && share <= 1 ? "visible" : "hidden";
    now.style.transform = `translateX(${left + share * width}px)`;
  }

  timeAt(event) {
    const {left, width} = this.plot();
    const x = event.clientX - this.element.getBoundingClientRect().left - left;
    const [from, to] = this.clock.view;
    return from + Math.min(1, Math.max(0, x / width)) * (to - from);
  }

  // A mouse seeks with a click and zooms with a drag; a finger seeks wherever it goes.
  listenToPointers() {
    const kDragPixels = 5;
    const band = byId("band");
    let start = null;
    this.element.addEventListener("pointerdown", (event) => {
      if (event.button !== 0 || !event.target.closest(".chart")) return;
      start = {x: event.clientX, time: this.timeAt(event), isDrag: false};
      this.element.setPointerCapture(event.pointerId);
      if (event.pointerType !== "mouse") this.clock.setTime(start.time);
    });
    this.element.addEventListener("pointermove", (event) => {
      if (!start) return;
      if (event.pointerType !== "mouse") return this.clock.setTime(this.timeAt(event));
      start.isDrag ||= Math.abs(event.clientX - start.x) >= kDragPixels;
      if (!start.isDrag) return;
      const edge = this.element.getBoundingClientRect().left;
      const {left, width} = this.plot();
      const inside = (x) => Math.min(left + width, Math.max(left, x - edge));
      const [from, to] = [inside(start.x), inside(event.clientX)].sort((a, b) => a - b);
      band.hidden = false;
      band.style.transform = `translateX(${from}px)`;
      band.style.width = `${to - from}px`;
    });
    const end = (event) => {
      if (!start) return;
      const {time, isDrag} = start;
      start = null;
      band.hidden = true;
      if (event.type === "pointercancel" || event.pointerType !== "mouse") return;
      const other = this.timeAt(event);
      if (isDrag) this.clock.setView(Math.min(time, other), Math.max(time, other));
      else this.clock.setTime(time);
    };
    this.element.addEventListener("pointerup", end);
    this.element.addEventListener("pointercancel", end);
    this.element.addEventListener("dblclick", () => this.clock.setView(this.clock.first, this.clock.last));
  }
}
