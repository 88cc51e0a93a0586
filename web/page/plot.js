// The score of every position, with the lines of b1 and b2 and the selected blocks shaded. Drawn on any surface; on the
// page, dragging zooms and a click goes there.

import { classColours } from "./layers.js";
import { positionAt } from "./sight.js";
import { element, numseq, showWhen, shownRow, state, update } from "./state.js";
import { onCanvas } from "./surface.js";
import { colour, prepare, watchTheme } from "./theme.js";
import { go } from "./viewer.js";

/** @typedef {import("./state.js").State} State */
/** Where the scores are drawn, and which positions. @typedef {{left: number, top: number, width: number, height: number, from: number, to: number}} Frame */

export const plotHeight = 200;
const steps = [1, 2, 5, 10, 20, 50, 100, 200, 500, 1e3, 2e3, 5e3, 1e4, 2e4, 5e4, 1e5, 2e5, 5e5, 1e6, 2e6, 5e6];
/** How much of its place the bar of each class fills: classes differ in shape, not in colour alone. */
const fullness = [1, 0.45, 0.7, 1];

/** @type {{from: number, to: number} | null} */
let zoomed = null; // positions in sight; null: all

/** @param {State} now @param {number} width @param {{from: number, to: number}} [range] @returns {Frame} */
export function frameOf(now, width, range) {
  const left = 24 + 7 * String(numseq(now)).length, right = 34 + 7 * String(numseq(now)).length;
  return { left, top: 8, width: width - left - right, height: plotHeight - 44, from: 1, to: now.columns?.score.length ?? 1, ...range };
}

/** Stretches of positions that are selected now and not with the pinned settings, or the other way round. @param {State} now */
export function differences(now) {
  const nupo = now.columns?.score.length ?? 0, pinned = now.pinned?.columns;
  /** @type {{first: number, last: number, gained: boolean}[]} */
  const found = [];
  if (!now.columns || !pinned || pinned.score.length !== nupo) return found;
  const changes = new Int8Array(nupo);
  for (const { first, last } of now.columns.blocks) for (let p = first; p <= last; ++p) changes[p - 1] += 1;
  for (const { first, last } of pinned.blocks) for (let p = first; p <= last; ++p) changes[p - 1] -= 1;
  for (let p = 1; p <= nupo; ++p) {
    if (changes[p - 1] === 0) continue;
    if (p > 1 && changes[p - 2] === changes[p - 1]) found[found.length - 1].last = p;
    else found.push({ first: p, last: p, gained: changes[p - 1] > 0 });
  }
  return found;
}

/** The score at a height. @param {Frame} frame @param {number} n sequences @returns {(score: number) => number} */
const heightIn = ({ top, height }, n) => (score) => top + height * (1 - score / (n * 1.08));

/** A bar for each position. @param {import("./surface.js").Surface} surface @param {import("./state.js").Columns} columns @param {Frame} frame @param {number} n */
function drawBars(surface, columns, frame, n) {
  const { left, top, width, height, from, to } = frame, cell = width / (to - from + 1), y = heightIn(frame, n), base = top + height;
  if (cell >= 1) {
    for (let p = from; p <= to; ++p) {
      const kind = columns.kind[p - 1], fill = colour(classColours[kind]), bar = cell * (cell < 3 ? 1 : fullness[kind] * 0.9), x = left + (p - from) * cell + (cell - bar) / 2;
      if (kind === 0) surface.rect(x, base - 4, bar, 4, fill);
      else surface.rect(x, y(columns.score[p - 1]), bar, base - y(columns.score[p - 1]), fill);
    }
    return;
  }
  // More positions than pixels: in each pixel the mean score, and the class that most of its positions have.
  for (let pixel = 0; pixel < width; ++pixel) {
    const a = Math.floor(from + pixel / cell), b = Math.max(a, Math.min(Math.floor(from + (pixel + 1) / cell) - 1, to)), count = [0, 0, 0, 0];
    let sum = 0;
    for (let p = a; p <= b; ++p) {
      sum += columns.score[p - 1];
      ++count[columns.kind[p - 1]];
    }
    const mean = y(sum / (b - a + 1)), most = count.indexOf(Math.max(...count));
    surface.rect(left + pixel, Math.min(mean, base - 2), 1, Math.max(base - mean, 2), colour(classColours[most]));
  }
}

/** Axes, and the lines of b1 and b2. @param {import("./surface.js").Surface} surface @param {import("./state.js").Row} row @param {Frame} frame @param {number} n */
function drawAxes(surface, row, frame, n) {
  const { left, top, width, height, from, to } = frame, cell = width / (to - from + 1), y = heightIn(frame, n), base = top + height, ink = colour("ink");
  for (const [name, dash] of /** @type {[string, number[]][]} */ ([["b1", [2, 3]], ["b2", [8, 4]]])) {
    if (row[name] === "NA") continue; // every column is kept
    surface.line(left, y(Number(row[name])), left + width, y(Number(row[name])), ink, dash);
    surface.text(left + width + 4, y(Number(row[name])) + (name === "b1" ? 6 : -6), `${name} ${row[name]}`, ink);
  }
  surface.line(left, base, left + width, base, colour("line"));
  surface.line(left, top, left, base, colour("line"));
  const across = steps.find((step) => step * cell >= 60) ?? 1e7, up = steps.find((step) => step * height >= 30 * n) ?? n;
  for (let p = Math.max(across === 1 ? 1 : across, Math.ceil(from / across) * across); p <= to; p += across) {
    const x = left + (p - from) * cell + cell / 2;
    surface.rect(x, base, 1, 4, ink);
    surface.text(x, base + 11, String(p), ink, { align: "center" });
  }
  for (let score = 0; score <= n; score += up) surface.text(left - 5, y(score), String(score), ink, { align: "right" });
  surface.text(left + width / 2, base + 26, "position", ink, { align: "center" });
  surface.text(left, base + 26, "score (sequences)", colour("soft"), { align: "left" });
}

