// The window on the alignment. Only what is in sight is drawn, on a canvas of the window's size; the scroll bars belong to
// an empty element as large as the alignment.

import { cell, drawAlignment, heightOf, layerHeight, ruler } from "./alignment.js";
import { isCodons, layers } from "./layers.js";
import { engine, tell } from "./engine.js";
import { columnOf, extent, positionAt, reveal, sequenceAt, wanted, within } from "./sight.js";
import { element, showWhen, state, update } from "./state.js";
import { onCanvas } from "./surface.js";
import { colour, prepare, watchTheme } from "./theme.js";
import { cellWords } from "./words.js";

const longest = 8e6; // pixels that browsers scroll over reliably; longer alignments scroll in larger steps

let focus = { row: 1, column: 1 }; // where the keyboard is

const scroller = () => element("viewer", HTMLElement);
const canvas = () => element("letters", HTMLCanvasElement);
export const nameWidth = () => Math.min(150, scroller().clientWidth * 0.3);
const numberOfRows = () => state.letters?.names.length ?? 0;
const layersHeight = () => layers(state).length * layerHeight + 4;
/** Columns that a pixel of scrolling passes, compared with one a cell. */
const stretch = () => Math.max(1, (extent(state) * cell.width) / longest);

/** Rows and columns that fit the window. */
export function fitting() {
  const { clientWidth, clientHeight } = scroller();
  return { rows: Math.max(1, Math.floor((clientHeight - ruler - layersHeight()) / cell.height)),
    columns: Math.max(1, Math.floor((clientWidth - nameWidth()) / cell.width)) };
}

/** Bring position `p` into the window and point at it. @param {number} p @param {number} [row] */
export function go(p, row = state.top) {
  const column = columnOf(state, within(p, state.columns?.score.length ?? 1));
  update({ ...reveal(state, column, row), at: positionAt(state, column) });
}

/** The marked rows and columns, from the smaller to the larger. @param {NonNullable<import("./state.js").State["marked"]>} m */
const sorted = (m) => ({ rows: [Math.min(m.row, m.toRow), Math.max(m.row, m.toRow)], from: Math.min(m.first, m.to), to: Math.max(m.first, m.to) });

function draw() {
  const { columns, letters, first, top, marked } = state, width = scroller().clientWidth;
  if (!columns || !letters || !width) return;
  const { rows, columns: fit } = fitting(), names = nameWidth(), shown = Math.min(rows, letters.names.length);
  const ctx = prepare(canvas(), width, heightOf(state, shown));
  drawAlignment(onCanvas(ctx), state, { width, rows: shown, columns: fit, names });

  const x = (/** @type {number} */ column) => names + (column - first) * cell.width, y = (/** @type {number} */ row) => ruler + (row - top) * cell.height;
  const at = state.at ? columnOf(state, state.at) : 0;
  if (at >= first && x(at) < width && positionAt(state, at) === state.at) {
    ctx.fillStyle = colour("pointed");
    ctx.fillRect(x(at), ruler - 3, cell.width, shown * cell.height + 3);
  }
  if (marked) {
    const { rows: [r0, r1], from, to } = sorted(marked);
    ctx.fillStyle = colour("marked");
    const left = Math.max(x(from), names), up = Math.max(y(r0), ruler), down = Math.min(y(r1 + 1), y(top + shown));
    ctx.fillRect(left, up, Math.max(Math.min(x(to + 1), width) - left, 0), Math.max(down - up, 0));
  }
}

let placed = { left: 0, top: 0 }; // where the scroll bars are, as far as the state knows

/** Bring the scroll bars to where the state is, and the size of what they scroll over. */
function align() {
  const box = scroller(), { letters, columns } = state, names = nameWidth();
  box.setAttribute("aria-busy", String(!letters || wanted(state) !== null));
  if (!letters || !columns) return;
  const whole = ruler + letters.names.length * cell.height + layersHeight();
  box.style.height = `${Math.min(whole + 18, Math.max(innerHeight * 0.6, 200))}px`;
  const space = element("space", HTMLElement);
  space.style.width = `${names + (extent(state) * cell.width) / stretch()}px`;
  space.style.height = `${whole}px`;
  const { columns: width, rows: height } = fitting(), now = scrolled();
  const first = within(state.first, extent(state) - width + 1), top = within(state.top, letters.names.length - height + 1);
  if (now.first !== first) box.scrollLeft = ((first - 1) * cell.width) / stretch();
  if (now.top !== top) box.scrollTop = (top - 1) * cell.height;
  placed = { left: box.scrollLeft, top: box.scrollTop };
  if (first !== state.first || top !== state.top || width !== state.width || height !== state.height) update({ first, top, width, height });
  draw();
}

