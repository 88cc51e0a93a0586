// What the page says of a position, a cell and a layer. Reasons are the program's own words: the page only shows them.

import { codonPositions, isCodons } from "./layers.js";
import { inForce } from "./parameters.js";
import { letterAt } from "./sight.js";
import { kinds, shownRow, size } from "./state.js";

/** @typedef {import("./state.js").State} State */

const count = new Intl.NumberFormat("en");
export const number = (/** @type {string | number} */ n) => count.format(Number(n));
export const plural = (/** @type {string | number} */ n, /** @type {string} */ word) => `${number(n)} ${word}${Number(n) === 1 ? "" : "s"}`;

/** Which selected block holds position p, from 1; 0: none. @param {import("./state.js").Columns} columns @param {number} p */
const blockOf = (columns, p) => columns.blocks.findIndex(({ first, last }) => first <= p && p <= last) + 1;

/** What became of position p: the block that holds it, and the program's reason. @param {State} now @param {number} p */
function outcome(now, p) {
  const { columns } = now;
  if (!columns) return "";
  const block = blockOf(columns, p), reason = columns.reasons[columns.reason[p - 1]] ?? "";
  const told = block > 0 ? `selected, in block ${block}` : "not selected";
  return reason && reason !== "selected" ? `${told}: ${reason}` : told;
}

/** What is known of position p. @param {State} now @param {number} p */
export function explain(now, p) {
  const { columns } = now, row = shownRow(now);
  if (!columns || !row || p < 1 || p > columns.score.length) return "";
  const kind = kinds[columns.kind[p - 1]], score = Math.round(columns.score[p - 1] * 100) / 100;
  const asked = row.b1 === "NA" ? "" : { flank: `b2 asks for ${row.b2}`, conserved: `b1 asks for ${row.b1}, b2 for ${row.b2}`, nonconserved: `b1 asks for ${row.b1}` }[kind];
  const away = columns.column[p - 1] === p ? "" : ` (column ${number(columns.column[p - 1])} of the file)`;
  const agree = kind !== kinds[0] ? `${String.fromCharCode(columns.residue[p - 1])}, score ${score} of ${number(row.sequences)}; ` : "";
  const frame = isCodons(now) ? `, codon ${Math.floor((p - 1) / 3) + 1}, its position ${codonPositions(p)}` : "";
  return `Position ${number(p)}${away}${frame}: ${agree}${kind}${asked ? ` (${asked})` : ""}; ${outcome(now, p)}`;
}

/** What a screen reader says of the cell of sequence i at position p. @param {State} now @param {number} i @param {number} p */
export function cellWords(now, i, p) {
  const { columns, letters } = now, code = letterAt(now.tile, i, p);
  if (!columns || !letters || code === 0) return "";
  const letter = String.fromCharCode(code);
  return `${letters.names[i - 1]}, ${letter === "-" ? "gap" : letter}, position ${p}, column ${columns.column[p - 1]}, ` +
    `${kinds[columns.kind[p - 1]]}, ${outcome(now, p)}`;
}

/** The rule of a layer, in a sentence. @param {State} now @param {string} layer */
export function ruleOf(now, layer) {
  const row = shownRow(now), b = (/** @type {string} */ name) => inForce(now.values, name, size(now));
  if (row?.b1 === "NA") return "Every column is kept, unless it is a gap in every sequence.";
  return {
    class: `F flank: scores at least b2 = ${row?.b2}. C conserved: at least b1 = ${row?.b1}. · nonconserved: less. – gap position: b5 does not allow its gaps, or it has no known residue.`,
    initial: `Initial blocks run from flank to flank, across at most b3 = ${b("b3")} nonconserved positions in a row; those shorter than b0 = ${b("b0")} are dropped.`,
    gaps: "After the gaps: gap positions are cut out of the initial blocks, together with the nonconserved positions beside them.",
    rest: `After b4: what is left between gaps is dropped when it is shorter than b4 = ${b("b4")}.`,
    frame: "Codon frame: each block is shrunk so that it begins at a first and ends at a third codon position.",
    selected: "Selected: what is written for the next program. A block may hold nonconserved columns.",
  }[layer] ?? "";
}
