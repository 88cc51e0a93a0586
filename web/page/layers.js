// The layers below the alignment: what each step of the method leaves, from the class of each position to what is selected.
// They show what the program's columns say; without a reason in these, class and selection are all there is.

import { remembered } from "./sight.js";

/** @typedef {import("./state.js").State} State */

/** Whether the alignment is trimmed as codons. @param {State} now */
export const isCodons = (now) => now.values.t === "C";

/** Whether position p is the first, second or third of its codon. @param {number} p */
export const codonPositions = (p) => ((p - 1) % 3) + 1;

/** Signs and colours (custom properties) of the classes, in the order of `kinds`. */
export const signs = ["–", "·", "C", "F"];
export const classColours = ["class-gap", "class-nonconserved", "class-conserved", "class-flank"];

/** Reasons, by the step that gives them, as the program words them. */
const steps = /** @type {const} */ ([
  ["gaps", /^too many gaps|^no known residue|beside a cut gap/],
  ["rest", /shorter than b4/],
  ["frame", /^codon frame/],
]);

/**
 * The layers from top to bottom: of each a key, a name, and whether a position is left by its step.
 * @type {(now: State) => {key: string, name: string, holds: (p: number) => boolean}[]}
 */
export const layers = remembered((now) => [now.columns, now.values.t], (now) => {
  const { columns } = now;
  if (!columns) return [];
  const { initial, reason, reasons, kind } = columns;
  const selected = new Uint8Array(kind.length);
  for (const { first, last } of columns.blocks) selected.fill(1, first - 1, last);
  const list = [{ key: "class", name: "class", holds: (/** @type {number} */ p) => p > 0 }];
  if (reasons.length > 0) {
    const left = reasons.map((text) => steps.findIndex(([, words]) => words.test(text)));
    const after = (/** @type {number} */ step) => (/** @type {number} */ p) =>
      initial[p - 1] > 0 && (selected[p - 1] === 1 || left[reason[p - 1]] > step);
    list.push({ key: "initial", name: "initial blocks", holds: (p) => initial[p - 1] > 0 },
      { key: "gaps", name: "after the gaps", holds: after(0) }, { key: "rest", name: "after b4", holds: after(1) });
    if (isCodons(now)) list.push({ key: "frame", name: "codon frame", holds: after(2) });
  }
  list.push({ key: "selected", name: "selected", holds: (p) => selected[p - 1] === 1 });
  return list;
});
