// Colours of the page's theme, and canvases that are sharp on every display.

const themeListeners = [];
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
  for (const listener of themeListeners) listener();
});

function themeColor(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}

// Gives the canvas the pixels of its box and returns its context, in units of CSS pixels.
function prepareCanvas(canvas) {
  const scale = window.devicePixelRatio || 1;
  const {width, height} = canvas.getBoundingClientRect();
  canvas.width = Math.max(1, Math.round(width * scale));
  canvas.height = Math.max(1, Math.round(height * scale));
  const context = canvas.getContext("2d");
  context.setTransform(scale, 0, 0, scale, 0, 0);
  return {context, width, height};
}

// A perceptually even scale from dark violet to light yellow; `share` from 0 to 1. Returns [r, g, b].
const kHeatStops = [[24, 15, 62], [69, 16, 119], [114, 31, 129], [159, 47, 127], [205, 64, 113],
                    [241, 96, 93], [253, 149, 103], [254, 202, 141], [252, 253, 191]];
function heatColor(share) {
  const at = Math.min(1, Math.max(0, share)) * (kHeatStops.length - 1);
  const stop = Math.min(kHeatStops.length - 2, Math.floor(at));
  return kHeatStops[stop].map((from, i) => Math.round(from + (kHeatStops[stop + 1][i] - from) * (at - stop)));
}
