// Reads the tables and alignment files that the program writes. Works on bytes: the files are large.

import { kinds } from "./state.js";

const tab = 9, newline = 10, point = 46;
const text = new TextDecoder();

/** The lines of `--table`. @param {Uint8Array} bytes @returns {import("./state.js").Row[]} */
export function readTable(bytes) {
  const [header, ...lines] = text.decode(bytes).split("\n").filter((line) => line).map((line) => line.split("\t"));
  return lines.map((cells) => Object.fromEntries(header.map((name, k) => [name, cells[k] ?? ""])));
}

/**
 * The positions of `--columns`, found by the names in its header; `reason` and `initial` may be missing. Dropped columns are
 * no positions.
 * @param {Uint8Array} bytes @param {number} nupo @returns {import("./state.js").Columns}
 */
export function readColumns(bytes, nupo) {
  const initials = kinds.map((kind) => kind.charCodeAt(0));
  const header = text.decode(bytes.subarray(0, bytes.indexOf(newline))).split("\t");
  const [inColumn, inPosition, inScore, inResidue, inClass, inBlock, inReason, inInitial] =
    ["column", "position", "score", "residue", "class", "block", "reason", "initial"].map((name) => header.indexOf(name));
  const score = new Float32Array(nupo), residue = new Uint8Array(nupo), kind = new Uint8Array(nupo);
  const column = new Uint32Array(nupo), reason = new Uint32Array(inReason < 0 ? 0 : nupo), initial = new Uint32Array(nupo);
  /** @type {import("./state.js").Columns["blocks"]} */
  const blocks = [];
  /** @type {Map<number, {start: number, end: number, index: number}>} */
  const reasons = new Map(); // by their hash, where each is for the first time
  const same = (/** @type {{start: number, end: number}} */ one, /** @type {number} */ start, /** @type {number} */ end) => {
    let k = 0;
    while (start + k < end && bytes[start + k] === bytes[one.start + k]) ++k;
    return start + k === end && one.end - one.start === k;
  };
  const starts = new Uint32Array(header.length + 1); // of each field on the line
  /** The number in a field, with a point perhaps; 0 in an empty or a missing one. @param {number} field */
  const number = (field) => {
    let value = 0, unit = 0;
    for (let at = field < 0 ? Infinity : starts[field]; at < starts[field + 1] - 1; ++at) {
      if (bytes[at] === point) unit = 1;
      else {
        value = value * 10 + bytes[at] - 48;
        unit *= 10;
      }
    }
    return value / (unit || 1);
  };
  let p = 0, before = 0;
  for (let at = bytes.indexOf(newline) + 1; at > 0 && at < bytes.length && p < nupo;) {
    let field = 0;
    for (starts[0] = at; at < bytes.length; ++at) {
      if (bytes[at] !== tab && bytes[at] !== newline) continue;
      if (field < header.length) starts[++field] = at + 1;
      if (bytes[at] === newline) break;
    }
    ++at;
    starts.fill(at, field + 1); // a line may end early
    if (number(inPosition) === 0) continue;
    score[p] = number(inScore);
    residue[p] = bytes[starts[inResidue]];
    kind[p] = initials.indexOf(bytes[starts[inClass]]);
    column[p] = number(inColumn);
    initial[p] = number(inInitial);
    if (inReason >= 0) {
      // Each different reason is decoded once; the others are recognised by their bytes.
      const start = starts[inReason], end = starts[inReason + 1] - 1;
      let key = 0;
      for (let k = start; k < end; ++k) key = (Math.imul(key, 31) + bytes[k]) | 0;
      let found = reasons.get(key);
      while (found && !same(found, start, end)) found = reasons.get(++key);
      if (!found) reasons.set(key, found = { start, end, index: reasons.size });
      reason[p] = found.index;
    }
    ++p;
    const block = number(inBlock);
    if (block !== 0 && block !== before) blocks.push({ first: p, last: p });
    if (block !== 0) blocks[blocks.length - 1].last = p;
    before = block;
  }
  return { score, residue, kind, column, blocks, reasons: [...reasons.values()].map(({ start, end }) => text.decode(bytes.subarray(start, end))), reason, initial };
}

/** Letters on a line of the program's plain FASTA, in which every line but the last of a record is full. */
const lineLength = 60;

/** Where position p of a record is, counted from the record's start. @param {number} p */
export const place = (p) => p - 1 + Math.floor((p - 1) / lineLength);

/**
 * The records of a plain FASTA file that the program wrote: the name of each and where its letters start.
 * @param {Uint8Array} bytes @param {number} nupo positions
 */
export function readLetters(bytes, nupo) {
  const names = [], starts = [];
  let at = 0;
  while (at < bytes.length) {
    const start = bytes.indexOf(newline, at) + 1;
    names.push(text.decode(bytes.subarray(at + 1, start - 1)).trim());
    starts.push(start);
    at = start + place(nupo) + 2;
  }
  return { bytes, names, starts };
}
