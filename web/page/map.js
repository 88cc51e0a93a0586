// The whole alignment in miniature: where its letters agree and where there are gaps, its selected blocks below, and a frame
// around what the window shows. Dragging moves the window, over rows as well.

import { engine } from "./engine.js";
import { columnOf, positionAt, sequenceAt, within } from "./sight.js";
import { element, showWhen, state, update } from "./state.js";
import { colour, prepare, watchTheme } from "./theme.js";

const gap = 45, tallest = 90, bar = 14;
const canvas = () => element("map", HTMLCanvasElement);

/** Rows of pixels that the alignment takes. */
const tall = () => Math.min(tallest, Math.max(24, (state.letters?.names.length ?? 0) * 2));

/** One letter for each pixel. @typedef {{letters: import("./state.js").Letters, width: number, height: number, positions: Uint32Array, codes: Uint8Array}} Sample */
/** @type {Sample | null} */
let sample = null; // once for an alignment, an order and a size
/** @type {HTMLCanvasElement | null} */
let picture = null; // of it, under the present columns

/** Have the letters picked that are to be seen. */
async function pick() {
  const { columns, letters, order, gaps } = state, width = Math.round(canvas().parentElement?.clientWidth ?? 0), height = tall();
  sample = null;
  if (!columns || !letters || width < 1) return;
  const n = letters.names.length, nupo = columns.score.length;
  const positions = Uint32Array.from({ length: width }, (_, x) => 1 + Math.floor((x / width) * nupo));
  const rows = Array.from({ length: height }, (_, y) => sequenceAt(state, 1 + Math.floor((y / height) * n)));
  try {
    const codes = await engine.ask({ job: "sample", rows, positions });
    if (letters !== state.letters || order !== state.order || gaps !== state.gaps) return;
    sample = { letters, width, height, positions, codes };
    again();
  } catch {
    picture = null; // something else was opened
  }
}

function paint() {
  const { columns, letters } = state;
  picture = null;
  if (!columns || !sample || sample.letters !== letters) return;
  const { width, height, positions, codes } = sample;
  const made = Object.assign(document.createElement("canvas"), { width, height }), ctx = made.getContext("2d");
  const image = /** @type {CanvasRenderingContext2D} */ (ctx).createImageData(width, height);
  const [empty, plain, agreeing] = [colour("paper"), colour("faint"), colour("line")] // opaque, in the byte order of the picture
    .map((hex) => [5, 3, 1].reduce((all, k) => all * 256 + parseInt(hex.slice(k, k + 2), 16), 255));
  const dots = new Uint32Array(image.data.buffer);
  const residues = Uint8Array.from(positions, (p) => (columns.kind[p - 1] >= 2 ? columns.residue[p - 1] : 0));
  for (let at = 0, x = 0; at < dots.length; ++at, x = x + 1 < width ? x + 1 : 0) {
    const c = codes[at];
    dots[at] = c === gap ? empty : (c & 0xdf) === residues[x] ? agreeing : plain;
  }
  ctx?.putImageData(image, 0, 0);
  picture = made;
}

function again() {
  paint();
  draw();
}

function draw() {
  const width = canvas().parentElement?.clientWidth ?? 0, { columns, letters } = state;
  if (!columns || !width) return;
  const ctx = prepare(canvas(), width, tall() + bar), nupo = columns.score.length, n = letters?.names.length ?? 1;
  const x = (/** @type {number} */ p) => ((p - 1) / nupo) * width, y = (/** @type {number} */ row) => ((row - 1) / n) * tall();
  ctx.fillStyle = colour("faint");
  if (picture) ctx.drawImage(picture, 0, 0, width, tall());
  else ctx.fillRect(0, 0, width, tall());
  ctx.fillStyle = colour("selected");
  const least = columns.blocks.length < width ? 1 : 0; // more blocks than pixels: each adds its share of a colour
  for (const block of columns.blocks) ctx.fillRect(x(block.first), tall() + 3, Math.max(x(block.last + 1) - x(block.first), least), bar - 5);
  ctx.strokeStyle = colour("window");
  ctx.lineWidth = 2;
  const left = Math.min(x(positionAt(state, state.first)) + 1, width - 4), right = x(positionAt(state, state.first + state.width - 1) + 1) - 1;
  const up = Math.min(y(state.top) + 1, tall() - 4), down = Math.min(y(state.top + state.height), tall()) - 1;
  ctx.strokeRect(left, up, Math.max(Math.min(right, width - 1) - left, 3), Math.max(down - up, 3));
}

export function connect() {
  const there = (/** @type {PointerEvent} */ event) => {
    const { columns, letters, width, height } = state;
    if (!columns) return;
    const p = within(1 + Math.floor((event.offsetX / canvas().clientWidth) * columns.score.length), columns.score.length);
    const row = 1 + Math.floor((event.offsetY / tall()) * (letters?.names.length ?? 1));
    update({ first: Math.max(1, columnOf(state, p) - (width >> 1)), top: within(row - (height >> 1), Math.max(1, (letters?.names.length ?? 1) - height + 1)), at: p });
  };
  canvas().addEventListener("pointerdown", (event) => {
    canvas().setPointerCapture(event.pointerId);
    there(event);
  });
  canvas().addEventListener("pointermove", (event) => event.buttons && there(event));
  showWhen((now) => [now.letters, now.order, now.gaps, now.columns?.score.length], pick);
  showWhen((now) => [now.letters, now.columns], again);
  showWhen((now) => [now.first, now.width, now.top, now.height, now.trimmed], draw);
  showWhen((now) => [now.columns], (now) => {
    canvas().setAttribute("aria-label", `The whole alignment in miniature, with ${now.columns?.blocks.length ?? 0} selected blocks, which are listed below`);
  });
  watchTheme(again);
  new ResizeObserver(() => {
    pick();
    draw();
  }).observe(/** @type {Element} */ (canvas().parentElement));
}
