// The library as functions: read, select, trim, write, with the words of the Python package.
// Words     core: one instance of the program, in whose memory alignments and counts are | address: where one is, there
import { gunzip, isPacked } from "./gunzip.mjs";
import { compile, instance } from "./trimora.mjs";

/** @typedef {import("./trimora.d.ts")} Types */
/** @typedef {import("./trimora-run.mjs").Core} Core */

// In the order of the enumerations of the library.
const kinds = /** @type {const} */ (["protein", "dna", "codons"]);
const presetNames = ["classic", "relaxed", "none"];
const gapChoices = ["none", "half", "all"], forms = ["fasta", "phylip", "nexus", "trimora"];

const text = new TextDecoder(), utf8 = new TextEncoder();

/** One for each program. @type {WeakMap<WebAssembly.Module, Promise<Core>>} */
const cores = new WeakMap();

/** @param {{program?: WebAssembly.Module}} given @returns {Promise<Core>} */
async function core({ program }) {
  const compiled = program ?? (await compile());
  let found = cores.get(compiled);
  if (!found) {
    cores.set(compiled, found = instance(compiled));
    found.catch(() => cores.delete(compiled));
  }
  return found;
}

/** Where alignments and counts are; what was freed is nowhere. @type {WeakMap<object, {c: Core, at: number}>} */
const places = new WeakMap();
/** Frees what nobody holds any more. @type {FinalizationRegistry<() => void>} */
const unused = new FinalizationRegistry((drop) => drop());

/** @param {object} held @param {Core} c @param {number} at @param {(at: number) => void} drop */
function hold(held, c, at, drop) {
  places.set(held, { c, at });
  unused.register(held, () => drop(at), held);
}
/** @param {object} held @param {"_trimora_drop_alignment" | "_trimora_drop_counts"} drop */
function free(held, drop) {
  const place = places.get(held);
  if (!place) return;
  places.delete(held);
  unused.unregister(held);
  place.c[drop](place.at);
}
/** @param {object} held */
function here(held) {
  const place = places.get(held);
  if (!place) throw new TypeError("there is no alignment: it was freed, or is none");
  return place;
}

/** What is wrong with an alignment; `message` says it in words. */
export class TrimoraError extends Error {
  /** @param {string} message @param {string} kind @param {number | null} sequence @param {string} name */
  constructor(message, kind, sequence, name) {
    super(message);
    this.kind = kind;
    this.sequence = sequence;
    this.name = name;
  }
  toString() {
    return `TrimoraError: ${this.message}`;
  }
}

/** A view of what the core hands out, until its memory changes. @param {Core} c @param {number} bytes */
function view(c, bytes) {
  const [first, size] = new Uint32Array(c.HEAPU8.buffer, bytes >>> 0, 2);
  return c.HEAPU8.subarray(first, first + size);
}
/** @param {Core} c @param {number} bytes */
const string = (c, bytes) => text.decode(view(c, bytes));

/** What a function returned, which is 0 when it failed. @param {Core} c @param {number} result */
function worked(c, result) {
  if (result !== 0) return result >>> 0;
  const told = string(c, c._trimora_error()), end = told.lastIndexOf("\0"), message = told.slice(end + 1);
  const [kind, sequence, ...name] = told.slice(0, end).split("\n");
  if (kind === "bad_argument") throw new RangeError(message);
  throw new TrimoraError(message, kind, sequence === "-1" ? null : Number(sequence), name.join("\n"));
}

/** Room in the core's memory while `use` runs. @template T @param {Core} c @param {number} size @param {(at: number) => T} use */
function withRoom(c, size, use) {
  const at = c._malloc(size || 1) >>> 0;
  if (at === 0) throw new TrimoraError("there is not enough memory", "out_of_memory", null, "");
  try {
    return use(at);
  } finally {
    c._free(at);
  }
}

