// The alignment: letters coloured as in the report, the names beside them, the blue bar below. Only what is in sight is
// drawn, on a canvas of the window's size; the scroll bars belong to an empty element as large as the alignment.

import { element, showwhen, state, update } from "./state.js";
import { place } from "./tables.js";
import { colour, prepare, watchtheme } from "./theme.js";

const cell = { width: 9, height: 16 }, ruler = 20, bar = 14;
const longest = 8e6; // pixels that browsers scroll over reliably; longer alignments scroll in larger steps
const mostcopied = 2e7; // letters

/** Residues and their colours where they are conserved, as in the report. @type {[string, string][]} */
const proteins = [["AGST", "lime"], ["C", "orange"], ["P", "aqua"], ["DEQN", "white"], ["FWY", "yellow"], ["HKR", "red"], ["ILMV", "fuchsia"]];
/** @type {[string, string][]} */
const nucleotides = [["A", "red"], ["C", "aqua"], ["G", "lime"], ["TU", "orange"]];
const palette = (/** @type {[string, string][]} */ groups) => {
  /** @type {string[]} */
  const colours = [];
  for (const [residues, name] of groups) for (const c of residues) colours[c.charCodeAt(0)] = name;
  return colours;
};

let top = 1; // first sequence in sight
let focus = { row: 1, p: 1 }; // where the keyboard is

const scroller = () => element("viewer", HTMLElement);
const canvas = () => element("letters", HTMLCanvasElement);
const positions = () => state.columns?.score.length ?? 0;
const namewidth = () => Math.min(150, scroller().clientWidth * 0.3);
const capital = (/** @type {number} */ c) => (c >= 97 && c <= 122 ? c - 32 : c);
/** Positions a pixel of scrolling passes, against one a cell. */
const stretch = () => Math.max(1, (positions() * cell.width) / longest);

/** Sequences and positions that fit the window. */
function fitting() {
  const { clientWidth, clientHeight } = scroller();
  return { rows: Math.max(1, Math.floor((clientHeight - ruler - bar) / cell.height)),
    columns: Math.max(1, Math.floor((clientWidth - namewidth()) / cell.width)) };
}

/** Bring position `p` into the window, in its middle. @param {number} p */
export function go(p) {
  const width = fitting().columns;
  update({ first: Math.max(1, Math.min(p - Math.floor(width / 3), positions() - width + 1)), at: Math.max(1, Math.min(p, positions())) });
}

/** The marked sequences and positions, from the smaller to the larger. @param {NonNullable<import("./state.js").State["marked"]>} m */
const sorted = (m) => ({ rows: [Math.min(m.row, m.torow), Math.max(m.row, m.torow)], from: Math.min(m.first, m.to), to: Math.max(m.first, m.to) });

