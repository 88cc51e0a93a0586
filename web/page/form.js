// The form of the parameters, made of their table.

import { isCodons } from "./layers.js";
import { bounds, fromLink, inForce, letterNames, parameterOf, presetOf, presets, share, shareBounds, shownOrder, toLink } from "./parameters.js";
import { element, make, shares, show, showWhen, size, state, update } from "./state.js";

const unreadable = "?"; // stands for what was typed where the browser does not hand it out, as it is no number

/** Set one value, "" for the default. The program wants shares of both b1 and b2, or of neither. @param {string} name @param {string} value */
function set(name, value) {
  const counted = name === "b1" || name === "b2", per = counted && shares(state) && value !== "";
  update({ values: inUnit({ ...state.values, [name]: per ? `${value}%` : value }, counted ? shares(state) : null) });
}

/**
 * b1 and b2 in per cent of the sequences, or in sequences; null: as they are.
 * @param {Record<string, string>} values @param {boolean | null} per
 */
function inUnit(values, per) {
  const n = size(state), changed = { ...values };
  for (const name of per === null || n.numseq === 0 ? [] : ["b1", "b2"]) {
    const value = values[name];
    if (!/^\d/.test(value ?? "")) continue;
    if (per && !value.endsWith("%")) changed[name] = share(Number(value), n);
    if (!per && value.endsWith("%")) changed[name] = String(inForce(values, name, n));
  }
  return changed;
}

/** The choice whether b1 and b2 count sequences or per cent of them. */
function unit() {
  const buttons = [["sequences", false], ["per cent of them", true]].map(([label, per]) => {
    const button = make("button", { type: "button" }, String(label));
    button.addEventListener("click", () => update({ asShares: per === true, values: inUnit(state.values, per === true) }));
    show((now) => button.setAttribute("aria-pressed", String(shares(now) === per)));
    return button;
  });
  const row = make("p", { className: "unit" }, "b1 and b2 in ", ...buttons);
  row.setAttribute("role", "group");
  row.setAttribute("aria-label", "Unit of b1 and b2");
  return row;
}

/** A button for each preset, which leaves what the letters are. */
function ofPresets() {
  return presets.map(({ name, values }) => {
    const button = make("button", { type: "button" }, name);
    button.addEventListener("click", () => update({ asShares: null, values: { ...Object.fromEntries(letterNames.map((one) => [one, state.values[one] ?? ""])), ...values } }));
    show((now) => button.setAttribute("aria-pressed", String(presetOf(now.values) === name)));
    return button;
  });
}

/** @param {import("./parameters.js").Parameter} parameter */
function field({ name, label, effect, choices, slider }) {
  const control = choices
    ? make("select", {}, ...Object.entries(choices).map(([value, words]) => make("option", { value }, words)))
    : make("input", { type: "number", inputMode: "numeric", step: "1" });
  control.id = name;
  control.setAttribute("aria-describedby", `${name}-effect ${name}-wrong`);
  const range = choices ? null : make("input", { type: "range", step: "1" });
  range?.setAttribute("aria-label", `${name}, slider`);
  for (const input of range ? [control, range] : [control]) {
    input.addEventListener("input", () => set(name, input.validity.badInput ? unreadable : input.value));
  }
  const wrong = make("p", { id: `${name}-wrong`, className: "wrong" });
  wrong.setAttribute("role", "alert");
  const extent = make("span", {}); // what the number may be

  show((now) => {
    const value = now.values[name] ?? "", n = size(now);
    if (!(control instanceof HTMLInputElement) || !range) {
      control.value = value;
    } else {
      const known = n.numseq > 0 || !/^b[12]$/.test(name), per = /^b[12]$/.test(name) && shares(now);
      const { wrong: why, ...numbers } = bounds(now.values, name, n);
      const { least, most } = per ? shareBounds(now.values, name, n) : numbers;
      const standard = inForce({ ...now.values, [name]: "" }, name, n), force = inForce(now.values, name, n);
      // Never a number that is not in force: a default is no whole share.
      const number = value.startsWith(unreadable) ? "" : per || !known ? value.replace(/%$/, "") : String(force);
      const typed = document.activeElement === control && (control.validity.badInput || value.replace(/%$/, "") === control.value);
      if (!typed) control.value = number;
      control.placeholder = per || !known ? "default" : "";
      control.min = range.min = String(least);
      control.max = String(most);
      range.max = String(Math.min(most, slider ?? most));
      range.value = number || String(per ? Math.ceil((standard * 100) / n.numseq) : force);
      range.disabled = !known;
      const what = per ? `. In force here: ${force} of ${n.numseq} sequences. Default ${standard}, from ${least} % to ${most} %` : `. Default ${standard}, from ${least} to ${most}`;
      extent.textContent = known ? what : "";
      wrong.textContent = known ? why : "";
      control.setAttribute("aria-invalid", String(known && why !== ""));
    }
    row.classList.toggle("changed", value !== "");
    row.hidden = name === "code" && !isCodons(now);
    row.toggleAttribute("inert", !letterNames.includes(name) && Boolean(now.values.preset)); // every column is kept
  });

  const row = make("div", { className: "field" },
    make("label", { htmlFor: name }, make("b", {}, name), ` ${label}`), control,
    ...(range ? [range] : []), make("p", { id: `${name}-curve`, className: "curve effect" }), make("p", { id: `${name}-effect`, className: "effect" }, effect, extent), wrong);
  row.addEventListener("focusin", () => update({ focused: name }));
  return row;
}

/** Connect the form; the address holds the values from now on. */
export function connect() {
  const form = element("fields", HTMLElement);
  element("presets", HTMLElement).append("Preset ", ...ofPresets());
  for (const name of shownOrder) {
    const parameter = parameterOf(name);
    if (name === "b1") form.append(unit());
    if (parameter) form.append(field(parameter));
  }
  element("defaults", HTMLButtonElement).addEventListener("click", () => update({ values: {} }));

  const take = () => update({ values: fromLink(location.hash.slice(1)) });
  addEventListener("hashchange", () => toLink(state.values, state.opened?.example) !== location.hash.slice(1) && take());
  take();
  let waiting = 0;
  showWhen((now) => [now.values, now.opened], (now) => {
    clearTimeout(waiting);
    waiting = setTimeout(() => { // when a slider rests: browsers refuse an address that changes too often
      const link = toLink(now.values, now.opened?.example);
      if (link !== location.hash.slice(1)) history.replaceState(null, "", link ? `#${link}` : location.pathname + location.search);
    }, 300);
  });
}
