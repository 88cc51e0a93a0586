// Finds a sequence by its name, a motif in the sequences, or a position.

import { columnOf, rowOf, rowText, sequenceAt } from "./sight.js";
import { element, state, update } from "./state.js";
import { choose } from "./viewer.js";

const newest = { text: "", row: 0, position: 0 }; // where the last one was found

/** A motif may have gaps inside; x, . and ? match any residue. @param {string} motif */
export const motifPattern = (motif) => new RegExp(Array.from(motif, (c) => (/[x.?]/i.test(c) ? "[^-]" : c.replace(/[^A-Za-z]/g, "\\$&"))).join("-*"), "gi");

/** Go to the next one. @param {string} text @returns {string} what was found, in words */
function find(text) {
  const { letters, columns } = state;
  if (!letters || !columns || !text) return "";
  const nupo = columns.score.length, n = letters.names.length;
  if (/^\d+$/.test(text)) {
    const p = Number(text);
    if (p < 1 || p > nupo) return `Positions are 1 to ${nupo}.`;
    choose(state.top, columnOf(state, p));
    return `Position ${p}.`;
  }
  if (newest.text !== text) Object.assign(newest, { text, row: 0, position: 0 });
  for (let k = 1; k <= n; ++k) {
    const row = ((newest.row + k - 1) % n) + 1, name = letters.names[sequenceAt(state, row) - 1];
    if (!name.toLowerCase().includes(text.toLowerCase())) continue;
    Object.assign(newest, { row, position: 0 });
    choose(row, state.first);
    return `${name}.`;
  }
  if (!/^[A-Za-z.?*]+$/.test(text)) return "Not found.";
  const pattern = motifPattern(text), start = newest.row || 1;
  for (let k = 0; k <= n; ++k) { // from the last place on, and in the end the first row once more
    const row = ((start + k - 1) % n) + 1, i = sequenceAt(state, row);
    pattern.lastIndex = k === 0 ? newest.position : 0;
    const found = pattern.exec(rowText(letters, i, 1, nupo));
    if (!found) continue;
    const first = found.index + 1, last = found.index + found[0].length;
    Object.assign(newest, { row, position: first });
    choose(rowOf(state, i), columnOf(state, first));
    update({ marked: { row, first: columnOf(state, first), toRow: row, to: columnOf(state, last) } });
    return `${letters.names[i - 1]}, positions ${first} to ${last}.`;
  }
  return "Not found.";
}

export function connect() {
  const form = element("finding", HTMLFormElement), field = element("find", HTMLInputElement), found = element("found", HTMLElement);
  form.addEventListener("submit", (event) => {
    event.preventDefault();
    found.textContent = find(field.value.trim());
  });
}
