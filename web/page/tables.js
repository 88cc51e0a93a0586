// What the program tells in tables and alignment files, as numbers and places. Works on bytes: the files are large.

import { kinds } from "./state.js";

const tab = 9, newline = 10;
const text = new TextDecoder();

/** The lines of `--table`. @param {Uint8Array} bytes @returns {import("./state.js").Row[]} */
export function readtable(bytes) {
  const [header, ...lines] = text.decode(bytes).split("\n").filter((line) => line).map((line) => line.split("\t"));
  return lines.map((cells) => Object.fromEntries(header.map((name, k) => [name, cells[k] ?? ""])));
}

/**
 * The positions of `--columns`: column, position, score, residue, class, block, new. Dropped columns are no positions.
 * @param {Uint8Array} bytes @param {number} nupo @returns {import("./state.js").Columns}
 */
export function readcolumns(bytes, nupo) {
  const initials = kinds.map((kind) => kind.charCodeAt(0));
  const score = new Float32Array(nupo), residue = new Uint8Array(nupo), kind = new Uint8Array(nupo);
  const column = new Uint32Array(nupo);
  const blocks = [];
  let at = bytes.indexOf(newline) + 1, block = 0, p = 0;
  const skip = () => { // to the field behind the next tab
    at = bytes.indexOf(tab, at) + 1;
  };
  const number = () => { // decimal digits, with a point perhaps, up to the tab
    let value = 0, unit = 0, c;
    while ((c = bytes[at++]) !== tab && c !== newline) {
      if (c === 46) unit = 1;
      else {
        value = value * 10 + c - 48;
        unit *= 10;
      }
    }
    return value / (unit || 1);
  };
  for (let line = 1; at < bytes.length && p < nupo; ++line) {
    skip();
    const dropped = bytes[at] === tab;
    if (!dropped) {
      skip();
      score[p] = number();
      residue[p] = bytes[at];
      skip();
      kind[p] = initials.indexOf(bytes[at]);
      column[p] = line;
      skip();
      const inblock = bytes[at] === tab ? 0 : number();
      ++p;
      if (inblock !== 0 && inblock !== block) blocks.push({ first: p, last: p });
      if (inblock !== 0) blocks[blocks.length - 1].last = p;
      block = inblock;
    }
    at = bytes.indexOf(newline, at - 1) + 1;
    if (at === 0) break;
  }
  return { score, residue, kind, column, blocks };
}

/** Letters on a line of the program's plain FASTA, in which every line but the last of a record is full. */
const linelength = 60;

/** Where position p of a record stands behind the record's start. @param {number} p */
export const place = (p) => p - 1 + Math.floor((p - 1) / linelength);

/**
 * The records of a plain FASTA file that the program wrote: of each the name and where its letters start.
 * @param {Uint8Array} bytes @param {number} nupo positions
 */
export function readletters(bytes, nupo) {
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
