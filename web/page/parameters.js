// The parameters of a run. Their defaults and ranges are the program's own; the page adds its words, and the form, the
// address and the command line follow.
// Words     a value is text as on the command line; "" is the program's own default

/** The options of the program, as the build asks the engine for them. */
const table = OPTIONS;

/** How many sequences an alignment has, and what b1 and b2 are for it by default. @typedef {{numseq: number, b1: number, b2: number}} Size */

/**
 * @typedef {object} Parameter
 * @property {string} name of the option, without its dash
 * @property {string} label
 * @property {string} effect of a higher value, in one line
 * @property {Record<string, string>} [choices] value and words; without it the value is a whole number
 * @property {(size: Size, value: (name: string) => number) => number} standard the default
 * @property {(size: Size, value: (name: string) => number, values: Record<string, string>) => [number, number, string, string]} range
 *   the smallest and the largest value, and why no smaller and no larger one
 * @property {number} [slider] where the slider ends, when not at the largest value
 */

/** @param {string} name */
const option = (name) => {
  const found = table.find((one) => one.name === `-${name}`);
  if (!found) throw new Error(`no option ${name}`);
  return found;
};
const upper = (/** @type {string} */ text) => text.slice(0, 1).toUpperCase() + text.slice(1);

/** Of "N none|H half with-half": N, the default perhaps, "None" and H "With half". @param {string} name */
function choicesOf(name) {
  const { values, standard } = option(name), list = values.split("|").map((choice) => choice.split(" "));
  const chosen = list.map((words) => [words[0] === standard ? "" : words[0], upper((words[words.length - 1] ?? "").replaceAll("-", " "))]);
  return Object.fromEntries(list.some(([word]) => word === standard) ? chosen : [["", upper(standard)], ...chosen]);
}

/** @param {string} name @param {Pick<Parameter, "label" | "effect">} words @returns {Parameter} */
const chosen = (name, words, choices = choicesOf(name)) => ({ name, ...words, choices, standard: () => 0, range: () => [0, 0, "", ""] });

/** Who has each genetic code. @type {Record<number, string>} */
const codeNames = {
  1: "standard", 2: "mitochondria of vertebrates", 3: "mitochondria of yeast", 4: "mitochondria of moulds, protozoa; Mycoplasma",
  5: "mitochondria of invertebrates", 6: "ciliates", 9: "mitochondria of echinoderms, flatworms", 10: "Euplotes", 11: "bacteria, plastids",
  12: "Candida and other yeasts", 13: "mitochondria of ascidians", 14: "mitochondria of some flatworms", 15: "Blepharisma",
  16: "mitochondria of Chlorophyceae", 21: "mitochondria of trematodes", 22: "mitochondria of Scenedesmus", 23: "mitochondria of Thraustochytrium",
  24: "mitochondria of Rhabdopleuridae", 25: "SR1, Gracilibacteria", 26: "Pachysolen", 27: "Karyorelictea", 28: "Condylostoma",
  29: "Mesodinium", 30: "Peritrichia", 31: "Blastocrithidia", 32: "plastids of Balanophoraceae", 33: "mitochondria of Cephalodiscidae",
};
const codeChoices = Object.fromEntries(CODES.map(({ number }) => [number === 1 ? "" : number, [number, codeNames[number]].filter((word) => word).join(" ")]));

/** The residues of all codons, in the order of TCAG, under the code of the values. @param {Record<string, string>} values */
export const residuesOf = ({ code }) => CODES.find(({ number }) => number === Number(code || 1))?.residues ?? "";

/** A number whose range is always the same. @param {string} name @param {Pick<Parameter, "label" | "effect" | "slider">} words @returns {Parameter} */
function fixed(name, words) {
  const { least, most, standard } = option(name), other = standard.match(/^as (b\d)$/)?.[1];
  return { name, ...words, range: () => [least, most, "", ""], standard: (_, value) => (other ? value(other) : Number(standard)) };
}

/** In the order in which the program has to read them: b1 is checked against b2, b4 sets b0. @type {Parameter[]} */
export const parameters = [
  chosen("t", { label: "Type of sequence", effect: "Codons: scored like DNA, blocks end at whole codons" }),
  chosen("code", { label: "Genetic code", effect: "For amino acids and notes on stop codons; the blocks stay the same" }, codeChoices),
  { name: "b2", label: "Sequences for a flank position",
    effect: "Higher keeps less: blocks begin and end at stricter positions",
    standard: ({ b2 }, value) => Math.max(b2, value("b1")),
    range: ({ numseq }, value) => [value("b1"), numseq, "that is b1", "that is the number of sequences"] },
  { name: "b1", label: "Sequences for a conserved position",
    effect: "Higher keeps less: fewer positions are conserved",
    standard: ({ b1 }) => b1,
    range: ({ b1, numseq }, value, { b2 = "" }) => [b1, /^\d+$/.test(b2) ? value("b2") : numseq, "half the number of sequences + 1", /^\d+$/.test(b2) ? "that is b2" : "that is the number of sequences"] },
  fixed("b3", { label: "Nonconserved positions in a row", effect: "Higher keeps more: blocks run across longer variable stretches", slider: 40 }),
  fixed("b4", { label: "Length of a block", effect: "Higher keeps less: short blocks are dropped", slider: 60 }),
  fixed("b0", { label: "Length of an initial block", effect: "Higher keeps less: as b4, but before gaps are cut out", slider: 60 }),
  chosen("b5", { label: "Allowed gap positions", effect: "Keeps more from None over With half to All" }),
  chosen("b6", { label: "Similarity matrix", effect: "For proteins: Yes keeps more, as similar residues count" }),
];

