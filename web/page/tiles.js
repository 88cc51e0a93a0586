// Loads the letters around what is in sight from the engine's thread, which holds them all.

import { engine, tell } from "./engine.js";
import { wanted } from "./sight.js";
import { showWhen, state, update } from "./state.js";

let asked = false; // one request at a time: the next one is for what is in sight then

async function load() {
  const missing = wanted(state), { letters } = state;
  if (asked || !missing) return;
  asked = true;
  try {
    const { rows, positions } = missing, bytes = await engine.ask({ job: "sample", rows, positions });
    if (letters === state.letters) update({ tile: { rows: new Map(rows.map((i, k) => [i, k * positions.length])), positions, bytes } });
  } catch (error) {
    tell(error);
  } finally {
    asked = false;
    if (letters !== state.letters) load();
  }
}

async function countGaps() {
  const { letters, order } = state;
  if (!letters || !state.columns || order !== "gaps" || state.gaps) return;
  try {
    const gaps = await engine.ask({ job: "gaps" });
    if (letters === state.letters) update({ gaps });
  } catch (error) {
    tell(error);
  }
}

export function connect() {
  showWhen((now) => [now.letters, now.columns, now.first, now.top, now.width, now.height, now.order, now.gaps, now.trimmed, now.tile], load);
  showWhen((now) => [now.letters, now.columns, now.order], countGaps);
}