/** Where the scroll bars are. */
function scrolled() {
  const box = scroller();
  return { first: Math.round((box.scrollLeft * stretch()) / cell.width) + 1, top: Math.round(box.scrollTop / cell.height) + 1 };
}

/** What is below the pointer. @param {PointerEvent} event */
function below(event) {
  const { left, top: upper } = canvas().getBoundingClientRect();
  const x = event.clientX - left - nameWidth(), y = event.clientY - upper - ruler;
  const rows = Math.min(state.height, numberOfRows()), layer = layers(state)[Math.floor((y - rows * cell.height - 3) / layerHeight)];
  const column = within(state.first + Math.floor(x / cell.width), extent(state));
  return { row: within(state.top + Math.floor(y / cell.height), numberOfRows()), column, p: positionAt(state, column), name: x < 0,
    layer: y >= rows * cell.height + 3 ? layer?.key ?? "" : "" };
}

/** The marked part as FASTA; everything in the window's extent when nothing is marked; "" when that is too much. */
async function markedText() {
  const { letters, marked } = state;
  if (!letters) return "";
  const { rows: [r0, r1], from, to } = marked ? sorted(marked) : { rows: [1, letters.names.length], from: 1, to: extent(state) };
  const rows = Array.from({ length: r1 - r0 + 1 }, (_, k) => sequenceAt(state, r0 + k));
  const positions = Uint32Array.from({ length: to - from + 1 }, (_, k) => positionAt(state, from + k));
  return (await engine.ask({ job: "fasta", rows, positions })) ?? "";
}

/** Put text on the clipboard. @param {string} text @returns {Promise<boolean>} whether it is there */
export async function copy(text) {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch { // not granted, or a page that did not come over https: as a person does with the keyboard
    const area = Object.assign(document.createElement("textarea"), { value: text });
    const before = document.activeElement;
    document.body.append(area);
    area.select();
    const done = document.execCommand("copy");
    area.remove();
    if (before instanceof HTMLElement) before.focus({ preventScroll: true });
    return done;
  }
}

async function copyMarked() {
  const text = await markedText().catch(tell);
  if (text === undefined) return;
  const lines = text.split(">").length - 1;
  const done = text !== "" && await copy(text);
  element("copied", HTMLElement).textContent = text === "" ? "Too much to copy: mark less, or save it below."
    : done ? `Copied ${lines} sequence${lines === 1 ? "" : "s"} as FASTA.` : "The browser did not let the page copy.";
}

let unsaid = false; // the letter at the keyboard's place is on its way

/** Tell a screen reader what is at the keyboard's place. */
function speak() {
  const words = cellWords(state, sequenceAt(state, focus.row), positionAt(state, focus.column));
  unsaid = words === "";
  if (words) element("spoken", HTMLElement).textContent = words;
}

/** Mark one cell and say what it is. @param {number} row @param {number} column */
export function choose(row, column) {
  focus = { row, column };
  update({ ...reveal(state, column, row), marked: { row, first: column, toRow: row, to: column }, at: positionAt(state, column), layer: "" });
  speak();
}

/** @param {KeyboardEvent} event */
function key(event) {
  if ((event.ctrlKey || event.metaKey) && event.key === "c") return void copyMarked();
  if (event.key === "Escape") return update({ marked: null });
  const page = state.height;
  const steps = /** @type {Record<string, [number, number]>} */ ({ ArrowLeft: [0, -1], ArrowRight: [0, 1], ArrowUp: [-1, 0], ArrowDown: [1, 0],
    PageUp: [-page, 0], PageDown: [page, 0], Home: [0, -Infinity], End: [0, Infinity] });
  const step = steps[event.key];
  if (!step || !state.letters || event.ctrlKey || event.metaKey) return;
  event.preventDefault();
  const before = state.marked && event.shiftKey ? state.marked : { row: focus.row, first: focus.column };
  const row = within(focus.row + step[0], numberOfRows()), column = within(focus.column + step[1], extent(state));
  const edge = column >= state.first + state.width ? column - state.width + 1 : Math.min(column, state.first);
  const upper = row >= state.top + state.height ? row - state.height + 1 : Math.min(row, state.top);
  choose(row, column);
  update({ first: edge, top: upper, ...(event.shiftKey ? { marked: { row: before.row, first: before.first, toRow: row, to: column } } : {}) });
}