/** In the order in which people think of them. */
export const shownOrder = ["t", "code", "b1", "b2", "b3", "b4", "b0", "b5", "b6"];

export const parameterOf = (/** @type {string} */ name) => parameters.find((parameter) => parameter.name === name);

/**
 * The number in force for a parameter of numbers. A share of b1 or b2 that is too small is the least that they may be.
 * @param {Record<string, string>} values @param {string} name @param {Size} size @returns {number}
 */
export function inForce(values, name, size) {
  const value = values[name] ?? "";
  if (/^\d.*%$/.test(value)) return Math.max(floor(value, size), name === "b1" ? size.b1 : inForce(values, "b1", size));
  if (/^\d/.test(value)) return Number(value);
  return parameterOf(name)?.standard(size, (other) => inForce(values, other, size)) ?? 0;
}

/** The sequences in a share of them. @param {string} per @param {Size} size */
const floor = (per, { numseq }) => Math.floor((numseq * Number(per.slice(0, -1))) / 100);

/**
 * What a number may be, and why a value outside of that is refused; "" where it is not.
 * @param {Record<string, string>} values @param {string} name @param {Size} size
 */
export function bounds(values, name, size) {
  const [least, most, whyLeast, whyMost] =
    parameterOf(name)?.range(size, (other) => inForce(values, other, size), values) ?? [0, 0, "", ""];
  const value = inForce(values, name, size), text = values[name] ?? "", { b1 = "", b2 = "" } = values;
  const because = (/** @type {string} */ why) => (why && ` (${why})`);
  let wrong = "";
  if (!/^\d*%?$/.test(text)) wrong = "Has to be a whole number.";
  else if (text.endsWith("%") && parseInt(text) > 100) wrong = "At most 100 %.";
  else if (value < least) wrong = `At least ${least}${because(whyLeast)}.`;
  else if (value > most) wrong = `At most ${most}${because(whyMost)}.`;
  else if (name === "b1" && b1.endsWith("%") && b2.endsWith("%") && parseInt(b1) > parseInt(b2)) wrong = `At most ${b2} (that is b2).`;
  return { least, most, wrong };
}

/** Whether the program would refuse any of the values. @param {Record<string, string>} values @param {Size} size */
export const refused = (values, size) =>
  parameters.some(({ name, choices }) => !choices && size.numseq > 0 && bounds(values, name, size).wrong !== "");

/** The share, in per cent, from which the program makes this number of sequences: it cuts off. @param {number} number @param {Size} size */
export const share = (number, { numseq }) => `${Math.ceil((number * 100) / numseq)}%`;

/**
 * The shares of b1 or b2 that make a difference, in per cent.
 * @param {Record<string, string>} values @param {string} name @param {Size} size
 */
export function shareBounds(values, name, size) {
  const least = bounds(values, name, size).least;
  const fitting = Array.from({ length: 101 }, (_, per) => per)
    .filter((per) => floor(`${per}%`, size) >= least && bounds({ ...values, [name]: `${per}%` }, name, size).wrong === "");
  return { least: fitting[0] ?? 0, most: fitting[fitting.length - 1] ?? 100 };
}

/** The parameters that say what the letters are: presets leave them. */
export const letterNames = ["t", "code"];
const blockNames = parameters.map(({ name }) => name).filter((name) => !letterNames.includes(name));

/** The presets as values, which hold what differs from the defaults; `preset` is for the one that keeps every column. */
export const presets = PRESETS.map(({ name, every, parameters: { b2 = "", b3, b4, gaps = "" } }) => {
  /** @type {Record<string, string>} */
  const all = every ? { preset: name } : { b2: String(b2), b3: String(b3), b4: String(b4), b5: gaps.slice(0, 1).toUpperCase() };
  return { name, values: Object.fromEntries(Object.entries(all).filter(([b, value]) => value && (every || value !== option(b).standard))) };
});

/** The preset that the values are, whatever the letters are; "": none of them. @param {Record<string, string>} values */
export const presetOf = (values) =>
  presets.find((one) => ["preset", ...blockNames].every((name) => (values[name] || "") === (one.values[name] || "")))?.name ?? "";

/** What is said of the values: those that differ from their defaults, or the preset that they are. @param {Record<string, string>} values */
function said(values) {
  const preset = presetOf(values), possible = values.t === "C" ? letterNames : ["t"];
  const given = (preset ? possible : [...possible, ...blockNames]).filter((name) => values[name]).map((name) => [name, values[name]]);
  return blockNames.concat("preset").some((name) => preset && values[name]) ? [...given, ["preset", preset]] : given;
}

/** The options that differ from their defaults. @param {Record<string, string>} values */
export const options = (values) => said(values).map(([name, value]) => `${name.length > 2 ? "--" : "-"}${name}=${value}`);

/** What the address holds, as `example=globins&b3=4&b5=H`. @param {Record<string, string>} values @param {string} [example] */
export const toLink = (values, example) => new URLSearchParams([...(example ? [["example", example]] : []), ...said(values)]).toString();

/** The values in an address; what no parameter can take is left out. @param {string} link */
export function fromLink(link) {
  const found = new URLSearchParams(link);
  const values = { ...presets.find(({ name }) => name === found.get("preset"))?.values };
  for (const { name, choices } of parameters.filter((one) => !values.preset || letterNames.includes(one.name))) {
    const value = found.get(name);
    if (value === null) continue;
    const choice = choices && Object.hasOwn(choices, value) ? value : value.slice(0, 1).toUpperCase();
    if (choices ? choice in choices : /^\d{1,5}$/.test(value) || (/^b[12]$/.test(name) && /^\d{1,3}%$/.test(value))) values[name] = choices ? choice : value;
  }
  return values;
}
