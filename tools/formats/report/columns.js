// Reads the columns of the streams, which the page carries as text (tools/formats/Column.h).

function bytesOfBase64(text) {
  if (Uint8Array.fromBase64) return Uint8Array.fromBase64(text);
  const characters = atob(text);
  const bytes = new Uint8Array(characters.length);
  for (let i = 0; i < bytes.length; ++i) bytes[i] = characters.charCodeAt(i);
  return bytes;
}

// The bytes of data elements. The elements are removed, so that the text is not kept twice.
function takeBytes(ids) {
  const pieces = ids.map((id) => {
    const element = document.getElementById(id);
    element.remove();
    return bytesOfBase64(element.textContent);
  });
  const bytes = new Uint8Array(pieces.reduce((sum, piece) => sum + piece.length, 0));
  let at = 0;
  for (const piece of pieces) {
    bytes.set(piece, at);
    at += piece.length;
  }
  return bytes;
}

// `count` 32-bit words, stored as differences of order `order`.
function decodeWords32(bytes, count, order) {
  const words = new Int32Array(count);
  let at = 0;
  for (let i = 0; i < count; ++i) {
    let word = 0;
    let shift = 0;
    let byte;
    do {
      byte = bytes[at++];
      word |= (byte & 127) << shift;
      shift += 7;
    } while (byte & 128);
    words[i] = (word >>> 1) ^ -(word & 1);
  }
  for (let pass = 0; pass < order; ++pass) {
    for (let i = 1; i < count; ++i) words[i] += words[i - 1];
  }
  return words;
}

// The same for 64-bit words: pairs of 32 bits, the low half first.
function decodeWords64(bytes, count, order) {
  const words = new Int32Array(2 * count);
  let at = 0;
  for (let i = 0; i < 2 * count; i += 2) {
    let low = 0;
    let high = 0;
    let shift = 0;
    let byte;
    do {
      byte = bytes[at++];
      const bits = byte & 127;
      if (shift < 28) {
        low |= bits << shift;
      } else if (shift === 28) {
        low |= bits << 28;
        high |= bits >> 4;
      } else {
        high |= bits << (shift - 32);
      }
      shift += 7;
    } while (byte & 128);
    const sign = -(low & 1);
    words[i] = ((low >>> 1) | (high << 31)) ^ sign;
    words[i + 1] = (high >>> 1) ^ sign;
  }
  for (let pass = 0; pass < order; ++pass) {
    for (let i = 2; i < 2 * count; i += 2) {
      const low = (words[i] >>> 0) + (words[i - 2] >>> 0);
      words[i + 1] += words[i - 1] + (low > 0xffffffff ? 1 : 0);
      words[i] = low;
    }
  }
  return words;
}

// A column as a typed array; `column` is its description: ids, type, order, or "plain" for little-endian words.
function takeColumn(column, count) {
  const bytes = takeBytes(column.ids);
  const isWide = column.type !== "int32" && column.type !== "uint32";
  let buffer;
  if (column.order === "plain") {
    buffer = bytes.buffer;
  } else {
    buffer = (isWide ? decodeWords64 : decodeWords32)(bytes, count, column.order).buffer;
  }
  switch (column.type) {
    case "int32": return new Int32Array(buffer);
    case "uint32": return new Uint32Array(buffer);
    case "float64": return new Float64Array(buffer);
    case "int64": return new BigInt64Array(buffer);
    default: return new BigUint64Array(buffer);
  }
}

const kTextsPerElement = 2048;

// The texts of a stream, which stand in several elements. An element is read when one of its texts is
// asked for, and then removed, so that a page with a million texts opens fast.
class Texts {
  constructor(ids) {
    this.ids = ids;
    this.parts = [];
  }

  at(index) {
    const part = Math.floor(index / kTextsPerElement);
    if (!this.parts[part]) {
      const element = document.getElementById(this.ids[part]);
      this.parts[part] = JSON.parse(element.textContent);
      element.remove();
    }
    return this.parts[part][index % kTextsPerElement];
  }
}
