// What the engine's thread tells of the letters that it holds. Rows and positions count from 1.

const gap = "-".charCodeAt(0), newline = "\n".charCodeAt(0);
const latin = new TextDecoder("latin1"), utf8 = new TextEncoder();
const mostCopied = 2e7; // letters, at most
const sampled = 20; // sequences that tell of which type they are
const enough = 20; // letters: a protein of that length is not made of the letters of nucleotides alone

/** @typedef {import("trimora").Alignment} Alignment */

/** Whether the letters are those of nucleotides; null: too few to tell. @param {Alignment} ali */
export function nucleotides(ali) {
  const found = Array.from({ length: Math.min(sampled, ali.size) }, (_, i) => latin.decode(ali.letters(i, 0, 2000))).join("").replace(/[^A-Za-z]/g, "");
  return found.length < enough ? null : /^[ACGTUN]+$/i.test(found);
}

/** The letters of sequence i at some positions, which ascend. @param {Alignment} ali @param {Uint32Array} column @param {number} i @param {ArrayLike<number>} positions */
function lettersAt(ali, column, i, positions) {
  const n = positions.length, found = new Uint8Array(n);
  if (n === 0) return found;
  const first = column[positions[0] - 1], row = ali.letters(i - 1, first - 1, column[positions[n - 1] - 1]);
  for (let k = 0; k < n; ++k) found[k] = row[column[positions[k] - 1] - first];
  return found;
}

const range = (/** @type {number} */ from, /** @type {number} */ to) => Uint32Array.from({ length: to - from + 1 }, (_, k) => from + k);

/** All positions of sequence i. @param {Alignment} ali @param {Uint32Array} column @param {number} i */
const whole = (ali, column, i) => (column.length === ali.width ? ali.letters(i - 1) : lettersAt(ali, column, i, range(1, column.length)));

/** Some positions of some rows, row by row. @param {Alignment} ali @param {Uint32Array} column @param {number[]} rows @param {ArrayLike<number>} positions */
export function sample(ali, column, rows, positions) {
  const found = new Uint8Array(rows.length * positions.length);
  rows.forEach((i, k) => found.set(lettersAt(ali, column, i, positions), k * positions.length));
  return found;
}

/** The gaps of each sequence. @param {Alignment} ali @param {Uint32Array} column */
export const gaps = (ali, column) => Uint32Array.from({ length: ali.size }, (_, k) => {
  let n = 0;
  for (const c of whole(ali, column, k + 1)) n += c === gap ? 1 : 0;
  return n;
});

/** A motif may have gaps inside; x, . and ? match any residue. @param {string} motif */
const motifPattern = (motif) => new RegExp(Array.from(motif, (c) => (/[x.?]/i.test(c) ? "[^-]" : c.replace(/[^A-Za-z]/g, "\\$&"))).join("-*"), "gi");

/**
 * The next place of a motif: from position `from` of the row number `start` on, and in the end that row once more.
 * @param {Alignment} ali @param {Uint32Array} column @param {string} motif @param {number[]} rows sequences @param {number} start from 0 @param {number} from
 * @returns {{row: number, first: number, last: number} | null} the row from 1
 */
export function find(ali, column, motif, rows, start, from) {
  const pattern = motifPattern(motif);
  for (let k = 0; k <= rows.length; ++k) {
    const at = (start + k) % rows.length;
    pattern.lastIndex = k === 0 ? from : 0;
    const found = pattern.exec(latin.decode(whole(ali, column, rows[at])));
    if (found) return { row: at + 1, first: found.index + 1, last: found.index + found[0].length };
  }
  return null;
}

/** Some positions of some rows as FASTA; null: too much. @param {Alignment} ali @param {Uint32Array} column @param {number[]} rows @param {Uint32Array} positions */
export function fasta(ali, column, rows, positions) {
  if (rows.length * positions.length > mostCopied) return null;
  const { names } = ali, parts = [];
  for (const i of rows) parts.push(utf8.encode(`>${names[i - 1]}\n`), lettersAt(ali, column, i, positions), Uint8Array.of(newline));
  return new Blob(parts).text();
}
