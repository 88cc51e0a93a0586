// The form of the parameters, made of their table.

import { bounds, fromlink, inforce, parameters, share, shownorder, tolink } from "./parameters.js";
import { element, make, numseq, show, showwhen, state, update } from "./state.js";

/**
 * Set one value, "" for the default. The alignments of a batch differ in their numbers of sequences: there b1 and b2 are
 * kept as shares of these, both, as the program wants.
 * @param {string} name @param {string} value
 */
function set(name, value) {
  const values = { ...state.values, [name]: value }, n = numseq(state);
  if ((state.opened?.alignments.length ?? 0) > 1 && n > 0) {
    for (const one of ["b1", "b2"]) if (/^\d+$/.test(values[one] ?? "")) values[one] = share(Number(values[one]), n);
  }
  update({ values });
}

/** @param {import("./parameters.js").Parameter} parameter */
function field({ name, label, effect, choices, slider }) {
  const control = choices
    ? make("select", {}, ...Object.entries(choices).map(([value, words]) => make("option", { value }, words)))
    : make("input", { type: "number", inputMode: "numeric", step: "1" });
  control.id = name;
  control.setAttribute("aria-describedby", `${name}-effect ${name}-wrong`);
  const range = choices ? null : make("input", { type: "range", step: "1", tabIndex: -1 });
  range?.setAttribute("aria-hidden", "true"); // the same as the number beside it
  for (const input of range ? [control, range] : [control]) {
    input.addEventListener("input", () => set(name, input.value));
  }
  const wrong = make("p", { id: `${name}-wrong`, className: "wrong" });
  wrong.setAttribute("role", "alert");
  const extent = make("span", {}); // what the number may be

  show((now) => {
    const value = now.values[name] ?? "";
    if (!(control instanceof HTMLInputElement) || !range) {
      control.value = value;
    } else {
      const known = numseq(now) > 0 || !/^b[12]$/.test(name);
      const { least, most, wrong: why } = bounds(now.values, name, numseq(now));
      const number = known ? String(inforce(now.values, name, numseq(now))) : value.replace(/.*%$/, "");
      const typed = document.activeElement === control && (value === "" || value === share(Number(control.value), numseq(now)));
      if (!typed) control.value = number;
      control.min = range.min = String(least);
      control.max = String(most);
      range.max = String(Math.min(most, slider ?? most));
      range.value = number;
      range.disabled = !known;
      extent.textContent = known ? `. Default ${inforce({ ...now.values, [name]: "" }, name, numseq(now))}, from ${least} to ${most}${value.endsWith("%") && !why ? `; now ${value} of each alignment's` : ""}` : "";
      wrong.textContent = known ? why : "";
      control.setAttribute("aria-invalid", String(known && why !== ""));
    }
    row.classList.toggle("changed", value !== "");
  });

  const row = make("div", { className: "field" },
    make("label", { htmlFor: name }, make("b", {}, name), ` ${label}`), control,
    ...(range ? [range] : []), make("p", { id: `${name}-effect`, className: "effect" }, effect, extent), wrong);
  return row;
}

/** Connect the form; parameters stand in the link from now on. */
export function connect() {
  const form = element("fields", HTMLElement);
  for (const name of shownorder) {
    const parameter = parameters.find((one) => one.name === name);
    if (parameter) form.append(field(parameter));
  }
  element("defaults", HTMLButtonElement).addEventListener("click", () => update({ values: {} }));

  const take = () => update({ values: fromlink(location.hash.slice(1)) });
  addEventListener("hashchange", () => tolink(state.values) !== location.hash.slice(1) && take());
  take();
  let waiting = 0;
  showwhen((now) => [now.values], (now) => {
    clearTimeout(waiting);
    waiting = setTimeout(() => { // when a slider rests: browsers refuse an address that changes too often
      const link = tolink(now.values);
      if (link !== location.hash.slice(1)) history.replaceState(null, "", link ? `#${link}` : location.pathname + location.search);
    }, 300);
  });
}
