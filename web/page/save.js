// Takes results home: the files of the program, the report in a frame, the command line, the link.

import { Dropped, wordsOf, writer } from "./engine.js";
import { unused } from "./names.js";
import { options, toLink } from "./parameters.js";
import { element, invalid, isBatch, joining, make, matching, show, showWhen, shownRow, state, update } from "./state.js";
import { copy } from "./viewer.js";

const mostListed = 20; // alignments that the command line names
const mostReport = 4e6; // letters: beyond, a browser takes long to show the report

/**
 * What the program can write. `on` is the value that asks for it, "" an option without a value; `file`: the value is the name
 * of a file, which no input may have. `blocks`: not when every column is kept.
 * @type {{option: string, on: string, label: string, about: string, when?: "batch" | "blocks", file?: boolean}[]}
 */
const outputs = [
  { option: "s", on: "Y", label: "Selected blocks", about: "the trimmed alignment, for the next program" },
  { option: "p", on: "Y", label: "Report", about: "the whole alignment in colours, as a page", when: "blocks" },
  { option: "k", on: "Y", label: "Mask", about: "which residues are conserved, which positions selected" },
  { option: "d", on: "Y", label: "Block map", about: "a PostScript picture", when: "blocks" },
  { option: "n", on: "Y", label: "Nonconserved blocks", about: "what was left out" },
  { option: "u", on: "Y", label: "Ungapped alignment", about: "all positions without a gap" },
  { option: "-columns", on: "", label: "Columns", about: "score, class, block and reason of each column, as a table" },
  { option: "a", on: "Y", label: "Concatenated selected blocks", about: "one alignment of all genes", when: "batch" },
  { option: "c", on: "Y", label: "Concatenated input", about: "the same, untrimmed", when: "batch" },
  { option: "w", on: "Y", label: "Concatenated ungapped", about: "the same, positions without a gap", when: "batch" },
  { option: "-partitions", on: "", label: "Partitions", about: "of the concatenations, for RAxML, IQ-TREE and MrBayes", when: "batch" },
  { option: "-overview", on: "overview.html", label: "Overview", about: "the table above as a page, with what was run and links to the reports", when: "batch", file: true },
  { option: "-table", on: "table.tsv", label: "Table", about: "sizes, status and message of each alignment", when: "batch", file: true },
];
/** What else is chosen, each from a list. @type {Record<string, Record<string, string>>} */
const choices = {
  format: { "": "FASTA", phylip: "PHYLIP", nexus: "NEXUS", trimora: "Trimora's groups of ten" },
};
const defaults = Object.fromEntries(OPTIONS.filter(({ standard }) => standard === "Y").map(({ name }) => [name.slice(1), "Y"]));

const failures = () => state.table.some(({ status }) => status !== "ok");
/** @param {Record<string, string>} values of the parameters */
const possible = (values) => outputs.filter(({ when }) => (when !== "batch" || isBatch(state)) && (when !== "blocks" || !values.preset));

/** The options that choose exactly these outputs. @param {(option: string) => boolean} wanted @param {Record<string, string>} values */
function choice(wanted, values) {
  const chosen = [];
  for (const { option, on, file } of possible(values)) {
    if (wanted(option) === (option in defaults)) continue;
    chosen.push(wanted(option) ? `-${option}${on && `=${file ? unused(on, state.opened?.inputs ?? []) : on}`}` : `-${option}=N`);
  }
  for (const name in choices) {
    if (state.outputs[name]) chosen.push(`--${name}=${state.outputs[name]}`);
  }
  if (isBatch(state)) chosen.push(...matching(state));
  if (failures() && isBatch(state)) chosen.push("--keep-going");
  return chosen;
}

/** The arguments of trimora-run for these outputs. @param {(option: string) => boolean} chosen @param {Record<string, string>} [values] */
const args = (chosen, values = state.values) => [state.opened?.file ?? "", ...options(values), ...choice(chosen, values)];
const wanted = (/** @type {string} */ option) => option in state.outputs;

/** An argument as a shell takes it. @param {string} text */
const quoted = (text) => (/^[\w@%+=:,./-]+$/.test(text) ? text : `'${text.replaceAll("'", "'\\''")}'`);

/** What does the same with the installed program; "" while the program would refuse a value. @param {Record<string, string>} [values] */
export function commandLine(values = state.values) {
  const { opened } = state;
  if (!opened || (values === state.values && invalid(state))) return "";
  const paths = !opened.made ? "" : opened.alignments.length > mostListed ? `# ${opened.file}, which names the alignments, is in the zip\n`
    : `printf '%s\\n' ${opened.alignments.map(quoted).join(" ")} > ${quoted(opened.file)}\n`;
  return `${paths}trimora-run ${args(wanted, values).map(quoted).join(" ")}`;
}

/** Hand a file to the browser's downloads. @param {string} name @param {Uint8Array} bytes @param {string} [type] */
export function download(name, bytes, type = "application/octet-stream") {
  const url = URL.createObjectURL(new Blob([/** @type {Uint8Array<ArrayBuffer>} */ (bytes)], { type }));
  make("a", { href: url, download: name.split("/").pop() ?? name }).click();
  setTimeout(() => URL.revokeObjectURL(url), 60000);
}

/**
 * Run the program and take what it wrote.
 * @param {string[]} given arguments
 * @param {{zip?: {name: string, also: Record<string, Uint8Array>, alone?: boolean}, only?: string}} [how] `zip` makes one of
 *   all, and `only` leaves the program one input
 * @returns {Promise<Record<string, Uint8Array> | null>}
 */
