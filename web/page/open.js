// Opens files, folders, pasted text and examples: they become the files of a run.
// Words     input: a file of the run, under the name that the program sees

import packedExamples from "packed:examples";
import { gunzip } from "../engine/gunzip.mjs";
import { reader, wordsOf } from "./engine.js";
import { free, natural } from "./names.js";
import { unpack } from "./packing.js";
import { fromLink } from "./parameters.js";
import { element, showWhen, state, unread, update } from "./state.js";

/**
 * @typedef {object} Opened
 * @property {import("./worker.js").Input[]} inputs
 * @property {string[]} alignments their names
 * @property {string} file what the program is given: the alignment, or the paths file of a batch
 * @property {boolean} made whether the page made that paths file
 * @property {number} bytes of all alignments
 * @property {string} example key of the example that it is, or ""
 */

/** Of a file: its letters, a second copy of them and what is written fit into 32 bits. */
const mostBytes = 1.5e9;

const headBytes = 65536; // of a file, which tell what it is

/** @type {{key: string, title: string, about: string, type: string, files: string[]}[]} */
const examples = [
  { key: "globins", title: "Globins", about: "45 proteins", type: "", files: ["globins.fas"] },
  { key: "primates", title: "Primates", about: "mitochondrial DNA of 12 species", type: "D", files: ["primates_mt.fas"] },
  { key: "batch", title: "A batch", about: "two pieces of the primates' DNA", type: "D",
    files: ["primates_mt_1.fas", "primates_mt_2.fas"] },
];

/** Unpack gzip, known by its first two bytes. @param {import("./worker.js").Input} input */
async function unpacked({ name, blob }) {
  const [first, second] = new Uint8Array(await blob.slice(0, 2).arrayBuffer());
  if (first !== 0x1f || second !== 0x8b) return { name, blob };
  try {
    return { name: name.replace(/\.gz$/i, ""), blob: await gunzip(new Uint8Array(await blob.arrayBuffer())) };
  } catch {
    throw new Error(`${name} is compressed, but cannot be unpacked: it is damaged or incomplete.`);
  }
}

/**
 * Make the files of one gesture into what a run works on. Of several files, take those that begin as alignments do, and a
 * paths file that lists some of them.
 * @param {import("./worker.js").Input[]} given
 * @returns {Promise<Omit<Opened, "example"> & {leftOut: string[], renamed: string[]}>}
 */
async function arrange(given) {
  const inputs = [], renamed = [], taken = new Set(), isTaken = (/** @type {string} */ name) => taken.has(name);
  const packed = (/** @type {import("./worker.js").Input} */ { name }) => Number(/\.gz$/i.test(name));
  for (const input of given.sort((a, b) => packed(a) - packed(b) || natural(a.name, b.name))) { // x.fas keeps its name, not x.fas.gz
    const { name, blob } = await unpacked(input), found = free(name, isTaken);
    taken.add(found);
    if (found !== name) renamed.push(`${input.name} as ${found}`);
    inputs.push({ name: found, blob });
  }
  inputs.sort((a, b) => natural(a.name, b.name));
  if (inputs.length === 1) {
    return { ...batch(inputs, "", false), leftOut: [], renamed };
  }
  /** @type {boolean[]} */
  const aligned = await reader.ask({ job: "aligned", heads: inputs.map(({ blob }) => blob.slice(0, headBytes)) });
  if (!reader.busy) reader.drop();
  const alignments = inputs.filter((_, k) => aligned[k]);
  const rest = inputs.filter((input) => !alignments.includes(input));

  for (const list of rest.filter(({ blob }) => blob.size < 1e7)) {
    const inOrder = listedIn(list.name, await list.blob.text(), alignments);
    if (inOrder) return { ...batch(inOrder, partsOf(list.name)[0], false), leftOut: rest.filter((f) => f !== list).map(({ name }) => name), renamed };
  }
  if (alignments.length === 0) throw new Error("None of these files begins as an alignment does. FASTA, for example, begins with >.");
  return { ...batch(alignments, free("paths.txt", isTaken), true), leftOut: rest.map(({ name }) => name), renamed };
}

/** One alignment, or several and the paths file that lists them. @param {import("./worker.js").Input[]} files @param {string} list @param {boolean} made */
function batch(files, list, made) {
  const alignments = files.map(({ name }) => name), bytes = files.reduce((n, { blob }) => n + blob.size, 0);
  if (files.length === 1) return { inputs: files, alignments, file: alignments[0], made: false, bytes };
  const paths = new Blob([alignments.map((name) => `${name}\n`).join("")]);
  return { inputs: [...files, { name: list, blob: paths }], alignments, file: list, made, bytes };
}

