// How long the cursor stayed in each cell of the screen. A position holds until the next record.

const kCellSides = [8, 16, 24, 32, 48, 64, 96, 128, 256];
const kMaxCells = 1 << 20;
const kLongestStays = 6;

function dwellTimes(stream, area, cell) {
  const columns = Math.max(1, Math.ceil(area.width / cell));
  const rows = Math.max(1, Math.ceil(area.height / cell));
  const seconds = new Float64Array(columns * rows);
  let outside = 0;
  let total = 0;
  const [xs, ys] = stream.fields.map((field) => field.values);
  for (let index = 0; index + 1 < stream.times.length; ++index) {
    const row = stream.row(index);
    const stay = stream.times[index + 1] - stream.times[index];
    const column = Math.floor((xs[row] - area.x) / cell);
    const line = Math.floor((ys[row] - area.y) / cell);
    total += stay;
    if (column >= 0 && column < columns && line >= 0 && line < rows) {
      seconds[line * columns + column] += stay;
    } else {
      outside += stay;
    }
  }
  return {columns, rows, seconds, total, outside};
}

class HeatMap {
  constructor(streams, area) {
    this.area = area;
    this.streams = streams.filter((stream) => stream.type === "points" && stream.times.length > 1);
    if (this.streams.length === 0 || !area) {
      byId("heat").hidden = true;
      return;
    }
    byId("heat-stream-label").hidden = this.streams.length === 1;
    byId("heat-stream").append(...this.streams.map((stream, i) => make("option", {value: String(i)}, stream.name)));
    // The bounding box includes its last row and column of pixels.
    this.box = area.isStated ? area : {...area, width: area.width + 1, height: area.height + 1};
    const sides = kCellSides.filter((side) => this.box.width / side * (this.box.height / side) <= kMaxCells);
    while (sides.length === 0 || Math.max(this.box.width, this.box.height) / sides[sides.length - 1] > 200) {
      sides.push(sides.length ? sides[sides.length - 1] * 4 : kCellSides[kCellSides.length - 1] * 4);
    }
    byId("heat-cell").append(...sides.map((side) => make("option", {value: String(side)}, `${side} px`)));
    const preferred = sides.find((side) => Math.max(this.box.width, this.box.height) / side <= 64) ?? sides[sides.length - 1];
    byId("heat-cell").value = String(preferred);
    for (const id of ["heat-stream", "heat-cell"]) byId(id).addEventListener("change", () => this.draw());
    this.drawScale();
    this.draw();
  }

  drawScale() {
    const canvas = byId("heat-scale");
    const context = canvas.getContext("2d");
    for (let x = 0; x < canvas.width; ++x) {
      context.fillStyle = `rgb(${heatColor(x / (canvas.width - 1)).join(" ")})`;
      context.fillRect(x, 0, 1, 1);
    }
  }

  draw() {
    const stream = this.streams[Number(byId("heat-stream").value)];
    const cell = Number(byId("heat-cell").value);
    const {columns, rows, seconds, total, outside} = dwellTimes(stream, this.box, cell);
    const longest = seconds.reduce((a, b) => Math.max(a, b), 0);
    const canvas = byId("heat-map");
    // Whole pixels per cell; the last column and row are cut where the screen ends.
    const zoom = Math.max(1, Math.min(24, Math.floor(1600 / columns)));
    canvas.width = Math.max(1, Math.round(this.box.width / cell * zoom));
    canvas.height = Math.max(1, Math.round(this.box.height / cell * zoom));
    canvas.style.aspectRatio = `${canvas.width} / ${canvas.height}`;
    const small = make("canvas", {width: columns, height: rows});
    const context = small.getContext("2d");
    const pixels = context.createImageData(columns, rows);
    for (let i = 0; i < seconds.length; ++i) {
      // The square root keeps short visits visible beside long stays.
      const [red, green, blue] = heatColor(longest > 0 ? Math.sqrt(seconds[i] / longest) : 0);
      pixels.data.set([red, green, blue, 255], 4 * i);
    }
    context.putImageData(pixels, 0, 0);
    const target = canvas.getContext("2d");
    target.imageSmoothingEnabled = false;
    target.drawImage(small, 0, 0, columns * zoom, rows * zoom);
    byId("heat-low").textContent = "0 s";
    byId("heat-high").textContent = `${shortNumber(longest, 3)} s per cell`;
    canvas.setAttribute("aria-label", `Heat map of ${stream.name}, ${columns} by ${rows} cells of ${cell} pixels`);
    this.listLongest(seconds, columns, cell, total);
    byId("heat-note").textContent = `Square-root colour scale. In total ${durationText(total)}` +
        (outside > 0 ? `, of which ${durationText(outside)} outside the screen.` : ".");
  }

  listLongest(seconds, columns, cell, total) {
    const top = [];
    seconds.forEach((stay, index) => {
      if (stay <= 0 || (top.length === kLongestStays && stay <= top[top.length - 1].stay)) return;
      top.push({stay, index});
      top.sort((a, b) => b.stay - a.stay);
      if (top.length > kLongestStays) top.pop();
    });
    byId("longest").tBodies[0].replaceChildren(...top.map(({stay, index}) => {
      const x = this.box.x + (index % columns) * cell;
      const y = this.box.y + Math.floor(index / columns) * cell;
      return make("tr", {}, make("td", {}, `x ${x}–${x + cell}, y ${y}–${y + cell}`),
          make("td", {class: "number"}, stay.toFixed(3)),
          make("td", {class: "number"}, `${(100 * stay / total).toFixed(1)} %`));
    }));
  }
}
