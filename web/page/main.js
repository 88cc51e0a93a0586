// The page: connects its parts and runs the program again whenever what it depends on has changed.

import { ask, drop, Dropped, noMemory, open } from "./engine.js";
import * as form from "./form.js";
import * as map from "./map.js";
import { options, refused } from "./parameters.js";
import * as opening from "./open.js";
import * as plot from "./plot.js";
import * as saving from "./save.js";
import { matching, numseq, shownrow, showwhen, state, update } from "./state.js";
import * as summary from "./summary.js";
import * as viewer from "./viewer.js";

const patience = 150; // milliseconds that a run under way is waited for before it is dropped
const mostshown = 3e8; // bytes of an alignment whose letters are all shown
const firstbytes = 2e8; // bytes of a larger one whose letters are
const wrongusage = 2; // a value of the link that no sequence of this alignment allows: the form then says why
const large = 1e8; // bytes from which on the page says beforehand what a run needs

let started = 0; // when the run under way was started; 0: none is
let again = false;
let reading = false; // whether letters are under way: these can wait

/** The run of the present state; a later one takes its place. */
async function select() {
  const { opened, values, shown } = state;
  if (!opened || refused(values, numseq(state))) return;
  if (started) {
    again = true;
    if (performance.now() - started > patience) drop();
    else setTimeout(() => again && started && drop(), patience);
    return;
  }
  if (reading) drop();
  started = performance.now();
  let status = 0;
  update({ running: true });
  try {
    const goingon = opened.alignments.length > 1 ? [...matching(state), "--keep-going"] : [];
    const made = await ask({ job: "select", args: [opened.file, ...options(values), ...goingon], shown });
    if (opened !== state.opened) return;
    status = made.status;
    const lines = made.stderr.split("\n").filter((/** @type {string} */ line) => line)
      .map((/** @type {string} */ line) => line.replace(/^trimora-run: /, "").replace(" in /here", "") // the engine's own folder
        .replace("the memory of this machine is not enough", noMemory));
    const failed = !made.rows.some((/** @type {import("./state.js").Row} */ row) => row.status === "ok");
    update({
      table: made.rows, columns: made.columns, notes: failed ? [] : lines, printed: made.stdout,
      failure: failed ? lines.join("\n") || "The program found no alignment." : "",
      first: Math.min(state.first, made.columns?.score.length ?? 1),
    });
  } catch (error) {
    if (!(error instanceof Dropped)) {
      update({ table: [], columns: null, notes: [], failure: error instanceof Error ? error.message : String(error) });
    }
  } finally {
    started = 0;
    update({ running: again });
    if (again) {
      again = false;
      select();
    } else if (!state.letters && (state.columns || status === wrongusage)) letters();
  }
}

/** The letters of the alignment shown, once its first run is done. */
async function letters() {
  const { opened, shown, columns } = state, row = shownrow(state);
  if (!opened) return;
  const inpart = (opened.inputs.find(({ name }) => name === shown)?.blob.size ?? 0) > mostshown;
  if (inpart && (!columns || !row)) return;
  reading = true;
  try {
    const found = await ask({ job: "letters", name: shown, part: inpart && columns && row
      ? { bytes: firstbytes, column: columns.column, width: Number(row.columns), numseq: Number(row.sequences) } : undefined });
    if (opened !== state.opened || shown !== state.shown) return;
    update(found || !inpart ? { letters: found } : { notice: "The letters are not shown: the first sequences of this file could not be read by themselves." });
  } catch (error) {
    if (error instanceof Error && !(error instanceof Dropped)) update({ notice: error.message });
  } finally {
    reading = false;
  }
}

for (const part of [form, opening, summary, plot, map, viewer, saving]) part.connect();

showwhen((now) => [now.opened], ({ opened }) => {
  if (!opened) return;
  open(opened.inputs);
  if (opened.bytes > large) {
    update({ notice: `${Math.round(opened.bytes / 1e6)} MB: this page needs about ${((opened.bytes > mostshown ? 3 * opened.bytes + 1e9 : 8 * opened.bytes) / 1e9).toFixed(1)} GB of memory for it. ` +
      `The installed program needs ${(opened.bytes * 1.2 / 1e9).toFixed(1)} GB: trimora-run ${opened.file}` });
  }
});
showwhen((now) => [now.opened, now.values, now.shown, now.outputs.match], select);
showwhen((now) => [now.running], ({ running }) => document.body.classList.toggle("running", running));
update({});
