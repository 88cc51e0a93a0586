// The page: connects its parts and selects again whenever something that the selection depends on has changed.

import * as choices from "./choices.js";
import * as compare from "./compare.js";
import * as curve from "./curve.js";
import { background, Dropped, engine, noMemory, open, wordsOf } from "./engine.js";
import * as find from "./find.js";
import * as form from "./form.js";
import * as history from "./history.js";
import * as map from "./map.js";
import * as opening from "./open.js";
import { options } from "./parameters.js";
import * as picture from "./picture.js";
import * as plot from "./plot.js";
import * as saving from "./save.js";
import { invalid, isBatch, joining, matching, showWhen, state, unread, update } from "./state.js";
import * as summary from "./summary.js";
import * as tiles from "./tiles.js";
import * as viewer from "./viewer.js";

const rest = 400; // milliseconds without a change before the program itself is run
const large = 1e8; // bytes; for more, the page says first what a run needs
/** Memory that an alignment takes in its course, in its own size. */
const memory = 8;

/** @typedef {import("./state.js").Row} Row */

let running = false; // whether a selection is under way
let again = false; // and another one is due after it

/** What the program wrote on standard error, line by line, in the page's words. @param {string} stderr */
const linesOf = (stderr) => stderr.split("\n").filter((line) => line)
  .map((line) => line.replace(/^trimora-run: /, "").replace(" in /here", "") // the engine's own folder
    .replace(/another code: --code=/, "another code: choose it under “Genetic code”")
    .replace(/there is not enough memory( \(.*\))?/, noMemory));

/** The table with the line of the alignment that is shown; the other columns of an earlier line stay. @param {Row} row */
function tableWith(row) {
  const { table } = state, before = table.find(({ alignment }) => alignment === row.alignment);
  if (!before) return table.length > 0 ? table : [row];
  return Object.keys(row).every((key) => row[key] === before[key]) ? table : table.map((one) => (one === before ? { ...one, ...row } : one));
}

/** Select the blocks of the alignment that is shown with the present values. */
async function select() {
  const { opened, values, shown } = state;
  if (!opened || invalid(state)) return;
  if (running) {
    again = true;
    return;
  }
  running = true;
  update({ running });
  try {
    const made = await engine.ask({ job: "select", name: shown, values, known: state.letters !== null });
    if (opened !== state.opened || shown !== state.shown) return;
    const about = { ...(made.about ? { letters: made.about } : {}), ...(made.standards ? { standards: made.standards } : {}) };
    if (made.failure === undefined) {
      update({ ...about, columns: made.columns, kind: made.kind, failure: "", table: tableWith(made.row) });
    } else if (isBatch(state)) {
      update({ ...about, columns: null, table: tableWith({ alignment: shown, status: "failed", message: made.failure }) });
    } else {
      update({ ...about, columns: null, notes: [], table: [{ alignment: shown, status: "failed", message: made.failure }], failure: `${shown}: ${made.failure}` });
    }
  } catch (error) {
    if (!(error instanceof Dropped)) update({ table: [], columns: null, notes: [], failure: wordsOf(error) });
  } finally {
    running = false;
    update({ running: again });
    if (again) {
      again = false;
      select();
    }
  }
}

let waiting = 0, due = 0;

/** Run the program itself, once nothing changes any more: its notes, its account, and the whole table of a batch. */
function confirm() {
  clearTimeout(waiting);
  waiting = setTimeout(async () => {
    const { opened, values } = state, turn = ++due, batch = isBatch(state);
    if (!opened || invalid(state)) return;
    if (background.busy) background.drop();
    try {
      const made = await background.ask(batch ? { job: "run", args: [opened.file, ...options(values), ...matching(state), ...joining(state), "--keep-going"] }
        : { job: "run", args: [opened.file, ...options(values)], only: opened.file });
      if (turn !== due || opened !== state.opened || values !== state.values) return;
      if (opened.bytes > large) background.drop(); // with its memory
      const lines = linesOf(made.stderr), failed = !made.rows.some((/** @type {Row} */ row) => row.status === "ok");
      if (failed) return update({ table: made.rows, overview: made.overview ?? null, overviewOf: values, notes: [], printed: made.stdout, failure: lines.join("\n") || "The program found no alignment." });
      const shown = made.rows.find((/** @type {Row} */ row) => row.alignment === state.shown), live = state.table.find((row) => row.alignment === state.shown);
      const other = shown?.status === "ok" && live?.selected !== undefined && state.columns && shown.selected !== live.selected;
      // A file that is no alignment is not the first thing to see of a batch, but one of its notes.
      const instead = batch && !state.overview && !state.columns && shown?.status !== "ok" && made.rows.find((/** @type {Row} */ row) => row.status === "ok");
      update({ ...(instead ? { ...unread, shown: instead.alignment } : {}), table: made.rows, overview: made.overview ?? null, overviewOf: values, notes: lines, printed: made.stdout,
        failure: other ? `The page selects ${live.selected} positions and the program ${shown.selected}. This should never happen: please do not use this result, and report it.` : "" });
    } catch (error) {
      if (!(error instanceof Dropped)) update(state.columns ? { notes: [wordsOf(error)] } : { failure: wordsOf(error) });
    }
  }, state.table.length === 0 ? 0 : rest);
}

showWhen((now) => [now.opened], ({ opened }) => {
  if (!opened) return;
  open(opened.inputs);
  if (opened.bytes > large) {
    update({ notice: `${Math.round(opened.bytes / 1e6)} MB: this page needs about ${((memory * opened.bytes) / 1e9).toFixed(1)} GB of memory for it. ` +
      `The installed program needs ${(opened.bytes * 1.2 / 1e9).toFixed(1)} GB: trimora-run ${opened.file}` });
  }
});
for (const part of [history, form, opening, choices, summary, plot, map, tiles, viewer, find, compare, curve, picture, saving]) part.connect();
showWhen((now) => [now.opened, now.values, now.shown], select);
showWhen((now) => [now.opened, now.values, matching(now).join(), joining(now).join()], confirm);
showWhen((now) => [now.running], (now) => document.body.classList.toggle("running", now.running));
showWhen((now) => [invalid(now)], (now) => {
  document.body.classList.toggle("invalid", invalid(now));
  for (const old of document.querySelectorAll(".drawn, #said, #batch, #compare")) old.toggleAttribute("inert", invalid(now));
});
update({});
