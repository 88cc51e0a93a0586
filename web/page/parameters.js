// The parameters of a run, in one table: the form, the address and the command line follow from its rows.
// Words     a value is text as on the command line; "" is the program's own default

/**
 * @typedef {object} Parameter
 * @property {string} name of the option, without its dash
 * @property {string} label
 * @property {string} effect of a higher value, in one line
 * @property {Record<string, string>} [choices] value and words; without it the value is a whole number
 * @property {(numseq: number, value: (name: string) => number) => number} [standard] the default
 * @property {(numseq: number, value: (name: string) => number) => [number, number, string, string]} [range]
 *   the smallest and the largest value, and why no smaller and no larger one
 * @property {number} [slider] where the slider ends, when not at the largest value
 */

const half = (/** @type {number} */ numseq) => Math.floor(numseq / 2) + 1;
const fixed = (/** @type {number} */ least, /** @type {number} */ most) =>
  /** @returns {[number, number, string, string]} */ () => [least, most, "", ""];

/** In the order in which the program has to read them: b1 is checked against b2, b4 sets b0. @type {Parameter[]} */
export const parameters = [
  { name: "t", label: "Type of sequence", choices: { "": "by its letters", P: "protein", D: "DNA", C: "codons" },
    effect: "Codons: scored like DNA, blocks end at whole codons" },
  { name: "b2", label: "Sequences for a flank position",
    effect: "Higher keeps less: blocks begin and end at stricter positions",
    standard: (numseq) => Math.max(half(numseq), Math.floor((numseq * 85) / 100)),
    range: (numseq, value) => [value("b1"), numseq, "that is b1", "that is the number of sequences"] },
  { name: "b1", label: "Sequences for a conserved position",
    effect: "Higher keeps less: fewer positions are conserved",
    standard: half,
    range: (numseq, value) => [half(numseq), value("b2"), "half the number of sequences + 1", "that is b2"] },
  { name: "b3", label: "Nonconserved positions in a row",
    effect: "Higher keeps more: blocks run across longer variable stretches",
    standard: () => 8, range: fixed(0, 32000), slider: 40 },
  { name: "b4", label: "Length of a block",
    effect: "Higher keeps less: short blocks are dropped",
    standard: () => 10, range: fixed(2, 32000), slider: 60 },
  { name: "b0", label: "Length of an initial block",
    effect: "Higher keeps less: as b4, but before gaps are cut out",
    standard: (_, value) => value("b4"), range: fixed(2, 32000), slider: 60 },
  { name: "b5", label: "Allowed gap positions", choices: { "": "None", H: "With half", A: "All" },
    effect: "Keeps more from None over With half to All" },
  { name: "b6", label: "Similarity matrix", choices: { "": "Yes", N: "No" },
    effect: "For proteins: Yes keeps more, as similar residues count" },
];

/** In the order in which people think of them. */
export const shownOrder = ["t", "b1", "b2", "b3", "b4", "b0", "b5", "b6"];

const find = (/** @type {string} */ name) => parameters.find((parameter) => parameter.name === name);

/**
 * The number in force for a parameter of numbers.
 * @param {Record<string, string>} values @param {string} name @param {number} numseq @returns {number}
 */
export function inForce(values, name, numseq) {
  const value = values[name];
  if (value) return value.endsWith("%") ? Math.floor((numseq * Number(value.slice(0, -1))) / 100) : Number(value);
  return find(name)?.standard?.(numseq, (other) => inForce(values, other, numseq)) ?? 0;
}

/**
 * What a number may be, and why a value outside of that is refused; "" where it is not.
 * @param {Record<string, string>} values @param {string} name @param {number} numseq
 */
export function bounds(values, name, numseq) {
  const [least, most, whyLeast, whyMost] =
    find(name)?.range?.(numseq, (other) => inForce(values, other, numseq)) ?? [0, 0, "", ""];
  const value = inForce(values, name, numseq);
  const because = (/** @type {string} */ why) => (why && ` (${why})`);
  let wrong = "";
  if (!/^\d*%?$/.test(values[name] ?? "")) wrong = "Has to be a whole number.";
  else if (value < least) wrong = `At least ${least}${because(whyLeast)}.`;
  else if (value > most) wrong = `At most ${most}${because(whyMost)}.`;
  return { least, most, wrong };
}

/** Whether the program would refuse any of the values. @param {Record<string, string>} values @param {number} numseq */
export const refused = (values, numseq) =>
  parameters.some(({ name, range }) => range && numseq > 0 && bounds(values, name, numseq).wrong !== "");

/** The share, in per cent, from which the program makes this number of sequences: it cuts off. @param {number} number @param {number} numseq */
export const share = (number, numseq) => `${Math.ceil((number * 100) / numseq)}%`;

/**
 * The shares that a parameter may have, in per cent: none when its range holds no whole one.
 * @param {Record<string, string>} values @param {string} name @param {number} numseq
 */
export function shareBounds(values, name, numseq) {
  const fitting = Array.from({ length: 101 }, (_, per) => per).filter((per) => bounds({ ...values, [name]: `${per}%` }, name, numseq).wrong === "");
  return { least: fitting[0] ?? 0, most: fitting[fitting.length - 1] ?? 100 };
}

/** The options that differ from their defaults. @param {Record<string, string>} values */
export const options = (values) =>
  parameters.filter(({ name }) => values[name]).map(({ name }) => `-${name}=${values[name]}`);

/** What the address holds, as `example=globins&b3=4&b5=H`. @param {Record<string, string>} values @param {string} [example] */
export const toLink = (values, example) =>
  new URLSearchParams([...(example ? [["example", example]] : []), ...parameters.filter(({ name }) => values[name]).map(({ name }) => [name, values[name]])]).toString();

/** The values in an address; what no parameter can take is left out. @param {string} link */
export function fromLink(link) {
  const found = new URLSearchParams(link);
  /** @type {Record<string, string>} */
  const values = {};
  for (const { name, choices } of parameters) {
    const value = found.get(name) ?? "";
    const letter = value.slice(0, 1).toUpperCase();
    if (choices ? letter in choices : /^\d{1,5}$/.test(value) || (/^b[12]$/.test(name) && /^\d{1,3}%$/.test(value))) values[name] = choices ? letter : value;
  }
  return values;
}
