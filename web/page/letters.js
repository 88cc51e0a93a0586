// Reads the letters of an alignment as the program does; for a large alignment, those of its first sequences.

import { readLetters, readTable } from "./tables.js";

const newline = 10, mark = 62; // ">", with which records begin
const text = new TextDecoder();

/**
 * The part of an alignment that is enough.
 * @typedef {object} Part
 * @property {number} bytes of the file at most; the first sequence is read whole
 * @property {Uint32Array} column of the file that holds each position of the whole alignment
 * @property {number} width columns of the file
 * @property {number} numseq sequences of the whole alignment
 */

/** Where the last record up to `limit` begins, or the second one, if that is later. @param {Uint8Array} bytes @param {number} limit */
function cut(bytes, limit) {
  const first = bytes.indexOf(mark), begins = (/** @type {number} */ at) => bytes[at - 1] === newline;
  let at = bytes.lastIndexOf(mark, limit);
  while (at > first && !begins(at)) at = bytes.lastIndexOf(mark, at - 1);
  if (at > first) return at;
  at = limit;
  do at = bytes.indexOf(mark, at + 1); while (at > 0 && !begins(at));
  return at > 0 ? at : bytes.length;
}

/**
 * The first records, and after them one that has a residue in each position of the whole alignment, so that the program
 * drops the same columns from this part as from the whole.
 * @param {Uint8Array} bytes @param {Part} part
 */
function firstRecords(bytes, { bytes: limit, column, width }) {
  const pir = /^\s*>..;/.test(text.decode(bytes.subarray(0, 200)));
  const last = new Uint8Array(width).fill("-".charCodeAt(0));
  for (const c of column) last[c - 1] = "A".charCodeAt(0);
  const pieces = [bytes.subarray(0, cut(bytes, limit)), ...(pir ? [">P1;last\n\n", last, "*\n"] : [">last\n", last, "\n"])]
    .map((piece) => (typeof piece === "string" ? new TextEncoder().encode(piece) : piece));
  const whole = new Uint8Array(pieces.reduce((n, piece) => n + piece.length, 0));
  let at = 0;
  for (const piece of pieces) {
    whole.set(piece, at);
    at += piece.length;
  }
  return whole;
}

/**
 * Read the letters. The program writes them when it concatenates the input of a batch, here of this one alignment.
 * @param {(files: Record<string, Uint8Array>, args: string[]) => Promise<{files: Record<string, Uint8Array>}>} run the program
 * @param {Uint8Array} bytes of the file @param {Part} [part] without it, all sequences
 * @returns {Promise<import("./state.js").Letters | null>} null when the program reads no alignment, or another one in the part
 */
export async function letters(run, bytes, part) {
  const alignment = part ? firstRecords(bytes, part) : bytes;
  const { files } = await run({ alignment, list: new TextEncoder().encode("alignment\n") },
    ["list", "-c=Y", "-s=N", "-p=N", "--format=fasta", "--table=table.tsv"]);
  const [row] = readTable(files["table.tsv"] ?? new Uint8Array()), written = files["list.seq.fasta"];
  if (!written || !row || (part && Number(row.positions) !== part.column.length)) return null;
  const found = readLetters(written, Number(row.positions));
  if (part) found.names.pop();
  const nucleotides = /^\s*>D.;/.test(text.decode(bytes.subarray(0, 200))); // NBRF/PIR tells, FASTA does not
  return { ...found, numseq: part?.numseq ?? Number(row.sequences), nucleotides };
}
