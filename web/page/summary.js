// What was selected, in words: the count, the notes of the program, the alignments of a batch, the blocks.

import { inforce } from "./parameters.js";
import { element, kinds, make, showwhen, shownrow, update } from "./state.js";
import { go } from "./viewer.js";

const listed = 200; // blocks, at most
const rows = 1000; // alignments of a batch, and notes, at most
const count = new Intl.NumberFormat("en");
const number = (/** @type {string | number} */ n) => count.format(Number(n));
const plural = (/** @type {string | number} */ n, /** @type {string} */ word) => `${number(n)} ${word}${Number(n) === 1 ? "" : "s"}`;

/** What is known of position `p`, and why it is selected or not. @param {import("./state.js").State} now @param {number} p */
export function explain(now, p) {
  const { columns } = now, row = shownrow(now);
  if (!columns || !row || p < 1 || p > columns.score.length) return "";
  const kind = kinds[columns.kind[p - 1]], score = Math.round(columns.score[p - 1] * 100) / 100;
  const block = columns.blocks.findIndex(({ first, last }) => first <= p && p <= last);
  const because = { flank: `at least b2 = ${row.b2}`, conserved: `at least b1 = ${row.b1}`, nonconserved: `below b1 = ${row.b1}`,
    "gap position": "its gaps are not allowed (b5), or no residue stands there" }[kind];
  const across = kind === "nonconserved" ? `, which runs across up to b3 = ${inforce(now.values, "b3", 0)} of these` : "";
  const left = kind === "gap position" ? "not selected" : "not selected: outside of the stretches from flank to flank, or in a block too short (b0, b4)";
  const away = columns.column[p - 1] === p ? "" : ` (column ${number(columns.column[p - 1])} of the file)`;
  return `Position ${number(p)}${away}: ${kind === "gap position" ? "" : `${String.fromCharCode(columns.residue[p - 1])}, score ${score} of ` +
    `${number(row.sequences)}, `}${kind} (${because}); ${block < 0 ? left : `selected, in block ${block + 1}${across}`}`;
}

export function connect() {
  const said = element("said", HTMLElement), notes = element("notes", HTMLElement);
  const failure = element("failure", HTMLElement), printed = element("printed", HTMLElement);
  const batch = element("batch", HTMLElement), why = element("why", HTMLElement), whyhere = element("whyhere", HTMLElement);
  const blocks = element("blocks", HTMLElement);
  const heading = element("openh", HTMLElement);

  showwhen((now) => [now.opened, now.table, now.shown], (now) => {
    const row = shownrow(now), opened = now.opened;
    const what = row?.status === "ok" ? `, ${plural(row.sequences, "sequence")}, ${plural(row.positions, "position")}` : "";
    const many = opened && opened.alignments.length > 1 ? plural(opened.alignments.length, "alignment") : "";
    const name = opened?.made ? many : opened?.file; // nobody knows the list that the page made
    heading.textContent = !opened ? "Open an alignment" : `${name}${!many ? what : opened.made ? "" : `, ${many}`} – open another`;
    document.title = opened ? `${name} – Trimora` : "Trimora";
  });

  showwhen((now) => [now.table, now.shown, now.failure], (now) => {
    const row = shownrow(now);
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
    said.append(make("small", {}, ` of ${row.alignment}; ${sum("selected")} of ${sum("positions")} in all ${now.table.length} alignments`));
  });

  showwhen((now) => [now.notes, now.printed], (now) => {
    notes.replaceChildren(...now.notes.slice(0, rows).map((line) => make("li", {}, line)));
    if (now.notes.length > rows) notes.append(make("li", {}, `and ${number(now.notes.length - rows)} more`));
    printed.textContent = now.printed;
  });

  showwhen((now) => [now.table, now.shown], (now) => {
    batch.hidden = now.table.length < 2;
    if (batch.hidden) return;
    const columns = /** @type {const} */ (["sequences", "positions", "selected", "percent", "blocks"]);
    const head = make("tr", {}, ...["alignment", ...columns].map((name) => make("th", { scope: "col" }, name)));
    const lines = now.table.slice(0, rows).map((row) => {
      const button = make("button", { type: "button" }, row.alignment);
      button.setAttribute("aria-pressed", String(row.alignment === shownrow(now)?.alignment));
      button.addEventListener("click", () =>
        update({ shown: row.alignment, columns: null, letters: null, first: 1, at: 0, marked: null }));
      const failed = row.status === "ok" ? "" : `${row.status}: ${row.message}`;
      const cells = failed ? [make("td", { colSpan: columns.length, className: "wrong" }, failed)]
        : columns.map((name) => make("td", {}, number(row[name])));
      return make("tr", {}, make("th", { scope: "row" }, button), ...cells);
    });
    if (now.table.length > rows) lines.push(make("tr", {}, make("td", {}, `and ${number(now.table.length - rows)} more`)));
    element("batchtable", HTMLTableElement).replaceChildren(make("thead", {}, head), make("tbody", {}, ...lines));
  });

  showwhen((now) => [now.columns], (now) => {
    const found = now.columns?.blocks ?? [];
    blocks.replaceChildren(...found.slice(0, listed).map(({ first, last }) => {
      const button = make("button", { type: "button", title: `${plural(last - first + 1, "position")}: go there` }, `${first}–${last}`);
      button.addEventListener("click", () => go(first));
      return button;
    }));
    if (found.length > listed) blocks.append(` and ${number(found.length - listed)} more`);
    if (found.length === 0 && now.columns) blocks.append("none: lower b2 or b4, allow gaps with b5, or check the type of sequence");
  });

  showwhen((now) => [now.at, now.columns], (now) => {
    whyhere.textContent = explain(now, now.at);
    why.textContent = whyhere.textContent || "Point at a position in the plot or in the alignment to see why it is selected or not.";
  });

  const hint = element("lines", HTMLElement);
  showwhen((now) => [now.table, now.shown], (now) => {
    const row = shownrow(now);
    hint.textContent = row ? `b1 = ${row.b1}, b2 = ${row.b2} of ${row.sequences} sequences` : "";
  });
}
