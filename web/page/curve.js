// How many positions are kept over the range of the parameter whose field has the focus, so that one sees where it matters.

import { engine, tell } from "./engine.js";
import { bounds, inForce, parameterOf } from "./parameters.js";
import { element, invalid, shares, showWhen, shownRow, size, state } from "./state.js";
import { number } from "./words.js";

const rest = 400; // milliseconds without a change before a curve is computed
const most = 40; // values
const height = 44;

/** Values of a parameter over its slider's range, or its choices. @param {string} name @returns {string[]} */
function range(name) {
  const parameter = parameterOf(name);
  if (!parameter) return [];
  if (parameter.choices) return Object.keys(parameter.choices);
  const { least, most: largest } = bounds(state.values, name, size(state)), end = Math.min(largest, parameter.slider ?? largest);
  const n = Math.min(most, end - least + 1);
  return [...new Set(Array.from({ length: n }, (_, k) => String(Math.round(least + (n > 1 ? (k * (end - least)) / (n - 1) : 0)))))];
}

/** What each choice keeps. @param {string} name @param {[string, number][]} points @param {number} nupo */
function listed(name, points, nupo) {
  const { choices = {} } = parameterOf(name) ?? {};
  const words = points.map(([value, kept]) => `${choices[value]} ${kept < 0 ? "not possible" : number(kept)}`);
  element(`${name}-curve`, HTMLElement).textContent = `Kept of ${number(nupo)} positions: ${words.join(", ")}.`;
}

/** @param {string} name @param {[number, number][]} points values and positions kept @param {number} nupo */
function drawn(name, points, nupo) {
  const place = element(`${name}-curve`, HTMLElement), [least] = points[0], [largest] = points[points.length - 1];
  const x = (/** @type {number} */ value) => 4 + (192 * (value - least)) / Math.max(largest - least, 1), y = (/** @type {number} */ kept) => height - 4 - ((height - 8) * kept) / nupo;
  const now = inForce(state.values, name, size(state)), counts = points.map(([, kept]) => kept);
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
    if (!name || name === "code" || !now.columns || invalid(now)) return; // each code keeps the same
    waiting = setTimeout(async () => {
      const { values } = state, row = shownRow(state), list = range(name), nupo = Number(row?.positions);
      // The other one of b1 and b2 as a number too: the program wants both in one unit.
      const other = name === "b1" ? "b2" : "b1", counted = /^b[12]$/.test(name) && shares(state) && values[other];
      const others = counted ? { ...values, [other]: String(inForce(values, other, size(state))) } : values;
      try {
        /** @type {number[]} */
        const kept = await engine.ask({ job: "curve", values: list.map((value) => ({ ...others, [name]: value })) });
        if (mine !== turn) return;
        const points = list.map((value, k) => /** @type {[string, number]} */ ([value, kept[k]]));
        const possible = points.filter(([, n]) => n >= 0).map(([value, n]) => /** @type {[number, number]} */ ([Number(value), n]));
        if (parameterOf(name)?.choices) listed(name, points, nupo);
        else if (possible.length > 1) drawn(name, possible, nupo);
      } catch (error) {
        tell(error);
      }
    }, rest);
  });
}
