// What the alignment's window shows: which position is in which of its columns, and which sequence in which of its rows.
// Counting  columns and rows of the window from 1, like positions and sequences

import { natural } from "./names.js";

/** @typedef {import("./state.js").State} State */

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
  return Math.min(placeIn(list, p) + 1, list.length);
}

/** Where a position is, or would be. @param {ArrayLike<number>} positions that ascend @param {number} p */
function placeIn(positions, p) {
  let low = 0, high = positions.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (positions[middle] < p) low = middle + 1;
    else high = middle;
  }
  return low;
}

/** The letter of sequence i at position p, as a code; 0: it is not at hand. @param {import("./state.js").Tile | null} tile @param {number} i @param {number} p */
export function letterAt(tile, i, p) {
  const row = tile?.rows.get(i);
  if (!tile || row === undefined) return 0;
  const { positions, bytes } = tile, near = p - positions[0], k = positions[near] === p ? near : placeIn(positions, p);
  return positions[k] === p ? bytes[row + k] : 0;
}

/** The letters in sight, and as many around them on each side. @param {State} now */
export function wanted(now) {
  const { letters, columns, first, top, width, height } = now, n = letters?.names.length ?? 0, most = extent(now);
  if (!letters || !columns || most === 0) return null;
  const range = (/** @type {number} */ from, /** @type {number} */ to) => Array.from({ length: Math.max(to - from + 1, 0) }, (_, k) => from + k);
  const place = (/** @type {number} */ around) => ({
    rows: range(within(top - around * height, n), within(top + (1 + around) * height, n)).map((row) => sequenceAt(now, row)),
    columns: range(within(first - around * width, most), within(first + (1 + around) * width, most)).map((column) => positionAt(now, column)),
  });
  const inSight = place(0), { tile } = now, there = (/** @type {number} */ p) => letterAt(tile, inSight.rows[0], p) !== 0;
  const held = tile && inSight.rows.every((i) => tile.rows.has(i)) && inSight.columns.every(there);
  if (held) return null;
  const { rows: all, columns: positions } = place(1);
  return { rows: all, positions: Uint32Array.from(positions) };
}

/** The sequences in the order of the rows. */
const rows = remembered((now) => [now.letters, now.order, now.gaps], ({ letters, order, gaps }) => {
  if (!letters || order === "file" || (order === "gaps" && !gaps)) return null;
  const list = letters.names.map((_, k) => k + 1);
  if (order === "name") return list.sort((a, b) => natural(letters.names[a - 1], letters.names[b - 1]));
  return list.sort((a, b) => (gaps?.[a - 1] ?? 0) - (gaps?.[b - 1] ?? 0));
});

/** All sequences in the order of the rows. @param {State} now */
export const allRows = (now) => rows(now) ?? (now.letters?.names ?? []).map((_, k) => k + 1);

/** The sequence in a row. @param {State} now @param {number} row */
export const sequenceAt = (now, row) => rows(now)?.[row - 1] ?? row;

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
