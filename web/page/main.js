// The page: connects its parts and runs the program again whenever something that it depends on has changed.

import * as choices from "./choices.js";
import * as compare from "./compare.js";
import * as curve from "./curve.js";
import { background, Dropped, engine, noMemory, open } from "./engine.js";
import * as find from "./find.js";
import * as form from "./form.js";
import * as history from "./history.js";
import * as map from "./map.js";
import * as opening from "./open.js";
import { options } from "./parameters.js";
import * as picture from "./picture.js";
import * as plot from "./plot.js";
import * as saving from "./save.js";
import { invalid, isBatch, matching, shownRow, showWhen, state, update } from "./state.js";
import * as summary from "./summary.js";
import * as viewer from "./viewer.js";

const patience = 150; // milliseconds that a run under way is waited for before it is dropped
const rest = 200; // and those without a change before a whole batch is run
const mostShown = 3e8; // bytes of an alignment whose letters are all shown
const firstBytes = 2e8; // bytes of a larger one whose letters are
const wrongUsage = 2; // a value of the address that no sequence of this alignment allows: the form then says why
const large = 1e8; // bytes; for more, the page says first what a run needs

let started = 0; // when the run under way was started; 0: none is
let again = false;
let reading = false; // whether letters are being read: these can wait

/** What the program wrote on standard error, line by line, in the page's words. @param {string} stderr */
const linesOf = (stderr) => stderr.split("\n").filter((line) => line)
  .map((line) => line.replace(/^trimora-run: /, "").replace(" in /here", "") // the engine's own folder
    .replace(/there is not enough memory( \(.*\))?/, noMemory));

/** The kind of sequences that the program took the alignment for, where it says so. @param {string} printed */
const kindOf = (printed) => printed.match(/; (protein|DNA|codons), by /)?.[1] ?? "";

/** @param {unknown} error */
const wordsOf = (error) => (error instanceof Error ? error.message : String(error));

/** Run the alignment that is shown with the present values; a later run takes the place of this one. */
async function select() {
  const { opened, values, shown } = state;
  if (!opened || invalid(state)) return;
  if (started) {
    again = true;
    if (performance.now() - started > patience) engine.drop();
    else setTimeout(() => again && started && engine.drop(), patience);
    return;
  }
  if (reading) engine.drop();
  started = performance.now();
  let status = 0;
  update({ running: true });
  try {
    const made = await engine.ask({ job: "select", args: [shown, ...options(values)], only: shown, columns: true });
    if (opened !== state.opened || shown !== state.shown) return;
    status = made.status;
    const lines = linesOf(made.stderr), [row] = made.rows;
    if (isBatch(state)) {
      const before = state.table.find(({ alignment }) => alignment === shown), changed = JSON.stringify(before) !== JSON.stringify(row);
      const rows = state.table.map((one) => (one === before ? row ?? one : one));
      update({ table: rows.length === 0 ? made.rows : changed ? rows : state.table, columns: made.columns, failure: "", kind: kindOf(made.stdout) });
    } else {
      const failed = row?.status !== "ok";
      update({
        table: made.rows, columns: made.columns, notes: failed ? [] : lines, printed: made.stdout, kind: kindOf(made.stdout),
        failure: failed ? lines.join("\n") || "The program found no alignment." : "",
      });
    }
  } catch (error) {
    if (!(error instanceof Dropped)) update({ table: [], columns: null, notes: [], failure: wordsOf(error) });
  } finally {
    started = 0;
    update({ running: again });
    if (again) {
      again = false;
      select();
    } else if (!state.letters && (state.columns || status === wrongUsage)) letters();
  }
}

let waiting = 0, due = 0;

/** Run the whole batch, once nothing changes any more. */
function selectBatch() {
  if (!isBatch(state)) return;
  clearTimeout(waiting);
  waiting = setTimeout(async () => {
    const { opened, values } = state, turn = ++due;
    if (!opened || invalid(state)) return;
    if (background.busy) background.drop();
    try {
      const made = await background.ask({ job: "select", args: [opened.file, ...options(values), ...matching(state), "--keep-going"] });
      if (turn !== due || opened !== state.opened || values !== state.values) return;
      const lines = linesOf(made.stderr), failed = !made.rows.some((/** @type {import("./state.js").Row} */ row) => row.status === "ok");
      update({ table: made.rows, notes: failed ? [] : lines, printed: made.stdout,
        failure: failed ? lines.join("\n") || "The program found no alignment." : "" });
    } catch (error) {
      if (!(error instanceof Dropped)) update({ notes: [wordsOf(error)] });
    }
  }, state.table.length === 0 ? 0 : rest);
}

/** The letters of the alignment shown, once its first run is done. */
async function letters() {
  const { opened, shown, columns } = state, row = shownRow(state);
  if (!opened) return;
  const inPart = (opened.inputs.find(({ name }) => name === shown)?.blob.size ?? 0) > mostShown;
  if (inPart && (!columns || !row)) return;
  reading = true;
  try {
    const found = await engine.ask({ job: "letters", name: shown, part: inPart && columns && row
      ? { bytes: firstBytes, column: columns.column, width: Number(row.columns), numseq: Number(row.sequences) } : undefined });
    if (opened !== state.opened || shown !== state.shown) return;
    update(found || !inPart ? { letters: found } : { notice: "The letters are not shown: the first sequences of this file could not be read by themselves." });
  } catch (error) {
    if (!(error instanceof Dropped)) update({ notice: wordsOf(error) });
  } finally {
    reading = false;
  }
}

showWhen((now) => [now.opened], ({ opened }) => {
  if (!opened) return;
  open(opened.inputs);
  if (opened.bytes > large) {
    update({ notice: `${Math.round(opened.bytes / 1e6)} MB: this page needs about ${((opened.bytes > mostShown ? 3 * opened.bytes + 1e9 : 8 * opened.bytes) / 1e9).toFixed(1)} GB of memory for it. ` +
      `The installed program needs ${(opened.bytes * 1.2 / 1e9).toFixed(1)} GB: trimora-run ${opened.file}` });
  }
});
for (const part of [history, form, opening, choices, summary, plot, map, viewer, find, compare, curve, picture, saving]) part.connect();
showWhen((now) => [now.opened, now.values, now.shown], select);
showWhen((now) => [now.opened, now.values, now.outputs.match, now.outputs["name-end"]], selectBatch);
showWhen((now) => [now.running], ({ running }) => document.body.classList.toggle("running", running));
showWhen((now) => [invalid(now)], (now) => {
  document.body.classList.toggle("invalid", invalid(now));
  for (const old of document.querySelectorAll(".drawn, #said, #batch, #compare")) old.toggleAttribute("inert", invalid(now));
});
update({});