/** Touch scrolls; a touch that stays in place chooses a cell. @type {{x: number, y: number} | null} */
let touch = null;

export function connect() {
  const box = scroller();
  box.addEventListener("scroll", () => {
    const { scrollLeft: left, scrollTop: upper } = box;
    if (left === placed.left && upper === placed.top) return; // the state did it, and may have gone on since
    placed = { left, top: upper };
    const { first, top } = scrolled();
    if (first !== state.first || top !== state.top) update({ first, top });
  });
  box.addEventListener("keydown", key);
  box.addEventListener("focus", () => state.letters && speak());
  box.addEventListener("pointerdown", (event) => {
    if (event.pointerType === "touch") touch = { x: event.clientX, y: event.clientY };
    if (event.button !== 0 || event.pointerType === "touch" || event.target !== canvas()) return;
    const { row, column, p, name, layer } = below(event);
    if (layer) return update({ layer, at: name ? 0 : p });
    const from = event.shiftKey && state.marked ? state.marked : { row, first: name ? 1 : column };
    canvas().setPointerCapture(event.pointerId);
    focus = { row, column };
    update({ marked: { row: from.row, first: from.first, toRow: row, to: name ? extent(state) : column }, at: p });
  });
  box.addEventListener("pointerup", (event) => {
    const still = touch && Math.abs(event.clientX - touch.x) < 8 && Math.abs(event.clientY - touch.y) < 8;
    touch = null;
    if (event.pointerType !== "touch" || !still || event.target !== canvas()) return;
    const { row, column, name, layer, p } = below(event);
    if (layer) update({ layer, at: p });
    else choose(row, name ? state.first : column);
  });
  box.addEventListener("pointercancel", () => (touch = null));
  box.addEventListener("pointermove", (event) => {
    if (event.pointerType === "touch") return;
    const { row, column, p, name, layer } = below(event);
    box.title = (name && !layer && state.letters?.names[sequenceAt(state, row) - 1]) || ""; // long names are cut off
    if (event.buttons && state.marked && canvas().hasPointerCapture(event.pointerId)) {
      update({ marked: { ...state.marked, toRow: row, to: name && state.marked.first === 1 ? extent(state) : column }, at: p });
    } else update({ layer, at: name ? state.at : p });
  });
  element("copy", HTMLButtonElement).addEventListener("click", copyMarked);

  for (const name of /** @type {const} */ (["order", "palette"])) {
    const select = element(name, HTMLSelectElement);
    select.addEventListener("change", () => update({ [name]: select.value, ...(name === "order" ? { marked: null, top: 1 } : {}) }));
    showWhen((now) => [now[name]], (now) => (select.value = now[name])); // browsers keep what was chosen before a reload
  }
  for (const name of /** @type {const} */ (["trimmed", "translated"])) {
    const button = element(name, HTMLButtonElement);
    button.addEventListener("click", () => {
      const p = positionAt(state, state.first);
      update({ [name]: !state[name], ...(name === "trimmed" ? { marked: null } : {}) });
      update({ first: columnOf(state, p) });
    });
    showWhen((now) => [now[name]], (now) => button.setAttribute("aria-pressed", String(now[name])));
  }
  showWhen((now) => [isCodons(now)], (now) => (element("translated", HTMLButtonElement).hidden = !isCodons(now)));

  showWhen((now) => [now.marked], (now) => {
    element("copy", HTMLButtonElement).textContent = now.marked ? "Copy what is marked" : "Copy all";
  });

  showWhen((now) => [now.letters], () => (focus = { row: 1, column: 1 }));
  showWhen((now) => [now.tile], () => unsaid && speak());
  showWhen((now) => [now.letters, now.tile, now.columns, now.first, now.top, now.trimmed, now.order, now.gaps, now.at, now.marked, now.values.t, now.values.code, now.palette, now.translated], align);
  watchTheme(draw);
  new ResizeObserver(align).observe(box);
}
