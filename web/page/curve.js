// How many positions are kept over the range of the parameter whose field has the focus, so that one sees where it matters.

import { background, Dropped } from "./engine.js";
import { bounds, inForce, options, parameters } from "./parameters.js";
import { element, invalid, numseq, shares, showWhen, shownRow, state } from "./state.js";

const rest = 400; // milliseconds without a change before a curve is computed
const most = 40; // values
const large = 4e6; // letters; an alignment with more gets fewer values
const tooLarge = 6e7; // letters; an alignment with more gets no curve
const height = 44;

/** Values of a parameter over its slider's range. @param {string} name */
function range(name) {
  const parameter = parameters.find((one) => one.name === name), letters = Number(shownRow(state)?.sequences) * Number(shownRow(state)?.positions);
  if (!parameter?.range || !(letters < tooLarge)) return [];
  const { least, most: largest } = bounds(state.values, name, numseq(state)), end = Math.min(largest, parameter.slider ?? largest);
  const wanted = letters > large ? 10 : most, n = Math.min(wanted, end - least + 1);
  return [...new Set(Array.from({ length: n }, (_, k) => Math.round(least + (n > 1 ? (k * (end - least)) / (n - 1) : 0))))];
}

/** @param {string} name @param {[number, number][]} points values and positions kept @param {number} nupo */
function drawn(name, points, nupo) {
  const place = element(`${name}-curve`, HTMLElement), [least] = points[0], [largest] = points[points.length - 1];
  const x = (/** @type {number} */ value) => 4 + (192 * (value - least)) / Math.max(largest - least, 1), y = (/** @type {number} */ kept) => height - 4 - ((height - 8) * kept) / nupo;
  const now = inForce(state.values, name, numseq(state)), counts = points.map(([, kept]) => kept);
  const svg = document.createElementNS("http://www.w3.org/2000/svg", "svg");
  svg.setAttribute("viewBox", `0 0 200 ${height}`);
  svg.setAttribute("preserveAspectRatio", "none");
  svg.setAttribute("role", "img");
  svg.setAttribute("aria-label", `Positions kept: ${points[0][1]} at ${least}, ${points[points.length - 1][1]} at ${largest}`);
  const part = (/** @type {string} */ tag, /** @type {Record<string, string | number>} */ attributes) => {
    const made = document.createElementNS("http://www.w3.org/2000/svg", tag);
    for (const key in attributes) made.setAttribute(key, String(attributes[key]));
    svg.append(made);
  };
  part("line", { x1: x(now), x2: x(now), y1: 0, y2: height, class: "here" });
  part("polyline", { points: points.map(([value, kept]) => `${x(value)},${y(kept)}`).join(" ") });
  place.replaceChildren(svg, ` ${Math.min(...counts)} to ${Math.max(...counts)} of ${nupo} positions are kept from ${least} to ${largest}.`);
}

export function connect() {
  let waiting = 0, turn = 0;
  showWhen((now) => [now.focused, now.values, now.shown, now.columns], (now) => {
    clearTimeout(waiting);
    const mine = ++turn, name = now.focused;
    for (const place of document.querySelectorAll(".curve")) if (place.id !== `${name}-curve`) place.replaceChildren();
    if (!name || !now.columns || invalid(now)) return;
    waiting = setTimeout(async () => {
      const { values, shown } = state, row = shownRow(state), n = numseq(state);
      /** @type {[number, number][]} */
      const points = [];
      try {
        for (const value of range(name)) {
          // The other one of b1 and b2 as a number too: the program wants both in one unit.
          const other = name === "b1" ? "b2" : "b1", tried = { ...values, [name]: String(value) };
          if (/^b[12]$/.test(name) && shares(state) && values[other]) tried[other] = String(inForce(values, other, n));
          const { rows: [found] } = await background.ask({ job: "select", args: [shown, ...options(tried)], only: shown });
          if (mine !== turn) return;
          if (found?.status === "ok") points.push([value, Number(found.selected)]);
        }
        if (points.length > 1) drawn(name, points, Number(row?.positions));
      } catch (error) {
        if (!(error instanceof Dropped)) throw error;
      }
    }, rest);
  });
}
