// What the alignment's window shows: which position is in which of its columns, and which sequence in which of its rows.
// Counting  columns and rows of the window from 1, like positions and sequences

import { place } from "./tables.js";

/** @typedef {import("./state.js").State} State */

const gap = 45;

/**
 * A function that is computed again only when what it reads has changed.
 * @template T @param {(now: State) => unknown[]} reads @param {(now: State) => T} compute @returns {(now: State) => T}
 */
export function remembered(reads, compute) {
  /** @type {unknown[]} */ let before = [];
  /** @type {T} */ let value;
  return (now) => {
    const seen = reads(now);
    if (before.length === 0 || seen.some((one, k) => one !== before[k])) [before, value] = [seen, compute(now)];
    return value;
  };
}

/** The selected positions, where the window shows only these. */
const kept = remembered((now) => [now.columns, now.trimmed], ({ columns, trimmed }) =>
  columns && trimmed ? columns.blocks.flatMap(({ first, last }) => Array.from({ length: last - first + 1 }, (_, k) => first + k)) : null);

/** Columns of the window's whole extent. @param {State} now */
export const extent = (now) => kept(now)?.length ?? now.columns?.score.length ?? 0;

/** The position in a column. @param {State} now @param {number} column */
export const positionAt = (now, column) => kept(now)?.[column - 1] ?? column;

/** The column that shows a position, or the next one that is shown. @param {State} now @param {number} p */
export function columnOf(now, p) {
  const list = kept(now);
  if (!list) return p;
  let low = 0, high = list.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (list[middle] < p) low = middle + 1;
    else high = middle;
  }
  return Math.min(low + 1, list.length);
}

/** The letters of sequence i as text, from one position to another. @param {import("./state.js").Letters} letters @param {number} i @param {number} from @param {number} to */
export function rowText(letters, i, from, to) {
  const start = letters.starts[i - 1];
  return new TextDecoder("latin1").decode(letters.bytes.subarray(start + place(from), start + place(to) + 1)).replaceAll("\n", "");
}

/** The letter of sequence i at position p, as a code. @param {import("./state.js").Letters} letters @param {number} i @param {number} p */
export const letterAt = (letters, i, p) => letters.bytes[letters.starts[i - 1] + place(p)];

const natural = new Intl.Collator("en", { numeric: true }).compare;

/** The sequences in the order of the rows. */
const rows = remembered((now) => [now.letters, now.order, now.columns?.score.length], ({ letters, order, columns }) => {
  if (!letters || !columns || order === "file") return null;
  const list = letters.names.map((_, k) => k + 1);
  if (order === "name") return list.sort((a, b) => natural(letters.names[a - 1], letters.names[b - 1]));
  const gaps = list.map((i) => {
    let n = 0;
    for (let at = letters.starts[i - 1], end = at + place(columns.score.length); at <= end; ++at) n += letters.bytes[at] === gap ? 1 : 0;
    return n;
  });
  return list.sort((a, b) => gaps[a - 1] - gaps[b - 1]);
});

/** The sequence in a row. @param {State} now @param {number} row */
export const sequenceAt = (now, row) => rows(now)?.[row - 1] ?? row;

/** The row of a sequence. @param {State} now @param {number} i */
export const rowOf = (now, i) => (rows(now)?.indexOf(i) ?? i - 1) + 1;

/** @param {number} n @param {number} most */
export const within = (n, most) => Math.max(1, Math.min(n, most));

/** Scroll so that column and row are in sight; the change of state that does it. @param {State} now @param {number} column @param {number} [row] */
export function reveal(now, column, row = now.top) {
  const { first, width, top, height } = now;
  return {
    first: column >= first && column < first + width ? first : within(column - Math.floor(width / 3), extent(now) - width + 1),
    top: row >= top && row < top + height ? top : within(row - Math.floor(height / 3), (now.letters?.names.length ?? 1) - height + 1),
  };
}
