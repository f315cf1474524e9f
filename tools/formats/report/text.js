// Numbers, times and names for people.

const kKeyNames = {
  8: "Backspace", 9: "Tab", 10: "Enter", 13: "Enter", 27: "Esc", 32: "Space", 127: "Delete",
};

function plural(count, one, many) {
  return `${count.toLocaleString("en-US")} ${count === 1 ? one : many}`;
}

function byteText(bytes) {
  const units = ["B", "KiB", "MiB", "GiB", "TiB"];
  let unit = 0;
  while (bytes >= 1024 && unit + 1 < units.length) {
    bytes /= 1024;
    ++unit;
  }
  return `${unit === 0 ? bytes : bytes.toFixed(bytes < 10 ? 2 : 1)} ${units[unit]}`;
}

// Seconds as a clock shows them: 1:02:03.456.
function clockText(seconds, digits = 3) {
  if (!Number.isFinite(seconds)) return String(seconds);
  if (Math.abs(seconds) >= 1e9) return `${seconds.toExponential(3)} s`;
  const scale = 10 ** digits;
  let units = Math.round(Math.abs(seconds) * scale);
  const sign = seconds < 0 && units > 0 ? "−" : "";
  const fraction = digits > 0 ? `.${String(units % scale).padStart(digits, "0")}` : "";
  units = Math.floor(units / scale);
  const two = (value) => String(value).padStart(2, "0");
  const hours = Math.floor(units / 3600);
  const minutes = Math.floor(units / 60) % 60;
  return hours > 0 ? `${sign}${hours}:${two(minutes)}:${two(units % 60)}${fraction}`
                   : `${sign}${minutes}:${two(units % 60)}${fraction}`;
}

function durationText(seconds) {
  if (!(Math.abs(seconds) < 1e9)) return `${seconds} s`;
  return seconds < 60 ? `${Number(seconds.toFixed(3))} s` : clockText(seconds, seconds < 3600 ? 1 : 0);
}

// At most `digits` significant digits, without an exponent where it reads well.
function shortNumber(value, digits = 6) {
  if (!Number.isFinite(value)) return String(value);
  if (Number.isInteger(value) && Math.abs(value) < 1e15) return String(value);
  return String(Number(value.toPrecision(digits)));
}

function keyText(code) {
  if (kKeyNames[code]) return kKeyNames[code];
  const isCharacter = code > 32 && code <= 0x10ffff && !(code >= 0xd800 && code <= 0xdfff) &&
      !(code >= 127 && code < 160);
  return isCharacter ? visible(String.fromCodePoint(code)) : `#${code}`;
}

// A text on one line, with what would not be seen or would reorder its surroundings as escapes.
function visible(text) {
  return text.replace(/[\u0000-\u001f\u007f-\u009f\u061c\u200e\u200f\u2028\u2029\u202a-\u202e\u2066-\u2069]/g, (character) => {
    const code = character.charCodeAt(0);
    return code === 9 ? "⇥" : code === 10 ? "↵" : `\\u${code.toString(16).padStart(4, "0")}`;
  });
}

// Creates an element with properties and children; texts become text nodes, never markup.
function make(name, properties = {}, ...children) {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(properties)) {
    if (value === undefined || value === null || value === false) continue;
    if (key in element && typeof value !== "string") {
      element[key] = value;
    } else {
      element.setAttribute(key, value);
    }
  }
  element.append(...children.filter((child) => child !== null && child !== undefined));
  return element;
}

const byId = (id) => document.getElementById(id);
