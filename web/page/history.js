// Undo and redo of the settings: what was chosen, not what was opened or looked at.

import { element, showWhen, state, update } from "./state.js";

/** @typedef {Pick<import("./state.js").State, "values" | "outputs" | "asShares">} Settings */

const together = 600; // milliseconds within which changes of one setting are one step: dragging a slider is
/** @type {Settings[]} */ const past = [];
/** @type {Settings[]} */ const future = [];
/** @type {Settings | null} */ let present = null;
let changed = 0;
let changing = ""; // the settings that the last change was about

/** @param {Settings[]} from @param {Settings[]} to */
function step(from, to) {
  const target = from.pop();
  if (!target || !present) return;
  to.push(present);
  present = target;
  changing = "";
  update(target);
}

export function connect() {
  const undo = element("undo", HTMLButtonElement), redo = element("redo", HTMLButtonElement);
  undo.addEventListener("click", () => step(past, future));
  redo.addEventListener("click", () => step(future, past));
  document.addEventListener("keydown", (event) => {
    const typing = event.target instanceof HTMLTextAreaElement || (event.target instanceof HTMLInputElement && event.target.type !== "checkbox" && event.target.type !== "range");
    if (!(event.ctrlKey || event.metaKey) || typing || !/^[zy]$/i.test(event.key)) return;
    event.preventDefault();
    if (event.key.toLowerCase() === "y" || event.shiftKey) step(future, past);
    else step(past, future);
  });
  let opened = state.opened;
  showWhen((now) => [now.values, now.outputs, now.asShares, now.opened], ({ values, outputs, asShares, ...now }) => {
    const before = present, same = before?.values === values && before.outputs === outputs && before.asShares === asShares;
    present = same ? before : { values, outputs, asShares };
    if (!same && before && now.opened === opened) {
      const names = Object.keys({ ...values, ...before.values }).filter((name) => values[name] !== before.values[name]).join();
      if (performance.now() - changed > together || past.length === 0 || names === "" || names !== changing) past.push(before);
      changing = names;
      future.length = 0;
      changed = performance.now();
    }
    opened = now.opened;
    // A button that is disabled would lose the focus.
    undo.setAttribute("aria-disabled", String(past.length === 0));
    redo.setAttribute("aria-disabled", String(future.length === 0));
  });
}
