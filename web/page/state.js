// The one state of the page, and how it changes: views are functions of it and are drawn again after each change.
// Counting  positions and sequences from 1, as everywhere in Trimora

import { refused } from "./parameters.js";

/**
 * An alignment's columns as `--columns` tells them, one entry a position.
 * @typedef {object} Columns
 * @property {Float32Array} score in sequences
 * @property {Uint8Array} residue code of the most frequent one, in capitals
 * @property {Uint8Array} kind index into `kinds`
 * @property {Uint32Array} column of the file
 * @property {{first: number, last: number}[]} blocks selected, from left to right
 * @property {number} empty blocks besides, of codons, that hold no whole one
 * @property {string[]} reasons each different reason that the program gives once; empty where it gives none
 * @property {Uint32Array} reason index into `reasons`
 * @property {Uint32Array} initial number of the initial block that holds the position, 0: none
 */
/** What a position may be. */
export const kinds = ["gap position", "nonconserved", "conserved", "flank"];

/**
 * What is known of an alignment whatever the values are. Its letters stay with the engine.
 * @typedef {object} Letters
 * @property {string[]} names of the sequences
 * @property {number} numseq
 * @property {string | null} kind that the file or the letters say: protein or dna
 * @property {boolean | null} nucleotides whether the letters are those of nucleotides; null: too few to tell
 */

/**
 * The letters in sight and around it: those of some rows at some positions, row by row.
 * @typedef {object} Tile
 * @property {Map<number, number>} rows where the letters of a sequence begin in `bytes`
 * @property {Uint32Array} positions that ascend
 * @property {Uint8Array} bytes
 */

/**
 * The names in a batch: in how many alignments they could be read, whether they are the same everywhere, and the rules by
 * which more of them meet.
 * @typedef {{readable: number, same: boolean, rules: import("trimora").NameRule[]}} Naming
 */

/** A line of `--table`, by the names of its header. @typedef {Record<string, string>} Row */

/**
 * @typedef {object} State
 * @property {import("./open.js").Opened | null} opened
 * @property {string} shown name of the alignment that is looked at
 * @property {Record<string, string>} values of the parameters, as on the command line; "" or absent: the default
 * @property {boolean | null} asShares whether b1 and b2 are given in per cent of the sequences; null: where they have to be
 * @property {Record<string, string>} outputs values of the options that choose what is written
 * @property {boolean} running
 * @property {Row[]} table of the last run
 * @property {import("../../src/output/overview/overview.js").OverviewData | null} overview of the last run of a batch
 * @property {Record<string, string> | null} overviewOf the values under which it was made
 * @property {string[]} notes lines that the last run wrote on standard error
 * @property {string} failure why there is no result, in a sentence; "" when there is one
 * @property {string} notice what became of the last action
 * @property {string} printed standard output of the last run
 * @property {string} kind that the alignment shown is taken for: protein, dna or codons; "" where nothing says it
 * @property {Columns | null} columns of the alignment shown
 * @property {Letters | null} letters of the alignment shown
 * @property {Tile | null} tile of it
 * @property {Uint32Array | null} gaps of each of its sequences, where they were asked for
 * @property {import("./parameters.js").Size | null} standards of an alignment of its size
 * @property {number} first column at the left of the alignment's window
 * @property {number} width columns in that window
 * @property {number} top row at its upper edge
 * @property {number} height rows in it
 * @property {number} at position that is pointed at; 0: none
 * @property {string} layer that is pointed at; "": none
 * @property {{row: number, first: number, toRow: number, to: number} | null} marked rows and columns of the window, from
 *   where the marking began to where it ended
 * @property {"file" | "name" | "gaps"} order of the rows
 * @property {"report" | "classes" | "safe"} palette
 * @property {boolean} trimmed whether the window shows the selected positions only
 * @property {boolean} translated whether it shows the amino acids of codons
 * @property {import("./compare.js").Pinned | null} pinned the other one of two settings that are compared
 * @property {string} focused parameter whose field has the focus; "": none
 * @property {Naming | null} names what those of the sequences of a batch say, when they are read
 */

/** @type {State} */
export const state = {
  opened: null, shown: "", values: {}, asShares: null, outputs: { s: "Y", p: "Y" },
  running: false, table: [], overview: null, overviewOf: null, notes: [], failure: "", notice: "", printed: "", kind: "", columns: null, letters: null, tile: null, gaps: null, standards: null,
  first: 1, width: 1, top: 1, height: 1, at: 0, layer: "", marked: null,
  order: "file", palette: "report", trimmed: false, translated: false, pinned: null, focused: "", names: null,
};

