// The score of every position, with the lines of b1 and b2 and the selected blocks shaded; drag to zoom.

import uPlot from "uplot";
import { element, numseq, showwhen, shownrow, state, update } from "./state.js";
import { colour, watchtheme } from "./theme.js";
import { go } from "./viewer.js";

const bars = 3000; // positions, up to which each is drawn as a bar of its own

/** @type {uPlot | null} */ let plot = null;
const box = () => element("plot", HTMLElement);

/** Blocks behind the scores, as far as they are in sight. @param {uPlot} u */
function shade(u) {
  const { left, top, height } = u.bbox, { min = 0, max = 0 } = u.scales.x;
  u.ctx.fillStyle = colour("selected-soft");
  for (const { first, last } of state.columns?.blocks ?? []) {
    if (last < min || first > max) continue;
    const from = Math.max(u.valToPos(first - 0.5, "x", true), left);
    const to = Math.min(u.valToPos(last + 0.5, "x", true), left + u.bbox.width);
    u.ctx.fillRect(from, top, to - from, height);
  }
}

/** The lines of b1 and b2, and the part that the alignment below shows. @param {uPlot} u */
function lines(u) {
  const row = shownrow(state), { left, top, width, height } = u.bbox, ctx = u.ctx, dot = devicePixelRatio;
  if (!row) return;
  ctx.save();
  ctx.lineWidth = 1.5 * dot;
  ctx.font = `${11 * dot}px system-ui, sans-serif`;
  ctx.textAlign = "left";
  for (const [name, style, dash] of [["b1", "ink", [2, 3]], ["b2", "ink", [8, 4]]]) {
    const y = u.valToPos(Number(row[String(name)]), "y", true);
    ctx.strokeStyle = ctx.fillStyle = colour(String(style));
    ctx.setLineDash(/** @type {number[]} */ (dash).map((n) => n * dot));
    ctx.beginPath();
    ctx.moveTo(left, y);
    ctx.lineTo(left + width, y);
    ctx.stroke();
    ctx.fillText(`${name} ${row[String(name)]}`, left + width + 4 * dot, y + (name === "b1" ? 10 : -2) * dot);
  }
  ctx.setLineDash([]);
  ctx.strokeStyle = colour("window");
  const from = u.valToPos(state.first - 0.5, "x", true), to = u.valToPos(state.first + state.width - 0.5, "x", true);
  ctx.beginPath();
  ctx.rect(left, top, width, height);
  ctx.clip();
  ctx.strokeRect(from, top + dot, to - from, height - 2 * dot);
  ctx.restore();
}

/** @param {import("./state.js").State} now */
function build(now) {
  plot?.destroy();
  plot = null;
  const columns = now.columns;
  if (!columns) return;
  const nupo = columns.score.length, digits = 7 * numseq(now).toLocaleString("en").length; // as wide as the labels
  const axis = { stroke: colour("ink"), grid: { stroke: colour("faint"), width: 1 }, ticks: { stroke: colour("faint"), width: 1 } };
  plot = new uPlot({
    width: box().clientWidth, height: 190, legend: { show: false }, padding: [8, 30 + digits, 0, 0],
    cursor: { y: false, drag: { x: true, y: false, setScale: true } },
    // Above full scores there is room in which the shading shows.
    scales: { x: { time: false, range: (_, min, max) => [min > 1 ? min : 0.5, max < nupo ? max : nupo + 0.5] },
      y: { range: () => [0, numseq(state) * 1.08] } },
    axes: [{ ...axis, grid: { show: false }, label: "position", labelSize: 16, labelGap: 0, size: 32, incrs: [1, 2, 5, 10, 20, 50, 100, 200, 500, 1e3, 2e3, 5e3, 1e4, 2e4, 5e4, 1e5, 2e5, 5e5, 1e6] },
      { ...axis, label: "score (sequences)", labelSize: 18, size: 24 + digits }],
    series: [{}, { stroke: colour("score"), fill: colour("score"), width: nupo > bars ? 1 : 0, points: { show: false },
      paths: nupo > bars ? undefined : uPlot.paths.bars?.({ size: [0.9, 100], gap: 0 }) }],
    hooks: { drawClear: [shade], draw: [lines],
      setCursor: [(u) => { if ((u.cursor.left ?? -1) >= 0) update({ at: Math.round(u.posToVal(u.cursor.left ?? 0, "x")) }); }] },
  }, /** @type {any} */ ([Float64Array.from(columns.score, (_, k) => k + 1), columns.score]), box());

  let down = 0;
  plot.over.addEventListener("pointerdown", (event) => (down = event.clientX));
  plot.over.addEventListener("click", (event) => {
    if (Math.abs(event.clientX - down) < 4) go(Math.round(/** @type {uPlot} */ (plot).posToVal(event.offsetX, "x")));
  });
}

/** Show so many times the positions around the middle; 0: all. @param {number} times */
function zoom(times) {
  const nupo = state.columns?.score.length ?? 0;
  const { min = 1, max = nupo } = plot?.scales.x ?? {};
  const middle = times < 1 ? state.first + state.width / 2 : (min + max) / 2, half = ((max - min) / 2) * times;
  const from = Math.max(times ? middle - half : 0.5, 0.5);
  plot?.setScale("x", { min: from, max: times ? Math.min(from + 2 * half, nupo + 0.5) : nupo + 0.5 });
}

export function connect() {
  for (const [id, times] of /** @type {[string, number][]} */ ([["zoomin", 0.5], ["zoomout", 2], ["zoomall", 0]])) {
    element(id, HTMLButtonElement).addEventListener("click", () => zoom(times));
  }
  let shown = "", length = 0;
  showwhen((now) => [now.columns], (now) => {
    const nupo = now.columns?.score.length ?? 0;
    if (!plot || !now.columns || shown !== now.shown || length !== nupo) build(now);
    else plot.setData(/** @type {any} */ ([plot.data[0], now.columns.score]), false), plot.redraw();
    [shown, length] = [now.shown, nupo];
  });
  showwhen((now) => [now.table, now.first, now.width], () => plot?.redraw(false));
  watchtheme(() => build(state));
  new ResizeObserver(() => {
    const width = box().clientWidth;
    if (plot && width && width !== plot.width) plot.setSize({ width, height: plot.height });
  }).observe(box());
}
