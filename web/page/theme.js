// Colours of the canvases, which are those of the style sheet, dark or light.

/** @type {Map<string, string>} */
const known = new Map(); // asking the style sheet takes long
const dark = matchMedia("(prefers-color-scheme: dark)");
dark.addEventListener("change", () => known.clear()); // before anything is drawn again

/** @param {string} name of a custom property, without its dashes */
export function colour(name) {
  let found = known.get(name);
  if (found === undefined) known.set(name, found = getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim());
  return found;
}

/** Call when the page turns dark or light. @param {() => void} then */
export const watchTheme = (then) => dark.addEventListener("change", then);

/**
 * A canvas as large as its place on the screen, ready to be drawn on in units of the page.
 * @param {HTMLCanvasElement} canvas @param {number} width @param {number} height
 */
export function prepare(canvas, width, height) {
  const dot = devicePixelRatio || 1, ctx = /** @type {CanvasRenderingContext2D} */ (canvas.getContext("2d"));
  if (canvas.width !== Math.round(width * dot) || canvas.height !== Math.round(height * dot)) {
    canvas.width = Math.round(width * dot);
    canvas.height = Math.round(height * dot);
    canvas.style.width = `${width}px`;
    canvas.style.height = `${height}px`;
  }
  ctx.setTransform(dot, 0, 0, dot, 0, 0);
  ctx.clearRect(0, 0, width, height);
  return ctx;
}