/** What no alignment has yet that was just opened or chosen. @type {Partial<State>} */
export const unread = { columns: null, letters: null, tile: null, gaps: null, first: 1, top: 1, at: 0, layer: "", marked: null };

/** @type {((state: State) => void)[]} */
const views = [];
let due = false;

/** Draw `view` after each change. @param {(state: State) => void} view */
export function show(view) {
  views.push(view);
}

/** Change the state; all views are drawn once, before the next frame. @param {Partial<State>} change */
export function update(change) {
  Object.assign(state, change);
  if (due) return;
  due = true;
  requestAnimationFrame(() => {
    due = false;
    for (const view of views) view(state);
  });
}

/** A view that is drawn only when one of what it reads changed. @param {(state: State) => unknown[]} reads @param {(state: State) => void} draw */
export function showWhen(reads, draw) {
  /** @type {unknown[]} */
  let before = [];
  show((now) => {
    const values = reads(now);
    if (before.length > 0 && values.every((value, k) => value === before[k])) return;
    before = values;
    draw(now);
  });
}

/** The row of the alignment shown. @param {State} now @returns {Row | undefined} */
export const shownRow = (now) => now.table.find((row) => row.alignment === now.shown) ?? now.table[0];

/** Sequences of the alignment shown; 0: not known. @param {State} now */
export const numseq = (now) => Number(shownRow(now)?.sequences) || now.letters?.numseq || 0; // a failed one has none

/** Its size, with what is in force by default; nothing is known as long as `numseq` is 0. @param {State} now @returns {import("./parameters.js").Size} */
export const size = (now) => (now.standards?.numseq === numseq(now) ? now.standards : { numseq: 0, b1: 0, b2: 0 });

/** How many different numbers of sequences the alignments have, also those that do not fit the others. @param {State} now */
export const sizes = (now) => new Set(now.table.map(({ sequences }) => Number(sequences)).filter((n) => n > 0)).size;

/** Whether b1 and b2 are given in per cent of the sequences. @param {State} now */
export function shares(now) {
  const given = [now.values.b1, now.values.b2].filter((value) => value);
  if (given.length > 0) return given.some((value) => value.endsWith("%"));
  return now.asShares ?? sizes(now) > 1;
}

/** Whether the alignment shown is read as nucleotides. @param {State} now */
export function isNucleic({ values: { t }, kind, letters }) {
  if (t) return t !== "P";
  const found = kind || letters?.kind;
  return found ? found !== "protein" : letters?.nucleotides ?? false;
}

/** How sequences are put together, which decides as well whether b1 and b2 fit all alignments. @param {State} now */
export const matching = (now) => [
  ...(now.outputs.match ? [`--match=${now.outputs.match}`] : []),
  ...(now.outputs.match === "name" && now.outputs.species ? now.outputs.species.split(" ") : []),
];

/** What is put together. @param {State} now */
export const joining = (now) => ["a", "c", "w"].filter((option) => option in now.outputs).map((option) => `-${option}=Y`);

/** How many alignments are open. @param {State} now */
export const isBatch = (now) => (now.opened?.alignments.length ?? 0) > 1;

/** Whether the program would refuse a value, so that what is shown belongs to other values. @param {State} now */
export const invalid = (now) => refused(now.values, size(now));

/** Give an element new content; the focus stays on what has the same key. @param {Element} parent @param {(Node | string)[]} content */
export function refill(parent, ...content) {
  const key = parent.contains(document.activeElement) ? document.activeElement?.getAttribute("data-key") : null;
  parent.replaceChildren(...content);
  if (key) for (const one of parent.querySelectorAll("[data-key]")) if (one.getAttribute("data-key") === key) /** @type {HTMLElement} */ (one).focus({ preventScroll: true });
}

/** @template {HTMLElement} T @param {string} id @param {{new(): T}} type @returns {T} */
export function element(id, type) {
  const found = document.getElementById(id);
  if (!(found instanceof type)) throw new Error(`no ${id}`);
  return found;
}

/**
 * An element with properties and content.
 * @template {keyof HTMLElementTagNameMap} K
 * @param {K} tag @param {Partial<HTMLElementTagNameMap[K]>} properties @param {(Node | string)[]} content
 * @returns {HTMLElementTagNameMap[K]}
 */
export function make(tag, properties, ...content) {
  const made = Object.assign(document.createElement(tag), properties);
  made.append(...content);
  return made;
}
