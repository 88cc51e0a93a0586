// From the engine's functions to what the page draws: columns of the file become positions, which count from 1.

const dropped = "d".charCodeAt(0), signs = ["-", ".", "C", "F"]; // of the classes, in the order of the page's `kinds`
const kindOf = new Uint8Array(128);
signs.forEach((sign, k) => (kindOf[sign.charCodeAt(0)] = k));

/** @type {Record<string, import("trimora").Kind>} */
const kindNames = { P: "protein", D: "dna", C: "codons" };
/** @type {Record<string, import("trimora").Parameters["gaps"]>} */
const gapNames = { N: "none", H: "half", A: "all" };

/** Values of the options as parameters of the engine's functions. @param {Record<string, string>} values */
export function parametersOf({ preset, t, b0, b1, b2, b3, b4, b5, b6 }) {
  const number = (/** @type {string} */ value) => (value?.endsWith("%") ? value : Number(value));
  /** @type {import("trimora").Parameters} */
  const found = {};
  if (preset) found.preset = /** @type {"none"} */ (preset);
  if (t) found.kind = kindNames[t];
  if (b5) found.gaps = gapNames[b5];
  if (b6) found.similarity = b6 !== "N";
  for (const [name, value] of Object.entries({ b0, b3, b4 })) if (value) found[/** @type {"b0"} */ (name)] = Number(value);
  for (const [name, value] of Object.entries({ b1, b2 })) if (value) found[/** @type {"b1"} */ (name)] = number(value);
  return found;
}

/** What was selected, position by position. @param {import("trimora").Selection} selection @returns {import("./state.js").Columns} */
export function columnsOf(selection) {
  const { classes, residues, scores } = selection, width = classes.length, position = new Uint32Array(width);
  let nupo = 0;
  for (let c = 0; c < width; ++c) if (classes.charCodeAt(c) !== dropped) position[c] = ++nupo;
  const score = new Float32Array(nupo), residue = new Uint8Array(nupo), kind = new Uint8Array(nupo), column = new Uint32Array(nupo);
  const reason = new Uint32Array(nupo), initial = new Uint32Array(nupo), { words, index } = selection.reasonTable(1);
  for (let c = 0; c < width; ++c) {
    const at = position[c] - 1;
    if (at < 0) continue;
    score[at] = scores[c];
    residue[at] = residues.charCodeAt(c);
    kind[at] = kindOf[classes.charCodeAt(c)];
    column[at] = c + 1;
    reason[at] = index[c];
  }
  selection.initial.forEach(([first, end], k) => initial.fill(k + 1, position[first] - 1, position[end - 1]));
  const blocks = selection.blocks.map(([first, end]) => ({ first: position[first], last: position[end - 1] }));
  // The program counts blocks without a whole codon as well: stretches where the frame leaves nothing.
  const inBlock = words.map((word) => word === "selected" || word === "codon frame");
  let all = 0;
  for (let p = 0; p < nupo; ++p) if (inBlock[reason[p]] && !(p > 0 && inBlock[reason[p - 1]])) ++all;
  return { score, residue, kind, column, blocks, empty: Math.max(all - blocks.length, 0), reasons: words, reason, initial };
}