/** @param {import("./surface.js").Surface} surface @param {State} now @param {Frame} frame */
export function drawPlot(surface, now, frame) {
  const { columns } = now, row = shownRow(now), n = numseq(now);
  if (!columns || !row || n === 0) return;
  const { left, top, width, height, from, to } = frame, x = (/** @type {number} */ p) => left + (p - from) * (width / (to - from + 1));
  const shade = (/** @type {number} */ first, /** @type {number} */ last, /** @type {string} */ name) => {
    if (last >= from && first <= to) surface.rect(x(first), top, x(last + 1) - x(first), height, colour(name));
  };
  surface.within(left, top, width, height, () => {
    for (const { first, last } of columns.blocks) shade(first, last, "selected-soft");
    for (const { first, last, gained } of differences(now)) shade(first, last, gained ? "gained" : "lost");
    drawBars(surface, columns, frame, n);
    const view = { from: positionAt(now, now.first), to: positionAt(now, now.first + now.width - 1) };
    if (view.from > 1 || view.to < columns.score.length) surface.frame(x(view.from), top + 1, x(view.to + 1) - x(view.from), height - 2, colour("window"));
  });
  drawAxes(surface, row, frame, n);
}

const canvas = () => element("scores", HTMLCanvasElement);

/** @type {number[] | null} */
let dragged = null; // positions, from where to where

function draw() {
  const width = canvas().parentElement?.clientWidth ?? 0;
  if (!state.columns || !width) return;
  const ctx = prepare(canvas(), width, plotHeight), frame = frameOf(state, width, zoomed ?? undefined);
  canvas().dataset.frame = `${frame.left} ${frame.width}`; // for whoever looks for a position in the picture
  drawPlot(onCanvas(ctx), state, frame);
  const cell = frame.width / (frame.to - frame.from + 1), x = (/** @type {number} */ p) => frame.left + (p - frame.from) * cell;
  const bar = (/** @type {number} */ p0, /** @type {number} */ p1, /** @type {string} */ fill) => {
    ctx.fillStyle = colour(fill);
    ctx.fillRect(Math.max(x(p0), frame.left), frame.top, Math.max(x(p1 + 1) - x(p0), 1), frame.height);
  };
  if (dragged) bar(Math.min(...dragged), Math.max(...dragged), "marked");
  else if (state.at >= frame.from && state.at <= frame.to) bar(state.at, state.at, "pointed");
}

/** The position below the pointer. @param {PointerEvent} event */
function below(event) {
  const { left, width, from, to } = frameOf(state, canvas().clientWidth, zoomed ?? undefined);
  return Math.max(from, Math.min(to, from + Math.floor(((event.offsetX - left) / width) * (to - from + 1))));
}

/** Show so many times the positions around what the alignment shows; 0: all. @param {number} times */
function zoom(times) {
  const nupo = state.columns?.score.length ?? 1, { from, to } = zoomed ?? { from: 1, to: nupo };
  const size = Math.round((to - from + 1) * times);
  const middle = times < 1 ? positionAt(state, state.first + (state.width >> 1)) : (from + to) / 2;
  const begin = Math.max(1, Math.min(Math.round(middle - size / 2), nupo - size + 1));
  zoomed = times === 0 || size >= nupo ? null : { from: begin, to: Math.min(nupo, begin + Math.max(size, 10) - 1) };
  draw();
}

export function connect() {
  for (const [id, times] of /** @type {[string, number][]} */ ([["zoomIn", 0.5], ["zoomOut", 2], ["zoomAll", 0]])) {
    element(id, HTMLButtonElement).addEventListener("click", () => zoom(times));
  }
  canvas().addEventListener("pointerdown", (event) => {
    if (event.button !== 0) return;
    canvas().setPointerCapture(event.pointerId);
    dragged = [below(event), below(event)];
  });
  canvas().addEventListener("pointermove", (event) => {
    if (dragged) dragged[1] = below(event);
    update({ at: below(event), layer: "" });
  });
  canvas().addEventListener("pointerup", () => {
    if (!dragged) return;
    const [from, to] = [...dragged].sort((a, b) => a - b);
    dragged = null;
    if (to - from >= 3) zoomed = { from, to };
    else go(to);
    draw();
  });
  canvas().addEventListener("pointercancel", () => (dragged = null));
  let length = 0, shown = "";
  showWhen((now) => [now.columns, now.shown, now.table, now.first, now.width, now.at, now.pinned, now.trimmed], (now) => {
    const nupo = now.columns?.score.length ?? 0;
    if (nupo > 0 && (nupo !== length || shown !== now.shown)) zoomed = null;
    if (nupo > 0) [length, shown] = [nupo, now.shown];
    draw();
  });
  watchTheme(draw);
  new ResizeObserver(draw).observe(/** @type {Element} */ (canvas().parentElement));
}