/** @param {string} argument @param {unknown} value @param {readonly string[]} choices */
function choice(argument, value, choices) {
  if (typeof value !== "string") throw new TypeError(`${argument} has to be text, not ${typeof value}`);
  if (!choices.includes(value)) throw new RangeError(`${argument} is "${value}", and has to be one of ${choices.join(", ")}`);
  return choices.indexOf(value);
}
/** @param {string} argument @param {unknown} value */
function whole(argument, value) {
  if (typeof value !== "number" || !Number.isInteger(value)) throw new TypeError(`${argument} has to be a whole number, not ${value}`);
  if (value < 0 || value >= 2 ** 31) throw new RangeError(`${argument} is ${value}, which is too ${value < 0 ? "small" : "large"}`);
  return value;
}
/** A number of sequences or, as text, per cent of them. @param {string} argument @param {unknown} value */
function share(argument, value) {
  if (value === undefined) return [-1, 0];
  if (typeof value !== "string") return [whole(argument, value), 0];
  if (!/^\d{1,9}%$/.test(value)) throw new RangeError(`${argument} is "${value}", and has to be a whole number, or whole per cent as "60%"`);
  return [Number(value.slice(0, -1)), 1];
}
/** @param {string | undefined} kind */
const kindNumber = (kind) => (kind === undefined ? -1 : choice("kind", kind, kinds));

/** As the core takes them. @param {import("./trimora.d.ts").Parameters} parameters */
function numbers({ preset, kind, gaps, b0, b1, b2, b3, b4, similarity, ...other }) {
  const [unknown] = Object.keys(other);
  if (unknown !== undefined) throw new TypeError(`there is no parameter ${unknown}`);
  if (similarity !== undefined && typeof similarity !== "boolean") throw new TypeError("similarity has to be true or false");
  const unset = (/** @type {string} */ name, /** @type {number | undefined} */ value) => (value === undefined ? -1 : whole(name, value));
  return Int32Array.of(preset === undefined ? -1 : choice("preset", preset, presetNames), kindNumber(kind), gaps === undefined ? -1 : choice("gaps", gaps, gapChoices), unset("b0", b0),
    ...share("b1", b1), ...share("b2", b2), unset("b3", b3), unset("b4", b4), similarity === undefined ? -1 : Number(similarity));
}

/** @template T @param {Core} c @param {Int32Array} given @param {(at: number) => T} use */
const withNumbers = (c, given, use) => withRoom(c, given.byteLength, (at) => {
  new Int32Array(c.HEAPU8.buffer, at, given.length).set(given);
  return use(at);
});

/** Sequences of equal length, each with a name. */
class Alignment {
  /** @type {string[] | undefined} */ #names;

  /** @param {Core} c @param {number} at */
  constructor(c, at) {
    hold(this, c, at, c._trimora_drop_alignment);
  }
  free() {
    free(this, "_trimora_drop_alignment");
  }
  get size() {
    const { c, at } = here(this);
    return c._trimora_size(at) >>> 0;
  }
  get width() {
    const { c, at } = here(this);
    return c._trimora_width(at) >>> 0;
  }
  get names() {
    const { c, at } = here(this);
    return this.#names ??= Array.from({ length: this.size }, (_, k) => string(c, c._trimora_name(at, k)));
  }
  get kind() {
    const { c, at } = here(this);
    return kinds[c._trimora_kind(at)] ?? null;
  }
  get format() {
    const { c, at } = here(this);
    return string(c, c._trimora_format(at));
  }
  /** @param {number} sequence @param {number} [from] @param {number} [to] */
  letters(sequence, from = 0, to = this.width) {
    const { c, at } = here(this), end = Math.max(from, Math.min(to, this.width));
    if (!(sequence >= 0 && sequence < this.size)) throw new RangeError(`there is no sequence ${sequence}`);
    if (!(from >= 0 && from <= this.width)) throw new RangeError(`there is no column ${from}`);
    const row = c._trimora_row(at, sequence) >>> 0;
    return c.HEAPU8.slice(row + from, row + end);
  }
  get sequences() {
    return Array.from({ length: this.size }, (_, k) => text.decode(this.letters(k)));
  }
  *[Symbol.iterator]() {
    for (let k = 0; k < this.size; ++k) yield /** @type {[string, string]} */ ([this.names[k], text.decode(this.letters(k))]);
  }
  toString() {
    return text.decode(write(this));
  }
}

/** Bytes in the core's memory while `use` runs. @template T @param {Core} c @param {Uint8Array} bytes @param {(at: number) => T} use */
const withBytes = (c, bytes, use) => withRoom(c, bytes.length, (at) => {
  c.HEAPU8.set(bytes, at);
  return use(at);
});

/** @type {Types["canRead"]} */
export async function canRead(head, given = {}) {
  const c = await core(given);
  return withBytes(c, head, (at) => c._trimora_can_read(at, head.length) !== 0);
}

