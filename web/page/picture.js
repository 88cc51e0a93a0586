// Plot, layers and the part of the alignment in sight as a picture for slides and papers: SVG or PNG.

import { cell, drawAlignment, heightOf } from "./alignment.js";
import { drawPlot, frameOf, plotHeight } from "./plot.js";
import { download } from "./save.js";
import { element, state, update } from "./state.js";
import { asSvg, onCanvas } from "./surface.js";
import { colour } from "./theme.js";
import { fitting, nameWidth } from "./viewer.js";

const dots = 3; // of a PNG to a pixel of the page

/** @param {import("./surface.js").Surface} surface @param {number} width @param {number} height @param {number} rows */
function draw(surface, width, height, rows) {
  surface.rect(0, 0, width, height, colour("panel"));
  drawPlot(surface, state, frameOf(state, width));
  surface.within(0, plotHeight, width, height - plotHeight, () => drawAlignment(lowered(surface), state, { width, rows, columns: fitting().columns, names: nameWidth() }));
}

/** A surface that draws below the plot. @param {import("./surface.js").Surface} surface @returns {import("./surface.js").Surface} */
const lowered = (surface) => ({
  rect: (x, y, width, height, fill) => surface.rect(x, y + plotHeight, width, height, fill),
  frame: (x, y, width, height, stroke) => surface.frame(x, y + plotHeight, width, height, stroke),
  line: (x1, y1, x2, y2, stroke, dash) => surface.line(x1, y1 + plotHeight, x2, y2 + plotHeight, stroke, dash),
  text: (x, y, text, fill, style) => surface.text(x, y + plotHeight, text, fill, style),
  within: (x, y, width, height, inner) => surface.within(x, y + plotHeight, width, height, inner),
});

function size() {
  const { rows, columns } = fitting(), shown = Math.min(rows, state.letters?.names.length ?? 0);
  return { width: Math.ceil(nameWidth() + columns * cell.width + 4), height: Math.ceil(plotHeight + heightOf(state, shown)), rows: shown };
}

export function connect() {
  element("asSvg", HTMLButtonElement).addEventListener("click", () => {
    const { width, height, rows } = size(), surface = asSvg(width, height);
    draw(surface, width, height, rows);
    download(`${state.shown}.svg`, new TextEncoder().encode(surface.svg()), "image/svg+xml");
  });
  element("asPng", HTMLButtonElement).addEventListener("click", () => {
    const { width, height, rows } = size(), canvas = Object.assign(document.createElement("canvas"), { width: width * dots, height: height * dots });
    const ctx = /** @type {CanvasRenderingContext2D} */ (canvas.getContext("2d"));
    ctx.scale(dots, dots);
    draw(onCanvas(ctx), width, height, rows);
    canvas.toBlob(async (blob) => {
      if (blob) download(`${state.shown}.png`, new Uint8Array(await blob.arrayBuffer()), "image/png");
      else update({ notice: "The picture is too large for this browser. Take SVG, or a smaller window." });
    });
  });
}