/** The parts of a path, the last one first and without .gz. @param {string} path */
const partsOf = (path) => path.replace(/\.gz$/i, "").split(/[/\\]/).filter((part) => !/^\.*$/.test(part)).reverse();

/**
 * The dropped alignments in the order of a paths file, under the paths that it gives; null: it lists none of them. A path
 * leads to the file whose path ends like it for the longest, since a browser does not tell from where files come.
 * @param {string} list its name @param {string} text @param {import("./worker.js").Input[]} alignments
 */
function listedIn(list, text, alignments) {
  const paths = text.split("\n").map((line) => line.trim()).filter((line) => line && !line.startsWith("#"));
  /** @type {Map<string, {input: import("./worker.js").Input, parts: string[]}[]>} */
  const byTail = new Map();
  for (const input of alignments) {
    const parts = partsOf(input.name), others = byTail.get(parts[0]) ?? [];
    byTail.set(parts[0], [...others, { input, parts }]);
  }
  const found = paths.map((path) => {
    const wanted = partsOf(path), near = byTail.get(wanted[0]) ?? [], exact = near.find(({ parts }) => parts.join() === wanted.join());
    const alike = near.map(({ parts }) => [...wanted, ""].findIndex((part, k) => part !== parts[k])), most = Math.max(...alike);
    const best = exact ? [exact] : near.filter((_, k) => alike[k] === most);
    return best.length === 1 ? best[0].input : undefined;
  });
  if (!found.some((input) => input)) return null;
  /** @type {Map<import("./worker.js").Input | undefined, string>} */
  const firstPath = new Map();
  found.forEach((input, k) => firstPath.set(input, firstPath.get(input) ?? partsOf(paths[k]).join()));
  const missing = paths.filter((path, k) => !found[k] || firstPath.get(found[k]) !== partsOf(path).join()); // another's file is not its own
  if (missing.length > 0) {
    throw new Error(`${list} lists ${missing[0]}${missing.length > 1 ? ` and ${missing.length - 1} more` : ""}, ` +
      "which did not come with it: drop the paths file together with all its alignments.");
  }
  return paths.map((path, k) => ({ name: path.replace(/^([.]*[/\\])+/, ""), blob: /** @type {import("./worker.js").Input} */ (found[k]).blob }));
}

/** The type of sequence that came with an example; the next alignment does not keep it. */
let lent = "";
let gestures = 0; // of them, only the last one counts

/**
 * Open the files of one gesture.
 * @param {Promise<import("./worker.js").Input[]>} coming @param {(typeof examples)[0]} [example]
 * @param {Record<string, string>} [values] that come with it
 */
async function open(coming, example, values) {
  const type = example?.type, gesture = ++gestures;
  try {
    update({ notice: "Reading …" });
    const given = await coming;
    if (given.length === 0) return update({ notice: "There was no file." });
    const { leftOut, renamed, ...arranged } = await arrange(given);
    if (gesture !== gestures) return;
    const opened = { ...arranged, example: example?.key ?? "" };
    if (opened.bytes > mostBytes) {
      throw new Error(`This is ${(opened.bytes / 1e9).toFixed(1)} GB; a page can work on ${mostBytes / 1e9} GB at most. ` +
        "The installed program has no such limit: trimora-run " + opened.file);
    }
    update({
      ...unread, opened, shown: opened.alignments[0], table: [], overview: null, notes: [], failure: "", printed: "", pinned: null, names: null, trimmed: false,
      values: values ? { t: type ?? "", ...values } : { ...state.values, t: type ?? (state.values.t === lent ? "" : state.values.t ?? "") },
      notice: [leftOut.length > 0 ? `Left out, as they do not begin as alignments do: ${leftOut.join(", ")}.` : "",
        renamed.length > 0 ? `Opened under another name, since there are two of one name: ${renamed.join(", ")}.` : ""].filter((line) => line).join(" "),
    });
    lent = type ?? "";
  } catch (error) {
    if (gesture === gestures) update({ notice: wordsOf(error) });
  }
}

/** @param {Iterable<File>} files @returns {import("./worker.js").Input[]} */
const named = (files) => Array.from(files, (file) => ({ name: file.webkitRelativePath || file.name, blob: file }))
  .filter(({ name }) => !/(^|\/)\./.test(name));

/** The files in a folder. @param {any} folder @param {string} path @param {import("./worker.js").Input[]} found */
async function walkHandle(folder, path, found) {
  for await (const inner of folder.values()) {
    if (inner.name.startsWith(".")) continue;
    if (inner.kind === "file") found.push({ name: `${path}/${inner.name}`, blob: await inner.getFile() });
    else await walkHandle(inner, `${path}/${inner.name}`, found);
  }
}

/**
 * What was dropped, with the content of folders. Chromium refuses the entries of a page opened from the disk, but hands
 * out handles; Firefox knows entries only. Both have to be asked for at once, while the drop lasts.
 * @param {DataTransfer} dropped
 */
