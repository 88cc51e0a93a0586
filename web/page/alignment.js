// Draws the part of the alignment that is in sight: letters and names, and the layers below. On any surface.

import { classColours, codonPositions, isCodons, layers, signs } from "./layers.js";
import { residuesOf } from "./parameters.js";
import { extent, letterAt, positionAt, sequenceAt } from "./sight.js";
import { isNucleic } from "./state.js";
import { colour } from "./theme.js";

/** @typedef {import("./state.js").State} State */

export const cell = { width: 9, height: 16 }, ruler = 20, layerHeight = 13;

/** Residues and the colours of their classes. @typedef {[string, string][]} Groups */
/** As in the report, on black. @type {Groups} */
const proteins = [["AGST", "lime"], ["C", "orange"], ["P", "aqua"], ["DEQN", "white"], ["FWY", "yellow"], ["HKR", "red"], ["ILMV", "fuchsia"]];
/** @type {Groups} */
const nucleotides = [["A", "red"], ["C", "aqua"], ["G", "lime"], ["TU", "orange"]];
/** By class, below dark letters. @type {Groups} */
const softProteins = [["AGST", "#b9e6a1"], ["C", "#ffd28a"], ["P", "#a9e7e7"], ["DE", "#f2b8e6"], ["NQ", "#e3dcfa"], ["FWY", "#f5ee8e"], ["HKR", "#ffb3a8"], ["ILMV", "#b5cdfb"]];
/** @type {Groups} */
const softNucleotides = [["A", "#b9e6a1"], ["C", "#b5cdfb"], ["G", "#ffd28a"], ["TU", "#ffb3a8"]];
/** Colours that people with any kind of colour blindness tell apart: they differ in lightness as well. @type {Groups} */
const safeProteins = [["AGST", "#f0e442"], ["C", "#ffffff"], ["P", "#cccccc"], ["DE", "#d55e00"], ["NQ", "#cc79a7"], ["FWY", "#009e73"], ["HKR", "#56b4e9"], ["ILMV", "#e69f00"]];
/** @type {Groups} */
const safeNucleotides = [["A", "#f0e442"], ["C", "#56b4e9"], ["G", "#e69f00"], ["TU", "#009e73"]];
const palettes = { report: [proteins, nucleotides], classes: [softProteins, softNucleotides], safe: [safeProteins, safeNucleotides] };

/** Colours by the code of a residue. @param {State} now */
function coloursOf(now) {
  /** @type {string[]} */
  const colours = [];
  for (const [residues, name] of palettes[now.palette][isNucleic(now) ? 1 : 0]) for (const c of residues) colours[c.charCodeAt(0)] = name;
  return colours;
}

const capital = (/** @type {number} */ c) => (c >= 97 && c <= 122 ? c - 32 : c);

/** The amino acid of a codon that begins at position p of sequence i. @param {State} now @param {number} i @param {number} p @param {number} nupo */
function aminoAcid({ tile, values }, i, p, nupo) {
  if (p + 2 > nupo) return " ";
  const codes = [0, 1, 2].map((k) => "TCAG".indexOf(String.fromCharCode(capital(letterAt(tile, i, p + k))).replace("U", "T")));
  if (codes.every((code) => code >= 0)) return residuesOf(values)[codes[0] * 16 + codes[1] * 4 + codes[2]];
  return [0, 1, 2].every((k) => letterAt(tile, i, p + k) === 45) ? "-" : "X";
}

/** How high the drawing is with so many rows. @param {State} now @param {number} rows */
export const heightOf = (now, rows) => ruler + rows * cell.height + layers(now).length * layerHeight + 4;

/**
 * What is in sight, and where.
 * @typedef {object} Sight
 * @property {number} first @property {number} last columns
 * @property {number} top @property {number} end rows, and one past the last
 * @property {(column: number) => number} x @property {(row: number) => number} y
 */