/** @type {Types["read"]} */
export async function read(source, given = {}) {
  let bytes = typeof source === "string" ? utf8.encode(source)
    : source instanceof Uint8Array ? source : new Uint8Array(source instanceof ArrayBuffer ? source : await source.arrayBuffer());
  const c = await core(given);
  if (isPacked(bytes)) bytes = await unpacked(bytes);
  return withBytes(c, bytes, (at) => new Alignment(c, worked(c, c._trimora_read(at, bytes.length))));
}

/** What gzip data hold. @param {Uint8Array} packed */
async function unpacked(packed) {
  try {
    return new Uint8Array(await (await gunzip(packed)).arrayBuffer());
  } catch (error) {
    throw new TrimoraError(error instanceof Error ? error.message : String(error), "damaged", null, "");
  }
}

/** Texts in the core's memory while `use` runs. @template T @param {Core} c @param {(string | Uint8Array)[]} texts @param {(at: number) => T} use */
function withTexts(c, texts, use) {
  const parts = texts.map((part) => (typeof part === "string" ? utf8.encode(part) : part));
  const size = parts.reduce((n, part) => n + part.length, 0), lengths = 8, bytes = lengths + 4 * parts.length;
  return withRoom(c, bytes + size, (at) => {
    new Uint32Array(c.HEAPU8.buffer, at, 2 + parts.length).set([at + bytes, at + lengths, ...parts.map((part) => part.length)]);
    let to = at + bytes;
    for (const part of parts) {
      c.HEAPU8.set(part, to);
      to += part.length;
    }
    return use(at);
  });
}

/**
 * Names and letters in turn in the core's memory while `use` runs.
 * @template T @param {Core} c @param {Iterable<[string, string | Uint8Array]> | Record<string, string | Uint8Array>} sequences
 * @param {(texts: number, size: number) => T} use
 */
function withSequences(c, sequences, use) {
  const pairs = Symbol.iterator in sequences ? [.../** @type {Iterable<[string, string | Uint8Array]>} */ (sequences)] : Object.entries(sequences);
  const parts = pairs.flat();
  for (const part of parts) {
    if (typeof part !== "string" && !(part instanceof Uint8Array)) throw new TypeError("names are text, and letters text or Uint8Array");
  }
  return withTexts(c, parts, (texts) => use(texts, pairs.length));
}

/** @type {Types["alignment"]} */
export async function alignment(sequences, { kind, ...given } = {}) {
  const number = kindNumber(kind), c = await core(given);
  return withSequences(c, sequences, (texts, size) => new Alignment(c, worked(c, c._trimora_alignment(size, texts, number))));
}

/** What the letters say of each column. */
class ColumnCounts {
  /** @param {import("./trimora.d.ts").Alignment} ali @param {number} at */
  constructor(ali, at) {
    const { c } = here(ali);
    this.alignment = ali;
    hold(this, c, at, c._trimora_drop_counts);
  }
  free() {
    free(this, "_trimora_drop_counts");
  }
}

/** @type {Types["counts"]} */
export function counts(ali, { kind } = {}) {
  const { c, at } = here(ali);
  return new ColumnCounts(ali, worked(c, c._trimora_counts(at, kindNumber(kind))));
}

/** The blocks of one alignment. */
class Selection {
  #source;
  #numbers;
  /** @type {string[] | undefined} */ #reasons;
  /** @type {import("./trimora.d.ts").Alignment | undefined} */ #trimmed;

