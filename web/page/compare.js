// Two settings side by side: one is pinned, the other goes on changing.

import { Dropped, engine, tell } from "./engine.js";
import { options } from "./parameters.js";
import { differences } from "./plot.js";
import { commandLine } from "./save.js";
import { element, invalid, make, refill, showWhen, shownRow, state, update } from "./state.js";
import { copy, go } from "./viewer.js";
import { number, plural } from "./words.js";

/**
 * @typedef {object} Pinned
 * @property {Record<string, string>} values
 * @property {import("./state.js").Columns | null} columns of the alignment shown, under these values
 * @property {string} [failure] why there are none, in words
 */

const listed = 50; // differences, at most

const total = (/** @type {import("./state.js").Columns} */ { blocks }) => blocks.reduce((n, { first, last }) => n + last - first + 1, 0);
const settings = (/** @type {Record<string, string>} */ values) => options(values).join(" ") || "defaults";

/** Pin values; what they select is asked for, as what is shown may still belong to others. @param {Record<string, string>} values */
const pinnedOf = (values) => ({ values, columns: null });

/** Run the pinned values on the alignment that is shown. */
async function select() {
  const { opened, shown, pinned } = state;
  if (!opened || !pinned || pinned.columns || pinned.failure) return;
  try {
    const { columns = null, failure } = await engine.ask({ job: "select", name: shown, values: pinned.values, known: true });
    if (state.pinned === pinned && shown === state.shown) update({ pinned: { ...pinned, columns, failure } });
  } catch (error) {
    if (error instanceof Dropped) setTimeout(select, 300); // something more urgent came between
    else tell(error);
  }
}

/** One of the settings that are compared. @param {string} name @param {import("./state.js").Columns} found @param {Record<string, string>} values @param {import("./state.js").Row} row */
function line(name, found, values, row) {
  const command = commandLine(values), button = make("button", { type: "button" }, "Copy the command");
  button.dataset.key = name;
  button.disabled = !command;
  button.addEventListener("click", async () => update({ notice: await copy(command) ? "Command copied." : "The browser did not let the page copy." }));
  return make("tr", {}, make("th", { scope: "row" }, name), make("td", {}, make("code", {}, settings(values))),
    make("td", {}, `${number(total(found))} of ${plural(row.positions, "position")}, in ${plural(found.blocks.length, "block")}`), make("td", {}, button));
}

/** Buttons that go where the settings differ. @param {ReturnType<typeof differences>} changes */
function places(changes) {
  return changes.slice(0, listed).map(({ first, last, gained }) => {
    const button = make("button", { type: "button", className: gained ? "gained" : "lost" }, `${gained ? "+" : "−"}${first}–${last}`);
    button.dataset.key = `${first}`;
    button.addEventListener("click", () => go(first));
    return button;
  });
}

export function connect() {
  const box = element("compare", HTMLElement), pin = element("pin", HTMLButtonElement);
  pin.addEventListener("click", () => (state.pinned || !invalid(state)) && update({ pinned: state.pinned ? null : pinnedOf(state.values) }));

  showWhen((now) => [now.pinned, now.columns, now.values, now.outputs, now.table, now.running], (now) => {
    const { pinned, columns } = now, row = shownRow(now);
    pin.textContent = pinned ? "Unpin" : "Pin these settings, to compare";
    pin.setAttribute("aria-disabled", String(!pinned && invalid(now)));
    box.hidden = !pinned;
    box.setAttribute("aria-busy", String(now.running || (pinned !== null && !pinned.columns && !pinned.failure)));
    if (pinned?.failure) return box.replaceChildren(make("p", {}, `The pinned settings (${settings(pinned.values)}) are not possible for this alignment: ${pinned.failure}`));
    if (!pinned || !columns || !row || invalid(now)) return box.replaceChildren();
    if (!pinned.columns) return; // it is on its way
    const swap = make("button", { type: "button" }, "Swap");
    swap.dataset.key = "swap";
    swap.addEventListener("click", () => update({ values: pinned.values, pinned: pinnedOf(state.values) }));
    const changes = differences(now), sum = (/** @type {boolean} */ gained) =>
      changes.filter((one) => one.gained === gained).reduce((n, { first, last }) => n + last - first + 1, 0);
    refill(box,
      make("table", {}, make("tbody", {}, line("Pinned", pinned.columns, pinned.values, row), line("Now", columns, now.values, row))),
      make("p", {}, make("span", { className: "key gained" }), ` ${plural(sum(true), "position")} only now, `, make("span", { className: "key lost" }),
        ` ${plural(sum(false), "position")} only with the pinned settings. `, swap),
      make("p", { className: "places" }, ...places(changes), changes.length > listed ? `and ${changes.length - listed} more` : ""),
      make("p", { className: "effect" }, "Choose before you see the tree: settings that were picked by their tree prove nothing."));
  });
  showWhen((now) => [now.shown, now.opened], ({ pinned }) => pinned && update({ pinned: pinnedOf(pinned.values) }));
  showWhen((now) => [now.pinned], select);
}
