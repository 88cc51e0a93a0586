// Finds a sequence by its name, a motif in the sequences, or a position.

import { engine, tell } from "./engine.js";
import { allRows, columnOf, positionAt, sequenceAt } from "./sight.js";
import { element, state, update } from "./state.js";
import { choose } from "./viewer.js";

const longest = 1000; // letters of a motif

const newest = { text: "", row: 0, position: 0 }; // where the last one was found

/** Go to the next one. @param {string} text @returns {Promise<string>} what was found, in words */
async function find(text) {
  const { letters, columns } = state;
  if (!letters || !columns || !text) return "";
  const nupo = columns.score.length, n = letters.names.length;
  if (/^\d+$/.test(text)) {
    const p = Number(text);
    if (p < 1 || p > nupo) return `Positions are 1 to ${nupo}.`;
    const column = columnOf(state, p), there = positionAt(state, column); // elsewhere where only selected ones are shown
    choose(state.top, column);
    return there === p ? `Position ${p}.` : `Position ${p} is not selected; this is ${there}.`;
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
  if (text.length > longest) return `A motif may have ${longest} letters; this one has ${text.length}.`;
  const found = await engine.ask({ job: "find", motif: text, rows: allRows(state), start: Math.max(newest.row - 1, 0), from: newest.position });
  if (!found || letters !== state.letters) return "Not found.";
  const { row, first, last } = found, to = columnOf(state, last);
  Object.assign(newest, { row, position: first });
  choose(row, columnOf(state, first));
  update({ marked: { row, first: columnOf(state, first), toRow: row, to } });
  return `${letters.names[sequenceAt(state, row) - 1]}, positions ${first} to ${last}.`;
}

export function connect() {
  const form = element("finding", HTMLFormElement), field = element("find", HTMLInputElement), found = element("found", HTMLElement);
  form.addEventListener("submit", async (event) => {
    event.preventDefault();
    try {
      found.textContent = await find(field.value.trim());
    } catch (error) {
      found.textContent = "";
      tell(error);
    }
  });
}