function draw() {
  const { columns, letters, first, marked } = state, width = scroller().clientWidth;
  if (!columns || !letters || !width) return;
  const { rows, columns: fit } = fitting(), names = namewidth(), nupo = positions();
  const shown = Math.min(rows, letters.names.length - top + 1), last = Math.min(first + fit - 1, nupo);
  const ctx = prepare(canvas(), width, ruler + Math.min(rows, letters.names.length) * cell.height + bar);
  const x = (/** @type {number} */ p) => names + (p - first) * cell.width, y = (/** @type {number} */ i) => ruler + (i - top) * cell.height;
  const ink = colour("ink"), colours = palette((state.values.t ? state.values.t !== "P" : letters.nucleotides) ? nucleotides : proteins);
  ctx.textBaseline = "middle";

  ctx.font = "11px system-ui, sans-serif";
  ctx.fillStyle = ink;
  ctx.textAlign = "center";
  for (let p = Math.ceil(first / 10) * 10; p <= last; p += 10) {
    ctx.fillText(String(p), x(p) + cell.width / 2, 7);
    ctx.fillRect(x(p) + cell.width / 2, 14, 1, 4);
  }

  ctx.font = "13px ui-monospace, monospace";
  const byte = (/** @type {number} */ i, /** @type {number} */ p) => letters.bytes[letters.starts[i - 1] + place(p)];
  for (let i = top; i < top + shown; ++i) {
    const middle = y(i) + cell.height / 2 + 1;
    for (let p = first; p <= last; ++p) {
      const c = byte(i, p), conserved = columns.kind[p - 1] >= 2 && capital(c) === columns.residue[p - 1];
      if (conserved) {
        ctx.fillStyle = "black";
        ctx.fillRect(x(p), y(i), cell.width, cell.height);
      }
      ctx.fillStyle = conserved ? colours[capital(c)] ?? "white" : ink;
      ctx.fillText(String.fromCharCode(c), x(p) + cell.width / 2, middle);
    }
  }

  ctx.fillStyle = colour("selected");
  for (const block of columns.blocks) {
    if (block.last < first || block.first > last) continue;
    const from = x(Math.max(block.first, first));
    ctx.fillRect(from, y(top + shown) + 3, x(Math.min(block.last, last) + 1) - from, bar - 5);
  }
  if (state.at >= first && state.at <= last) {
    ctx.fillStyle = colour("pointed");
    ctx.fillRect(x(state.at), ruler - 3, cell.width, shown * cell.height + 3);
  }
  if (marked) {
    const { rows: [r0, r1], from, to } = sorted(marked);
    ctx.fillStyle = colour("marked");
    const left = Math.max(x(from), names), up = Math.max(y(r0), ruler), down = Math.min(y(r1 + 1), y(top + shown));
    ctx.fillRect(left, up, Math.max(Math.min(x(to + 1), width) - left, 0), Math.max(down - up, 0));
  }

  ctx.fillStyle = colour("paper");
  ctx.fillRect(0, 0, names, ruler + (shown + 1) * cell.height);
  ctx.fillStyle = ink;
  ctx.textAlign = "left";
  ctx.save();
  ctx.beginPath();
  ctx.rect(0, 0, names - 6, 1e5);
  ctx.clip();
  for (let i = top; i < top + shown; ++i) ctx.fillText(letters.names[i - 1], 4, y(i) + cell.height / 2 + 1);
  ctx.restore();
}

/** Bring the scroll bars to where the state is, and the size of what they scroll over. */
function align() {
  const box = scroller(), { letters, columns, first } = state;
  const space = element("space", HTMLElement), names = namewidth();
  if (!letters || !columns) return;
  box.style.height = `${Math.min(ruler + letters.names.length * cell.height + bar + 18, Math.max(innerHeight * 0.6, 200))}px`;
  space.style.width = `${names + (positions() * cell.width) / stretch()}px`;
  space.style.height = `${ruler + letters.names.length * cell.height + bar}px`;
  if (scrolled().first !== first) box.scrollLeft = ((first - 1) * cell.width) / stretch();
  const { columns: width } = fitting();
  if (width !== state.width) update({ width });
  draw();
}

/** Where the scroll bars are. */
function scrolled() {
  const box = scroller();
  return { first: Math.round((box.scrollLeft * stretch()) / cell.width) + 1, row: Math.round(box.scrollTop / cell.height) + 1 };
}

/** The sequence and the position below the pointer. @param {PointerEvent} event */
function below(event) {
  const { left, top: upper } = canvas().getBoundingClientRect();
  const x = event.clientX - left - namewidth(), y = event.clientY - upper - ruler;
  const within = (/** @type {number} */ n, /** @type {number} */ most) => Math.max(1, Math.min(n, most));
  return { row: within(top + Math.floor(y / cell.height), state.letters?.names.length ?? 1),
    p: within(state.first + Math.floor(x / cell.width), positions()), name: x < 0 };
}

/** The marked part as FASTA; everything when nothing is marked. */
function markedtext() {
  const { letters, marked } = state;
  if (!letters) return "";
  const { rows: [r0, r1], from, to } = marked ? sorted(marked) : { rows: [1, letters.names.length], from: 1, to: positions() };
  if ((r1 - r0 + 1) * (to - from + 1) > mostcopied) return "";
  const records = [];
  for (let i = r0; i <= r1; ++i) {
    const start = letters.starts[i - 1];
    const text = new TextDecoder("latin1").decode(letters.bytes.subarray(start + place(from), start + place(to) + 1));
    records.push(`>${letters.names[i - 1]}\n${text.replaceAll("\n", "")}\n`);
  }
  return records.join("");
}