  /**
   * @param {import("./trimora.d.ts").Alignment | import("./trimora.d.ts").ColumnCounts} source @param {Int32Array} given
   * @param {number} address of what was found
   */
  constructor(source, given, address) {
    const { c } = here(source);
    const table = (/** @type {number} */ number) => view(c, c._trimora_table(address, number)).slice();
    const pairs = (/** @type {number} */ number) => {
      const list = new Int32Array(table(number).buffer);
      return Array.from({ length: list.length / 2 }, (_, k) => /** @type {[number, number]} */ ([list[2 * k], list[2 * k + 1]]));
    };
    this.#source = source;
    this.#numbers = given;
    this.columns = new Int32Array(table(0).buffer);
    this.blocks = pairs(1);
    this.scores = new Float32Array(table(2).buffer);
    this.classes = text.decode(table(3));
    this.residues = text.decode(table(4));
    this.initial = pairs(5);
    this.kind = kinds[c._trimora_in_force(address, 0)];
    this.b1 = c._trimora_in_force(address, 1);
    this.b2 = c._trimora_in_force(address, 2);
  }
  /** @param {number} [first] */
  reasonTable(first = 0) {
    const source = this.#source, { c, at } = here(source);
    return withNumbers(c, this.#numbers, (given) => {
      const own = source instanceof ColumnCounts ? 0 : worked(c, c._trimora_counts(at, kinds.indexOf(this.kind)));
      try {
        const found = worked(c, c._trimora_reasons(own || at, given, first));
        const words = string(c, c._trimora_reason_words(found)).split("\n").slice(0, -1);
        const index = new Uint32Array(view(c, c._trimora_reason_index(found)).slice().buffer);
        c._trimora_drop_reasons(found);
        return { words, index };
      } finally {
        if (own) c._trimora_drop_counts(own);
      }
    });
  }
  get reasons() {
    if (!this.#reasons) {
      const { words, index } = this.reasonTable();
      this.#reasons = Array.from(index, (k) => words[k]);
    }
    return this.#reasons;
  }
  get trimmed() {
    return this.#trimmed ??= trim("alignment" in this.#source ? this.#source.alignment : this.#source, this);
  }
}

/** @type {Types["select"]} */
export function select(source, parameters = {}) {
  const given = numbers(parameters), { c, at } = here(source);
  return withNumbers(c, given, (wanted) => {
    const found = worked(c, source instanceof ColumnCounts ? c._trimora_select_counts(at, wanted) : c._trimora_select(at, wanted));
    try {
      return new Selection(source, given, found);
    } finally {
      c._trimora_drop_selection(found);
    }
  });
}

/** @type {Types["trim"]} */
export function trim(ali, { columns, kind }) {
  const { c, at } = here(ali), number = choice("kind", kind, kinds);
  return withNumbers(c, columns, (list) => new Alignment(c, worked(c, c._trimora_trim(at, list, columns.length, number))));
}

/** @type {Types["supermatrix"]} */
export function supermatrix(alignments) {
  if (alignments.length === 0) throw new RangeError("there is no alignment");
  const all = alignments.map(here), [{ c }] = all, n = all.length;
  if (all.some((one) => one.c !== c)) throw new TypeError("alignments of two programs cannot be put together");
  return withRoom(c, 12 * n, (room) => {
    new Uint32Array(c.HEAPU8.buffer, room, n).set(all.map(({ at }) => at));
    const joined = new Alignment(c, worked(c, c._trimora_supermatrix(room, n, room + 4 * n)));
    const list = new Uint32Array(c.HEAPU8.buffer, room + 4 * n, 2 * n);
    return { alignment: joined, parts: all.map((_, k) => /** @type {[number, number]} */ ([list[2 * k], list[2 * k + 1]])) };
  });
}

/** @type {Types["codons"]} */
export function codons(proteins, sequences, { code = 1 } = {}) {
  const { c, at } = here(proteins), number = whole("code", code);
  return withSequences(c, sequences, (texts, size) => new Alignment(c, worked(c, c._trimora_codons(at, size, texts, number))));
}

/** @type {Types["write"]} */
export function write(ali, form = "fasta") {
  const { c, at } = here(ali), bytes = view(c, worked(c, c._trimora_write(at, choice("form", form, forms)))).slice();
  c._trimora_forget();
  return bytes;
}

/** @type {Types["options"]} */
export async function options(given = {}) {
  const c = await core(given);
  return JSON.parse(string(c, c._trimora_options()));
}

/** @type {Types["presets"]} */
export async function presets(given = {}) {
  const c = await core(given);
  return JSON.parse(string(c, c._trimora_presets()));
}

/** @type {Types["geneticCodes"]} */
export async function geneticCodes(given = {}) {
  const c = await core(given);
  return JSON.parse(string(c, c._trimora_genetic_codes()));
}

/** @type {Types["nameRules"]} */
export async function nameRules(names, given = {}) {
  const c = await core(given), texts = names.map((list) => list.map((name) => `${name}\n`).join(""));
  const rules = withTexts(c, texts, (at) => JSON.parse(string(c, worked(c, c._trimora_name_rules(texts.length, at)))));
  return rules.map((/** @type {{options: string}} */ rule) => ({ ...rule, options: rule.options.split(" ") }));
}

/** @type {Types["standards"]} */
export async function standards(size, given = {}) {
  const c = await core(given), number = whole("size", size);
  return { b1: c._trimora_standard(number, 0), b2: c._trimora_standard(number, 1) };
}