async function write(given, how) {
  const said = element("saved", HTMLElement);
  said.textContent = "Running …";
  try {
    const { status, stderr, files } = await writer.ask({ job: "write", args: given, ...how });
    if (!writer.busy) writer.drop(); // with its memory
    const names = Object.keys(files), whole = status === 0 || failures();
    said.textContent = !whole ? stderr.replace(/^trimora-run: /gm, "") : names.length === 0 ? "Nothing was written." : "";
    return whole && names.length > 0 ? files : null;
  } catch (error) {
    said.textContent = error instanceof Dropped ? "Not saved, since something else was opened meanwhile." : wordsOf(error);
    return null;
  }
}

/** The zip of this run; the paths file that the page made goes with it. */
function zip() {
  const { opened } = state, text = new TextEncoder();
  /** @type {Record<string, Uint8Array>} */
  const also = opened?.made ? { [opened.file]: text.encode(opened.alignments.map((name) => `${name}\n`).join("")) } : {};
  return { name: `${opened?.file}-tr.zip`, also };
}

/** Save what one option writes, and what it needs. @param {string} option */
async function saveOne(option) {
  const { file } = outputs.find((one) => one.option === option) ?? {}, together = (/** @type {string} */ other) => /^[acw]$/.test(other) && wanted(other);
  const needed = option === "-partitions" ? (/** @type {string} */ other) => other === "a" : option === "-overview" ? together : () => false;
  save(await write(args((other) => other === option || needed(other)), isBatch(state) ? { zip: { ...zip(), alone: file } } : undefined));
}

/** Hand what was written to the downloads. @param {Record<string, Uint8Array> | null} files */
function save(files) {
  if (!files) return;
  for (const name in files) download(name, files[name], name.endsWith(".zip") ? "application/zip" : undefined);
  element("saved", HTMLElement).textContent = `Handed to the browser's downloads: ${Object.keys(files).join(", ")}`;
}

/** Show the report of the alignment that is shown. */
async function report() {
  const files = await write([state.shown, ...options(state.values), "-s=N"], { only: state.shown });
  const frame = element("frame", HTMLIFrameElement), dialog = element("report", HTMLDialogElement);
  if (!files || dialog.open) return;
  const [content] = Object.values(files);
  const url = URL.createObjectURL(new Blob([/** @type {Uint8Array<ArrayBuffer>} */ (content)], { type: "text/html" }));
  frame.src = url; // sandboxed: nothing in it runs, whatever names the sequences have
  dialog.showModal();
  dialog.addEventListener("close", () => {
    frame.removeAttribute("src");
    URL.revokeObjectURL(url);
  }, { once: true });
}

export function connect() {
  const list = element("outputs", HTMLElement);
  for (const { option, label, about } of outputs) {
    const box = make("input", { type: "checkbox", id: `out-${option}` });
    box.addEventListener("change", () => {
      const { [option]: _, ...others } = state.outputs, chosen = box.checked ? { ...others, [option]: "Y" } : others;
      if ("-partitions" in chosen && joining({ ...state, outputs: chosen }).length === 0) { // partitions of something
        if (box.checked) chosen.a = "Y";
        else delete chosen["-partitions"];
      }
      update({ outputs: chosen });
    });
    const button = make("button", { type: "button" }, "Save");
    button.setAttribute("aria-label", `Save: ${label}`);
    button.addEventListener("click", () => saveOne(option));
    const row = make("li", {}, box, make("label", { htmlFor: box.id }, label, make("small", {}, about)), button);
    list.append(row);
    show((now) => {
      box.checked = option in now.outputs;
      row.hidden = !possible(now.values).some((output) => output.option === option);
    });
  }
  for (const [name, values] of Object.entries(choices)) {
    const select = element(name, HTMLSelectElement);
    select.append(...Object.entries(values).map(([value, words]) => make("option", { value }, words)));
    select.addEventListener("change", () => {
      const { [name]: _, ...others } = state.outputs;
      update({ outputs: select.value ? { ...others, [name]: select.value } : others });
    });
    show((now) => (select.value = now.outputs[name] ?? ""));
  }
  for (const [id, option] of [["saveOverview", "-overview"], ["saveTable", "-table"]]) element(id, HTMLButtonElement).addEventListener("click", () => saveOne(option));
  element("zip", HTMLButtonElement).addEventListener("click", async () => save(await write(args(wanted), { zip: zip() })));
  const openReport = element("openReport", HTMLButtonElement);
  openReport.addEventListener("click", report);
  element("closeReport", HTMLButtonElement).addEventListener("click", () => element("report", HTMLDialogElement).close());

  const command = element("command", HTMLElement), copied = element("saved", HTMLElement);
  showWhen((now) => [now.opened, now.values, now.outputs], () => (copied.textContent = "")); // it was about another run
  const copying = (/** @type {string} */ id, /** @type {() => string} */ text, /** @type {string} */ what) =>
    element(id, HTMLButtonElement).addEventListener("click", async () => {
      copied.textContent = await copy(text()) ? `${what} copied.` : "The browser did not let the page copy.";
    });
  copying("copyCommand", commandLine, "Command line");
  copying("copyLink", () => `${location.href.split("#")[0]}#${toLink(state.values, state.opened?.example)}`, "Link with these settings");

  showWhen((now) => [now.opened, now.values, now.outputs, now.table, now.shown], (now) => {
    if (!now.opened) return;
    command.textContent = commandLine() || "A value is not possible. Correct it to see the command.";
    for (const id of ["copyCommand", "copyLink", "zip"]) element(id, HTMLButtonElement).disabled = invalid(now);
    const { sequences, positions } = shownRow(now) ?? {}, small = !(Number(sequences) * Number(positions) > mostReport);
    openReport.disabled = !small || invalid(now);
    openReport.hidden = Boolean(now.values.preset); // there is none
    openReport.title = small ? "" : "The report of so large an alignment is too long for a page: save it instead";
  });
}