/** Numbers above, frames of codons, and lines where positions are left out. @param {import("./surface.js").Surface} surface @param {State} now @param {Sight} sight */
function drawRuler(surface, now, { first, last, end, x, y }) {
  const ink = colour("ink"), line = (/** @type {number} */ d, /** @type {string} */ name) => surface.rect(x(d), ruler - 4, 1, y(end) - ruler + 4, colour(name));
  for (let d = first; d <= last; ++d) {
    const p = positionAt(now, d);
    if (p % 10 === 0) {
      surface.text(x(d) + cell.width / 2, 7, String(p), ink, { align: "center" });
      surface.rect(x(d) + cell.width / 2, 14, 1, 4, ink);
    }
    if (isCodons(now) && codonPositions(p) === 1) line(d, "faint");
    if (now.trimmed && d > first && positionAt(now, d - 1) !== p - 1) line(d, "window");
  }
}

/** @param {import("./surface.js").Surface} surface @param {State} now @param {import("./state.js").Columns} columns @param {Sight} sight */
function drawLetters(surface, now, columns, { first, last, top, end, x, y }) {
  const ink = colour("ink"), colours = coloursOf(now), translating = now.translated && isCodons(now), nupo = columns.score.length;
  for (let row = top; row < end; ++row) {
    const i = sequenceAt(now, row);
    for (let d = first; d <= last; ++d) {
      const p = positionAt(now, d), c = letterAt(now.tile, i, p);
      if (c === 0) continue; // it is on its way
      const agrees = !translating && columns.kind[p - 1] >= 2 && capital(c) === columns.residue[p - 1];
      const of = translating ? "" : colours[capital(c)]; // the colours are those of bases
      const back = now.palette === "report" ? (agrees ? "black" : "") : of ?? "";
      if (back) surface.rect(x(d), y(row), cell.width, cell.height, back);
      const fill = now.palette === "report" ? (agrees ? of ?? "white" : ink) : of ? "black" : ink;
      const text = !translating ? String.fromCharCode(c) : codonPositions(p) === 2 ? aminoAcid(now, i, p - 1, nupo) : " ";
      surface.text(x(d) + cell.width / 2, y(row) + cell.height / 2 + 1, text, fill, { size: 13, align: "center", mono: true });
    }
  }
}

/** The height of a layer. @param {Sight} sight @param {number} k from 0 */
const above = ({ end, y }, k) => y(end) + 3 + k * layerHeight;

/** @param {import("./surface.js").Surface} surface @param {State} now @param {import("./state.js").Columns} columns @param {Sight} sight */
function drawLayers(surface, now, columns, sight) {
  layers(now).forEach(({ key, holds }, k) => {
    const at = above(sight, k);
    for (let d = sight.first; d <= sight.last; ++d) {
      const p = positionAt(now, d), kind = columns.kind[p - 1];
      if (key === "class") surface.text(sight.x(d) + cell.width / 2, at + 6, signs[kind], colour(classColours[kind]), { size: 12, align: "center", mono: true });
      else if (holds(p)) surface.rect(sight.x(d), at + 2, cell.width, layerHeight - 5, colour(key === "selected" ? "selected" : "layer"));
    }
  });
}

/**
 * Draw the rows and columns in sight into a width; names take `names` of it.
 * @param {import("./surface.js").Surface} surface @param {State} now
 * @param {{width: number, rows: number, columns: number, names: number}} size
 */
export function drawAlignment(surface, now, { width, rows, columns: fit, names }) {
  const { columns, letters, first, top } = now;
  if (!columns || !letters) return;
  /** @type {Sight} */
  const sight = {
    first, last: Math.min(first + fit - 1, extent(now)), top, end: Math.min(top + rows, letters.names.length + 1),
    x: (column) => names + (column - first) * cell.width, y: (row) => ruler + (row - top) * cell.height,
  };
  surface.within(names, 0, width - names, 1e5, () => {
    drawRuler(surface, now, sight);
    drawLetters(surface, now, columns, sight);
    drawLayers(surface, now, columns, sight);
  });
  surface.within(0, 0, names - 6, 1e5, () => {
    for (let row = top; row < sight.end; ++row) {
      surface.text(4, sight.y(row) + cell.height / 2 + 1, letters.names[sequenceAt(now, row) - 1], colour("ink"), { size: 13, mono: true });
    }
    layers(now).forEach(({ name }, k) => surface.text(4, above(sight, k) + 6, name, colour("soft")));
  });
}
