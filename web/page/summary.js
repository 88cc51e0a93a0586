// Says what was selected: the count, the notes of the program, the alignments of a batch, the blocks.

import { overview } from "../../src/output/overview/overview.js";
import { layers } from "./layers.js";
import { element, make, refill, showWhen, shownRow, state, unread, update } from "./state.js";
import { go } from "./viewer.js";
import { explain, number, plural, ruleOf } from "./words.js";

const listed = 200; // blocks, at most
const rows = 1000; // notes, at most

/** The alignment in a row of the overview. @param {number} row */
const pathOf = (row) => String(state.overview?.table.rows[row][0]);

/** The heading, which says what is open. */
function connectHeading() {
  const heading = element("openh", HTMLElement);
  showWhen((now) => [now.opened, now.table, now.shown], (now) => {
    const row = shownRow(now), opened = now.opened;
    const what = row?.status === "ok" ? `, ${plural(row.sequences, "sequence")}, ${plural(row.positions, "position")}` : "";
    const many = opened && opened.alignments.length > 1 ? plural(opened.alignments.length, "alignment") : "";
    const name = opened?.made ? many : opened?.file; // nobody knows the list that the page made
    heading.textContent = !opened ? "Open an alignment" : `${name}${!many ? what : opened.made ? "" : `, ${many}`} – open another`;
    document.title = opened ? `${name} – Trimora` : "Trimora";
  });
}

/** How much is selected, or why nothing can be. */
function connectCount() {
  const said = element("said", HTMLElement), failure = element("failure", HTMLElement);
  showWhen((now) => [now.table, now.shown, now.failure, now.values === now.overviewOf], (now) => {
    const row = shownRow(now);
    failure.textContent = now.failure;
    said.replaceChildren();
    const ok = now.failure === "" && row?.status === "ok";
    document.body.classList.toggle("failed", !ok);
    document.body.classList.toggle("nothing", now.failure !== "");
    if (!now.failure && row && !ok) failure.textContent = `${row.alignment}: ${row.message || row.status}`;
    if (!ok || !row) return;
    said.append(make("strong", {}, `${number(row.selected)} of ${plural(row.positions, "position")}`),
      ` selected (${row.percent} %), in ${plural(row.blocks, "block")}`);
    if (now.table.length < 2) return;
    const sum = (/** @type {string} */ name) => number(now.table.reduce((n, one) => n + (Number(one[name]) || 0), 0));
    // Of the others, the table tells what earlier values selected until the program has run.
    const all = now.values === now.overviewOf ? `${sum("selected")} of ${sum("positions")} in all ${now.table.length} alignments` : "the other alignments follow";
    said.append(make("small", {}, ` of ${row.alignment}; ${all}`));
  });
}

/** What the program says. */
function connectNotes() {
  const notes = element("notes", HTMLElement), printed = element("printed", HTMLElement);
  showWhen((now) => [now.notes, now.printed], (now) => {
    notes.replaceChildren(...now.notes.slice(0, rows).map((line) => make("li", {}, line)));
    if (now.notes.length > rows) notes.append(make("li", {}, `and ${number(now.notes.length - rows)} more`));
    printed.textContent = now.printed;
  });
}

/** The overview of a batch. */
function connectBatch() {
  const batch = element("batch", HTMLElement), place = element("overview", HTMLElement);
  showWhen((now) => [now.overview, now.opened], (now) => {
    batch.hidden = !now.overview;
    if (!now.overview) return place.replaceChildren();
    // Command and notes are beside it, and of its files none is written yet.
    overview(place, { ...now.overview, reports: [] }, {
      open: (row) => pathOf(row) !== state.shown && update({ ...unread, shown: pathOf(row) }),
      shown: () => state.table.findIndex(({ alignment }) => alignment === state.shown),
    });
  });
  showWhen((now) => [now.shown, now.overview], () => {
    for (const button of place.querySelectorAll("button.open")) button.setAttribute("aria-pressed", String(button.getAttribute("data-key") === state.shown));
  });
  showWhen((now) => [now.values === now.overviewOf], (now) => place.setAttribute("aria-busy", String(now.values !== now.overviewOf)));
}

/** The selected blocks, each as a button that goes there. */
function connectBlocks() {
  const blocks = element("blocks", HTMLElement);
  showWhen((now) => [now.columns], (now) => {
    const found = now.columns?.blocks ?? [];
    refill(blocks, ...found.slice(0, listed).map(({ first, last }, k) => {
      const button = make("button", { type: "button", title: `${plural(last - first + 1, "position")}: go there` }, `${first}–${last}`);
      button.dataset.key = String(k);
      button.addEventListener("click", () => go(first));
      return button;
    }));
    if (found.length > listed) blocks.append(` and ${number(found.length - listed)} more`);
    const empty = now.columns?.empty ?? 0;
    if (empty > 0) blocks.append(` and ${plural(empty, "block")} without a whole codon, which b4 = 5 or more leaves out`);
    else if (found.length === 0 && now.columns) blocks.append("none: lower b2 or b4, allow gaps with b5, or check the type of sequence");
  });
}

/** Why a position is selected or not, and the rules of the layers. */
function connectReasons() {
  const why = element("why", HTMLElement), whyHere = element("whyHere", HTMLElement);
  showWhen((now) => [now.at, now.columns, now.layer, now.table], (now) => {
    const words = explain(now, now.at);
    whyHere.textContent = now.layer ? ruleOf(now, now.layer) : words;
    why.textContent = words || "Point at a position in the plot or in the alignment to see why it is selected or not.";
  });
  const hint = element("lines", HTMLElement), rules = element("rules", HTMLElement);
  showWhen((now) => [now.table, now.shown, now.columns, now.values], (now) => {
    const row = shownRow(now);
    hint.textContent = row && row.b1 !== "NA" ? `b1 = ${row.b1}, b2 = ${row.b2} of ${row.sequences} sequences` : "";
    rules.replaceChildren(...Array.from(new Set(layers(now).map(({ key }) => ruleOf(now, key))), (words) => make("li", {}, words)));
  });
}

export function connect() {
  for (const part of [connectHeading, connectCount, connectNotes, connectBatch, connectBlocks, connectReasons]) part();
}
