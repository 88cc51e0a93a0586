// Says what was selected: the count, the notes of the program, the alignments of a batch, the blocks.

import { download } from "./save.js";
import { element, make, refill, showWhen, shownRow, state, unread, update } from "./state.js";
import { go } from "./viewer.js";
import { explain, number, plural, ruleOf } from "./words.js";

const listed = 200; // blocks, at most
const rows = 1000; // alignments of a batch, and notes, at most

/** How the table of a batch is sorted and filtered. */
const sorting = { by: "", down: false, filter: "" };
const natural = new Intl.Collator("en", { numeric: true }).compare;

export function connect() {
  const said = element("said", HTMLElement), notes = element("notes", HTMLElement);
  const failure = element("failure", HTMLElement), printed = element("printed", HTMLElement);
  const batch = element("batch", HTMLElement), why = element("why", HTMLElement), whyHere = element("whyHere", HTMLElement);
  const blocks = element("blocks", HTMLElement);
  const heading = element("openh", HTMLElement);

  showWhen((now) => [now.opened, now.table, now.shown], (now) => {
    const row = shownRow(now), opened = now.opened;
    const what = row?.status === "ok" ? `, ${plural(row.sequences, "sequence")}, ${plural(row.positions, "position")}` : "";
    const many = opened && opened.alignments.length > 1 ? plural(opened.alignments.length, "alignment") : "";
    const name = opened?.made ? many : opened?.file; // nobody knows the list that the page made
    heading.textContent = !opened ? "Open an alignment" : `${name}${!many ? what : opened.made ? "" : `, ${many}`} – open another`;
    document.title = opened ? `${name} – Trimora` : "Trimora";
  });

  showWhen((now) => [now.table, now.shown, now.failure], (now) => {
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
    said.append(make("small", {}, ` of ${row.alignment}; ${sum("selected")} of ${sum("positions")} in all ${now.table.length} alignments`));
  });

  showWhen((now) => [now.notes, now.printed], (now) => {
    notes.replaceChildren(...now.notes.slice(0, rows).map((line) => make("li", {}, line)));
    if (now.notes.length > rows) notes.append(make("li", {}, `and ${number(now.notes.length - rows)} more`));
    printed.textContent = now.printed;
  });

  const columns = /** @type {const} */ (["alignment", "sequences", "positions", "selected", "percent", "blocks"]);
  const drawTable = () => {
    batch.hidden = state.table.length < 2;
    if (batch.hidden) return;
    const head = make("tr", {}, ...columns.map((name) => {
      const button = make("button", { type: "button" }, name);
      button.dataset.key = `sort-${name}`;
      button.addEventListener("click", () => {
        Object.assign(sorting, { by: name, down: sorting.by === name && !sorting.down });
        drawTable();
      });
      const cell = make("th", { scope: "col" }, button);
      cell.setAttribute("aria-sort", sorting.by !== name ? "none" : sorting.down ? "descending" : "ascending");
      return cell;
    }));
    const wanted = state.table.filter(({ alignment, message }) => `${alignment} ${message}`.toLowerCase().includes(sorting.filter.toLowerCase()));
    if (sorting.by) wanted.sort((a, b) => natural(a[sorting.by], b[sorting.by]) * (sorting.down ? -1 : 1));
    const lines = wanted.slice(0, rows).map((row) => {
      const button = make("button", { type: "button" }, row.alignment);
      button.dataset.key = row.alignment;
      button.addEventListener("click", () => row.alignment !== state.shown && update({ ...unread, shown: row.alignment }));
      const failed = row.status === "ok" ? "" : `${row.status}: ${row.message}`;
      const cells = failed ? [make("td", { colSpan: columns.length - 1, className: "wrong" }, failed)]
        : columns.slice(1).map((name) => make("td", {}, number(row[name])));
      return make("tr", {}, make("th", { scope: "row" }, button), ...cells);
    });
    if (wanted.length > rows) lines.push(make("tr", {}, make("td", {}, `and ${number(wanted.length - rows)} more`)));
    refill(element("batchTable", HTMLTableElement), make("thead", {}, head), make("tbody", {}, ...lines));
    press();
  };
  const press = () => {
    for (const button of document.querySelectorAll("#batchTable tbody button")) {
      button.setAttribute("aria-pressed", String(button.getAttribute("data-key") === shownRow(state)?.alignment));
    }
  };
  showWhen((now) => [now.table], drawTable);
  showWhen((now) => [now.shown], press);
  const filter = element("filter", HTMLInputElement);
  filter.addEventListener("input", () => {
    sorting.filter = filter.value;
    drawTable();
  });
  element("saveTable", HTMLButtonElement).addEventListener("click", () => {
    const names = Object.keys(state.table[0] ?? {}), lines = [names, ...state.table.map((row) => names.map((name) => row[name]))];
    download("table.tsv", new TextEncoder().encode(lines.map((cells) => `${cells.join("\t")}\n`).join("")), "text/tab-separated-values");
  });

  showWhen((now) => [now.columns], (now) => {
    const found = now.columns?.blocks ?? [];
    refill(blocks, ...found.slice(0, listed).map(({ first, last }, k) => {
      const button = make("button", { type: "button", title: `${plural(last - first + 1, "position")}: go there` }, `${first}–${last}`);
      button.dataset.key = String(k);
      button.addEventListener("click", () => go(first));
      return button;
    }));
    if (found.length > listed) blocks.append(` and ${number(found.length - listed)} more`);
    if (found.length === 0 && now.columns) blocks.append("none: lower b2 or b4, allow gaps with b5, or check the type of sequence");
  });

  showWhen((now) => [now.at, now.columns, now.layer, now.table], (now) => {
    const words = explain(now, now.at);
    whyHere.textContent = now.layer ? ruleOf(now, now.layer) : words;
    why.textContent = words || "Point at a position in the plot or in the alignment to see why it is selected or not.";
  });

  const hint = element("lines", HTMLElement);
  showWhen((now) => [now.table, now.shown], (now) => {
    const row = shownRow(now);
    hint.textContent = row ? `b1 = ${row.b1}, b2 = ${row.b2} of ${row.sequences} sequences` : "";
  });
}
