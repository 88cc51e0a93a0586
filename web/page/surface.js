// What a picture is drawn on: a canvas of the page, or an SVG file. The same drawing serves both.

/**
 * @typedef {object} Style
 * @property {number} [size] of the letters
 * @property {"left" | "center" | "right"} [align]
 * @property {boolean} [mono] letters of one width
 */
/**
 * @typedef {object} Surface
 * @property {(x: number, y: number, width: number, height: number, fill: string) => void} rect
 * @property {(x: number, y: number, width: number, height: number, stroke: string) => void} frame
 * @property {(x1: number, y1: number, x2: number, y2: number, stroke: string, dash?: number[]) => void} line
 * @property {(x: number, y: number, text: string, fill: string, style?: Style) => void} text with its middle at height y
 * @property {(x: number, y: number, width: number, height: number, draw: () => void) => void} within draw, clipped
 */

const fonts = { plain: "system-ui, sans-serif", mono: "ui-monospace, monospace" };

/** @param {CanvasRenderingContext2D} ctx @returns {Surface} */
export function onCanvas(ctx) {
  ctx.textBaseline = "middle";
  return {
    rect(x, y, width, height, fill) {
      ctx.fillStyle = fill;
      ctx.fillRect(x, y, width, height);
    },
    frame(x, y, width, height, stroke) {
      ctx.strokeStyle = stroke;
      ctx.lineWidth = 2;
      ctx.strokeRect(x, y, width, height);
    },
    line(x1, y1, x2, y2, stroke, dash = []) {
      ctx.strokeStyle = stroke;
      ctx.lineWidth = 1.5;
      ctx.setLineDash(dash);
      ctx.beginPath();
      ctx.moveTo(x1, y1);
      ctx.lineTo(x2, y2);
      ctx.stroke();
      ctx.setLineDash([]);
    },
    text(x, y, text, fill, { size = 11, align = "left", mono = false } = {}) {
      const font = `${size}px ${mono ? fonts.mono : fonts.plain}`;
      if (ctx.font !== font) ctx.font = font;
      ctx.textAlign = align;
      ctx.fillStyle = fill;
      ctx.fillText(text, x, y);
    },
    within(x, y, width, height, draw) {
      ctx.save();
      ctx.beginPath();
      ctx.rect(x, y, width, height);
      ctx.clip();
      draw();
      ctx.restore();
    },
  };
}

const escaped = (/** @type {string} */ text) =>
  text.replace(/[\u0000-\u0008\u000b\u000c\u000e-\u001f]/g, "?") // eslint-disable-line no-control-regex -- XML allows none
    .replaceAll("&", "&amp;").replaceAll("<", "&lt;").replaceAll(">", "&gt;").replaceAll('"', "&quot;");
const short = (/** @type {number} */ n) => String(Math.round(n * 100) / 100);

/** @param {number} width @param {number} height @returns {Surface & {svg: () => string}} */
export function asSvg(width, height) {
  /** @type {string[]} */
  const parts = [];
  let clips = 0;
  return {
    rect(x, y, w, h, fill) {
      parts.push(`<rect x="${short(x)}" y="${short(y)}" width="${short(w)}" height="${short(h)}" fill="${fill}"/>`);
    },
    frame(x, y, w, h, stroke) {
      parts.push(`<rect x="${short(x)}" y="${short(y)}" width="${short(w)}" height="${short(h)}" fill="none" stroke="${stroke}" stroke-width="2"/>`);
    },
    line(x1, y1, x2, y2, stroke, dash = []) {
      parts.push(`<line x1="${short(x1)}" y1="${short(y1)}" x2="${short(x2)}" y2="${short(y2)}" stroke="${stroke}" stroke-width="1.5"${dash.length ? ` stroke-dasharray="${dash}"` : ""}/>`);
    },
    text(x, y, text, fill, { size = 11, align = "left", mono = false } = {}) {
      const anchor = { left: "start", center: "middle", right: "end" }[align];
      parts.push(`<text x="${short(x)}" y="${short(y + size * 0.35)}" fill="${fill}" font-size="${size}" font-family="${mono ? "monospace" : "sans-serif"}" text-anchor="${anchor}">${escaped(text)}</text>`);
    },
    within(x, y, w, h, draw) {
      parts.push(`<clipPath id="c${++clips}"><rect x="${short(x)}" y="${short(y)}" width="${short(w)}" height="${short(h)}"/></clipPath><g clip-path="url(#c${clips})">`);
      draw();
      parts.push("</g>");
    },
    svg: () => `<svg xmlns="http://www.w3.org/2000/svg" width="${width}" height="${height}" viewBox="0 0 ${width} ${height}">\n${parts.join("\n")}\n</svg>\n`,
  };
}
