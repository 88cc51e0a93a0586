// What only a person can decide about the data, as buttons: the type of sequence, shares instead of numbers, and how the
// sequences of a batch are put together. What is offered follows from the data.

import { background, Dropped } from "./engine.js";
import { inForce, share } from "./parameters.js";
import { element, isBatch, isNucleic, make, refill, showWhen, size, sizes, state, update } from "./state.js";

const mostAlignments = 3000; // whose names are compared

/** @param {string} key @param {string} label @param {boolean} pressed @param {() => void} then */
function choice(key, label, pressed, then) {
  const button = make("button", { type: "button" }, label);
  button.dataset.key = key;
  button.setAttribute("aria-pressed", String(pressed));
  button.addEventListener("click", then);
  return button;
}

/** @param {string} question @param {HTMLElement[]} answers */
function row(question, ...answers) {
  const made = make("p", { className: "buttons" }, make("span", {}, question), ...answers);
  made.setAttribute("role", "group");
  made.setAttribute("aria-label", question);
  return made;
}

/** @param {import("./state.js").State} now */
function ofType(now) {
  const found = now.letters?.nucleotides ?? null, { t } = now.values, nucleic = isNucleic(now), failed = now.table.some(({ status }) => status !== "ok");
  const set = (/** @type {string} */ value) => () => update({ values: { ...state.values, t: value } });
  if (!failed && (found === null || (!found && !nucleic))) return [];
  const question = found === null ? "Trim the letters as" : `These letters look like ${found ? "nucleotides" : "protein"}. Trim them as`;
  return [row(question, choice("t-D", "DNA", t ? t === "D" : nucleic, set("D")), choice("t-C", "codons", t === "C", set("C")), choice("t-P", "protein", t ? t === "P" : found !== null && !nucleic, set("P")))];
}

/** b1 and b2 as numbers, in a batch whose alignments differ in size. @param {import("./state.js").State} now */
function ofSize(now) {
  const n = size(now);
  const numbers = ["b1", "b2"].filter((name) => /^\d+$/.test(now.values[name] ?? ""));
  if (sizes(now) < 2 || n.numseq === 0 || numbers.length === 0) return [];
  const per = Object.fromEntries(["b1", "b2"].filter((name) => now.values[name]).map((name) => [name, share(inForce(now.values, name, n), n)]));
  return [row("The alignments have different numbers of sequences.",
    choice("shares", `Make ${numbers.join(" and ")} a share of them: ${Object.values(per).join(", ")}`, false, () => update({ values: { ...state.values, ...per } })))];
}

/** @param {import("./state.js").State} now */
function ofMatching(now) {
  const { names } = now, { match = "", species = "" } = now.outputs;
  if (!names || names.readable < 2) return [];
  const told = names.same ? "All alignments have the same names. " : "The alignments have different names, or another order. ";
  const set = (/** @type {string} */ how, /** @type {string} */ rule = "") => () => {
    const { match: _, species: __, ...others } = state.outputs;
    update({ outputs: { ...others, ...(how ? { match: how } : {}), ...(rule ? { species: rule } : {}) } });
  };
  const rules = names.rules.map(({ options, name, key }) => ({ rule: options.join(" "), words: `the species in the name: ${key} of ${name}` }));
  if (species && !rules.some(({ rule }) => rule === species)) rules.push({ rule: species, words: `the species in the name: ${species}` });
  return [row(`${told}Put sequences together by`,
    choice("match-", "same names in the same order", !match, set("")),
    choice("match-name", "name; a missing one becomes ?", match === "name" && !species, set("name")),
    ...rules.map(({ rule, words }) => choice(`match${rule}`, words, match === "name" && species === rule, set("name", rule))),
    choice("match-order", "order, whatever the names", match === "order", set("order")))];
}

export function connect() {
  const box = element("choices", HTMLElement);
  showWhen((now) => [now.letters, now.columns, now.values, now.outputs, now.table, now.names, now.kind], (now) => {
    refill(box, ...ofType(now), ...ofSize(now), ...ofMatching(now));
  });
  showWhen((now) => [now.opened], async (now) => {
    const { opened } = now;
    if (!opened || !isBatch(now) || opened.alignments.length > mostAlignments) return;
    const ask = async () => {
      try {
        const names = await background.ask({ job: "names", alignments: opened.alignments });
        if (state.opened === opened) update({ names });
      } catch (error) {
        if (error instanceof Dropped && state.opened === opened) setTimeout(ask, 300);
      }
    };
    ask();
  });
}