async function listed(dropped) {
  const files = named(dropped.files), items = Array.from(dropped.items);
  const entries = items.map((item) => item.webkitGetAsEntry?.() ?? null);
  if (!entries.some((entry) => entry?.isDirectory)) return files;
  const asked = items.map((item) => /** @type {any} */ (item).getAsFileSystemHandle?.() ?? null);
  try {
    const handles = await Promise.all(asked);
    if (!handles.every((handle) => handle)) return await listEntries(entries);
    /** @type {import("./worker.js").Input[]} */
    const inside = [];
    for (const handle of handles) {
      if (handle.kind === "file") inside.push({ name: handle.name, blob: await handle.getFile() });
      else await walkHandle(handle, handle.name, inside);
    }
    return inside;
  } catch {
    throw new Error("This browser does not let the page read a folder that is dropped: take the button \u201cChoose a folder \u2026\u201d, or drop the files themselves.");
  }
}

/** @param {(FileSystemEntry | null)[]} entries */
async function listEntries(entries) {
  /** @type {import("./worker.js").Input[]} */
  const found = [];
  const walk = async (/** @type {any} */ entry) => {
    if (entry.name.startsWith(".")) return;
    if (entry.isFile) {
      const blob = await new Promise((resolve, reject) => entry.file(resolve, reject));
      found.push({ name: entry.fullPath.slice(1), blob });
      return;
    }
    const listing = entry.createReader();
    for (;;) { // some hundred entries at a time
      const some = await new Promise((resolve, reject) => listing.readEntries(resolve, reject));
      if (some.length === 0) return;
      for (const inner of some) await walk(inner);
    }
  };
  for (const entry of entries) if (entry) await walk(entry);
  return found;
}

/** The files of an example. @param {string[]} names */
async function filesOf(names) {
  const texts = JSON.parse(await (await unpack(packedExamples)).text());
  return names.map((name) => ({ name, blob: new Blob([texts[name]]) }));
}

/** Open an example, with the values that an address gives or with its own. @param {(typeof examples)[0]} example @param {Record<string, string>} [values] */
const openExample = (example, values) => open(filesOf(example.files), example, values);

/** Open the example that the address names, if it is another one. */
function fromAddress() {
  const link = location.hash.slice(1), key = new URLSearchParams(link).get("example"), example = examples.find((one) => one.key === key);
  if (example && state.opened?.example !== key) openExample(example, fromLink(link));
}

/** Connect the part of the page that opens alignments. */
export function connect() {
  const files = element("files", HTMLInputElement), folder = element("folder", HTMLInputElement);
  for (const input of [files, folder]) {
    input.addEventListener("change", () => {
      open(Promise.resolve(named(input.files ?? [])));
      input.value = ""; // the same file may be chosen again
    });
  }
  element("choose", HTMLButtonElement).addEventListener("click", () => files.click());
  element("chooseFolder", HTMLButtonElement).addEventListener("click", () => folder.click());

  const pasted = element("pasted", HTMLTextAreaElement);
  element("usePasted", HTMLButtonElement).addEventListener("click", () =>
    open(Promise.resolve(pasted.value.trim() ? [{ name: "pasted.fas", blob: new Blob([pasted.value]) }] : [])));

  const buttons = element("examples", HTMLElement);
  for (const example of examples) {
    const button = Object.assign(document.createElement("button"), { type: "button" });
    button.append(example.title, Object.assign(document.createElement("small"), { textContent: example.about }));
    button.addEventListener("click", () => openExample(example));
    buttons.append(button);
  }
  addEventListener("hashchange", fromAddress);
  fromAddress();

  document.addEventListener("dragover", (event) => {
    event.preventDefault();
    document.body.classList.add("dragging");
  });
  document.addEventListener("dragleave", (event) => {
    if (!event.relatedTarget) document.body.classList.remove("dragging");
  });
  document.addEventListener("drop", (event) => {
    document.body.classList.remove("dragging");
    const withFiles = event.dataTransfer?.types.includes("Files");
    if (!withFiles && event.target === pasted) return; // text that is dragged there
    event.preventDefault();
    if (withFiles && event.dataTransfer) open(listed(event.dataTransfer));
  });

  const notice = element("notice", HTMLElement), details = element("opening", HTMLDetailsElement);
  showWhen((now) => [now.notice], (now) => {
    notice.textContent = now.notice;
  });
  showWhen((now) => [now.opened], (now) => {
    document.body.classList.toggle("opened", now.opened !== null);
    const inside = details.contains(document.activeElement); // the focus stays in sight
    details.open = now.opened === null;
    if (inside && !details.open) details.querySelector("summary")?.focus({ preventScroll: true });
  });
}
