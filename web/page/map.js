// The block map: the whole alignment as a bar, its selected blocks below, and a frame around what the viewer shows.

import { element, showwhen, state } from "./state.js";
import { colour, prepare, watchtheme } from "./theme.js";
import { go } from "./viewer.js";

const height = 34;

function draw() {
  const canvas = element("map", HTMLCanvasElement), width = canvas.parentElement?.clientWidth ?? 0;
  const { columns, first, width: seen } = state;
  if (!columns || !width) return;
  const ctx = prepare(canvas, width, height), nupo = columns.score.length;
  const x = (/** @type {number} */ p) => ((p - 1) / nupo) * width;
  ctx.fillStyle = colour("faint");
  ctx.fillRect(0, 6, width, 8);
  ctx.fillStyle = colour("selected");
  const least = columns.blocks.length < width ? 1 : 0; // more blocks than pixels: each adds its share of a colour
  for (const block of columns.blocks) ctx.fillRect(x(block.first), 18, Math.max(x(block.last + 1) - x(block.first), least), 10);
  ctx.strokeStyle = colour("window");
  ctx.lineWidth = 2;
  ctx.strokeRect(Math.min(x(first) + 1, width - 4), 2, Math.max(Math.min(x(first + seen), width) - x(first) - 2, 3), height - 4);
}

export function connect() {
  const canvas = element("map", HTMLCanvasElement);
  const there = (/** @type {PointerEvent} */ event) =>
    go(1 + Math.floor((event.offsetX / canvas.clientWidth) * (state.columns?.score.length ?? 0)));
  canvas.addEventListener("pointerdown", (event) => {
    canvas.setPointerCapture(event.pointerId);
    there(event);
  });
  canvas.addEventListener("pointermove", (event) => event.buttons && there(event));
  showwhen((now) => [now.columns, now.first, now.width], draw);
  showwhen((now) => [now.columns], (now) => {
    const blocks = now.columns?.blocks ?? [];
    canvas.setAttribute("aria-label", `Map of ${blocks.length} selected blocks, listed below`);
  });
  watchtheme(draw);
  new ResizeObserver(draw).observe(/** @type {Element} */ (canvas.parentElement));
}
