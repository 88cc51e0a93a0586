// Two settings side by side: one is pinned, the other goes on changing.

import { Dropped, engine } from "./engine.js";
import { options } from "./parameters.js";
import { differences } from "./plot.js";
import { commandLine } from "./save.js";
import { element, invalid, make, showWhen, shownRow, state, update } from "./state.js";
import { copy, go } from "./viewer.js";
import { number, plural } from "./words.js";

/**
 * @typedef {object} Pinned
 * @property {Record<string, string>} values
 * @property {import("./state.js").Columns | null} columns of the alignment shown, under these values
 */

const listed = 50; // differences, at most

const total = (/** @type {import("./state.js").Columns} */ { blocks }) => blocks.reduce((n, { first, last }) => n + last - first + 1, 0);
const settings = (/** @type {Record<string, string>} */ values) => options(values).join(" ") || "defaults";

/** Run the pinned values on an alignment that was chosen after they were pinned. */
async function select() {
  const { opened, shown, pinned } = state;
  if (!opened || !pinned || pinned.columns) return;
  try {
    const { columns = null } = await engine.ask({ job: "select", name: shown, values: pinned.values, known: true });
    if (state.pinned === pinned && shown === state.shown) update({ pinned: { ...pinned, columns } });
  } catch (error) {
    if (error instanceof Dropped) setTimeout(select, 300); // something more urgent came between
    else update({ notice: error instanceof Error ? error.message : String(error) });
  }
}

export function connect() {
  const box = element("compare", HTMLElement), pin = element("pin", HTMLButtonElement);
  pin.addEventListener("click", () => update({ pinned: state.pinned ? null : { values: state.values, columns: state.columns } }));

  showWhen((now) => [now.pinned, now.columns, now.values, now.outputs, now.table], (now) => {
    const { pinned, columns } = now, row = shownRow(now);
    pin.textContent = pinned ? "Unpin" : "Pin these settings, to compare";
    box.hidden = !pinned;
    if (!pinned || !pinned.columns || !columns || !row || invalid(now)) return box.replaceChildren();
    const changes = differences(now), sum = (/** @type {boolean} */ gained) =>
      changes.filter((one) => one.gained === gained).reduce((n, { first, last }) => n + last - first + 1, 0);
    const line = (/** @type {string} */ name, /** @type {import("./state.js").Columns} */ found, /** @type {Record<string, string>} */ values) => {
      const command = commandLine(values), button = make("button", { type: "button" }, "Copy the command");
      button.dataset.key = name;
      button.disabled = !command;
      button.addEventListener("click", () => copy(command));
      return make("tr", {}, make("th", { scope: "row" }, name), make("td", {}, make("code", {}, settings(values))),
        make("td", {}, `${number(total(found))} of ${plural(row.positions, "position")}, in ${plural(found.blocks.length, "block")}`), make("td", {}, button));
    };
    const swap = make("button", { type: "button" }, "Swap");
    swap.dataset.key = "swap";
    swap.addEventListener("click", () => update({ values: pinned.values, pinned: { values: state.values, columns: state.columns } }));
    const places = changes.slice(0, listed).map(({ first, last, gained }) => {
      const button = make("button", { type: "button", className: gained ? "gained" : "lost" }, `${gained ? "+" : "−"}${first}–${last}`);
      button.addEventListener("click", () => go(first));
      return button;
    });
    box.replaceChildren(
      make("table", {}, make("tbody", {}, line("Pinned", pinned.columns, pinned.values), line("Now", columns, now.values))),
      make("p", {}, make("span", { className: "key gained" }), ` ${plural(sum(true), "position")} only now, `, make("span", { className: "key lost" }),
        ` ${plural(sum(false), "position")} only with the pinned settings. `, swap),
      make("p", { className: "places" }, ...places, changes.length > listed ? `and ${changes.length - listed} more` : ""),
      make("p", { className: "effect" }, "Choose before you see the tree: settings that were picked by their tree prove nothing."));
  });
  showWhen((now) => [now.shown, now.opened], ({ pinned }) => pinned && update({ pinned: { ...pinned, columns: null } }));
  showWhen((now) => [now.pinned], select);
}
