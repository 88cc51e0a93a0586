// Fetches the letters around what is in sight from the engine's thread, which holds them all.

import { Dropped, engine } from "./engine.js";
import { wanted } from "./sight.js";
import { showWhen, state, update } from "./state.js";

let asked = false; // one request at a time: the next one is for what is in sight then

async function fetch() {
  const missing = wanted(state), { letters } = state;
  if (asked || !missing) return;
  asked = true;
  try {
    const { rows, positions } = missing, bytes = await engine.ask({ job: "sample", rows, positions });
    if (letters === state.letters) update({ tile: { rows: new Map(rows.map((i, k) => [i, k * positions.length])), positions, bytes } });
  } catch (error) {
    if (!(error instanceof Dropped)) update({ notice: error instanceof Error ? error.message : String(error) });
  } finally {
    asked = false;
    if (letters !== state.letters) fetch();
  }
}

async function countGaps() {
  const { letters, order } = state;
  if (!letters || !state.columns || order !== "gaps" || state.gaps) return;
  try {
    const gaps = await engine.ask({ job: "gaps" });
    if (letters === state.letters) update({ gaps });
  } catch (error) {
    if (!(error instanceof Dropped)) throw error;
  }
}

export function connect() {
  showWhen((now) => [now.letters, now.columns, now.first, now.top, now.width, now.height, now.order, now.gaps, now.trimmed, now.tile], fetch);
  showWhen((now) => [now.letters, now.columns, now.order], countGaps);
}