/** Put text on the clipboard. @param {string} text @returns {Promise<boolean>} whether it is there */
export async function copy(text) {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch { // not granted, or a page that did not come over https: as a person does with the keyboard
    const area = Object.assign(document.createElement("textarea"), { value: text });
    document.body.append(area);
    area.select();
    const done = document.execCommand("copy");
    area.remove();
    return done;
  }
}

async function copymarked() {
  const text = markedtext(), lines = text.split(">").length - 1;
  const done = text !== "" && await copy(text);
  element("copied", HTMLElement).textContent = text === "" ? "Too much to copy: mark less, or save it below."
    : done ? `Copied ${lines} sequence${lines === 1 ? "" : "s"} as FASTA.` : "The browser did not let the page copy.";
}

/** @param {KeyboardEvent} event */
function key(event) {
  if ((event.ctrlKey || event.metaKey) && event.key === "c") return void copymarked();
  if (event.key === "Escape") return update({ marked: null });
  const steps = /** @type {Record<string, [number, number]>} */ ({ ArrowLeft: [0, -1], ArrowRight: [0, 1], ArrowUp: [-1, 0], ArrowDown: [1, 0],
    PageUp: [-fitting().rows, 0], PageDown: [fitting().rows, 0], Home: [0, -Infinity], End: [0, Infinity] });
  const step = steps[event.key];
  if (!step || !state.letters) return;
  event.preventDefault();
  const within = (/** @type {number} */ n, /** @type {number} */ most) => Math.max(1, Math.min(n, most));
  const before = { ...focus };
  focus = { row: within(focus.row + step[0], state.letters.names.length), p: within(focus.p + step[1], positions()) };
  const marked = !event.shiftKey ? { row: focus.row, first: focus.p, torow: focus.row, to: focus.p }
    : { ...(state.marked ?? { row: before.row, first: before.p }), torow: focus.row, to: focus.p };
  const { rows, columns } = fitting(), box = scroller();
  if (focus.row < top) box.scrollTop = (focus.row - 1) * cell.height;
  if (focus.row >= top + rows) box.scrollTop = (focus.row - rows) * cell.height;
  const first = focus.p < state.first ? focus.p : focus.p >= state.first + columns ? focus.p - columns + 1 : state.first;
  update({ marked, at: focus.p, first });
}

export function connect() {
  const box = scroller();
  box.addEventListener("scroll", () => {
    const { first, row } = scrolled();
    top = row;
    if (first !== state.first) update({ first });
    draw();
  });
  box.addEventListener("keydown", key);
  box.addEventListener("pointerdown", (event) => {
    if (event.button !== 0 || event.pointerType === "touch" || event.target !== canvas()) return; // touch scrolls
    const { row, p, name } = below(event);
    const from = event.shiftKey && state.marked ? state.marked : { row, first: name ? 1 : p };
    canvas().setPointerCapture(event.pointerId);
    focus = { row, p };
    update({ marked: { row: from.row, first: from.first, torow: row, to: name ? positions() : p }, at: p });
  });
  box.addEventListener("pointermove", (event) => {
    const { row, p, name } = below(event);
    box.title = (name && state.letters?.names[row - 1]) || ""; // long names are cut off
    if (event.buttons && state.marked && canvas().hasPointerCapture(event.pointerId)) {
      update({ marked: { ...state.marked, torow: row, to: name && state.marked.first === 1 ? positions() : p }, at: p });
    } else if (!name) update({ at: p });
  });
  element("copy", HTMLButtonElement).addEventListener("click", copymarked);

  showwhen((now) => [now.marked], (now) => {
    element("copy", HTMLButtonElement).textContent = now.marked ? "Copy what is marked" : "Copy all";
  });

  const part = element("part", HTMLElement);
  showwhen((now) => [now.letters], ({ letters }) => {
    box.scrollTop = 0;
    top = 1;
    focus = { row: 1, p: 1 };
    part.textContent = letters && letters.names.length < letters.numseq
      ? `Of so large an alignment the first ${letters.names.length} of ${letters.numseq} sequences are shown, in all their positions; numbers, plot and blocks are those of the whole.` : "";
  });
  showwhen((now) => [now.letters, now.columns, now.first], align);
  showwhen((now) => [now.at, now.marked, now.values, now.table], draw);
  watchtheme(draw);
  new ResizeObserver(align).observe(box);
}
