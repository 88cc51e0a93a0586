// The engine's thread. It holds the letters of the alignment that is shown and what they say of each column, so that a
// changed parameter costs one pass over the columns; and it runs the program itself for what is saved and said.

import { zipSync } from "fflate";
import { canRead, counts, nameRules, read, run, select, standards, TrimoraError } from "trimora";
import { columnsOf, parametersOf } from "./columns.js";
import * as letters from "./letters.js";
import { unused } from "./names.js";
import { overviewIn, readTable, rowsOf } from "./tables.js";

/** @typedef {{name: string, blob: Blob}} Input */
/**
 * What the page asks for. Those that name no alignment are about the one that was selected last.
 * @typedef {{job: "open", program: WebAssembly.Module, inputs: Input[]}
 *   | {job: "select", name: string, values: Record<string, string>, known: boolean}
 *   | {job: "curve", values: Record<string, string>[]}
 *   | {job: "sample", rows: number[], positions: Uint32Array}
 *   | {job: "gaps"}
 *   | {job: "find", motif: string, rows: number[], start: number, from: number}
 *   | {job: "fasta", rows: number[], positions: Uint32Array}
 *   | {job: "run", args: string[], only?: string}
 *   | {job: "aligned", heads: Blob[]}
 *   | {job: "names", alignments: string[]}
 *   | {job: "write", args: string[], only?: string, zip?: {name: string, also: Record<string, Uint8Array>, alone?: boolean}}} Job
 */

const text = new TextDecoder();
const mostRuled = 200; // alignments whose names are tried, evenly from all

/** @type {WebAssembly.Module} */ let program;
/** @type {Input[]} */ let inputs = [];
/** @type {Record<string, Uint8Array>} */ let bytes = {}; // of the inputs of runs, each read once

/**
 * The alignment that is shown.
 * @typedef {object} Shown
 * @property {string} name of its input
 * @property {import("trimora").Alignment} ali
 * @property {Uint32Array} column of the file, from 1, for each position; empty as long as its type is not known
 * @property {Map<boolean, import("trimora").ColumnCounts>} counts as proteins, and as nucleotides
 */
/** @type {Shown | null} */ let shown = null;

/** The files of a run: all, or one alone. @param {string} [only] */
async function files(only) {
  /** @type {Record<string, Uint8Array>} */
  const found = {};
  for (const { name, blob } of inputs) {
    if (only === undefined || name === only) found[name] = bytes[name] ??= new Uint8Array(await blob.arrayBuffer());
  }
  return found;
}

/** Read the alignment that is looked at from now on. @param {string} name */
async function show(name) {
  if (shown?.name === name) return shown;
  for (const found of shown?.counts.values() ?? []) found.free();
  shown?.ali.free();
  shown = null;
  const input = inputs.find((one) => one.name === name);
  if (!input) throw new Error(`there is no ${name}`);
  return (shown = { name, ali: await read(input.blob, { program }), column: new Uint32Array(), counts: new Map() });
}

/** What is selected of the alignment that is shown. @param {Shown} from @param {Record<string, string>} values */
function selected({ ali, counts: known }, values) {
  const parameters = parametersOf(values), protein = (parameters.kind ?? ali.kind) === "protein";
  let found = known.get(protein);
  if (!found) known.set(protein, found = counts(ali, { kind: parameters.kind }));
  return select(found, parameters);
}

/** Why there is no result, in words; an end of memory is no such reason. @param {unknown} error */
function told(error) {
  if (error instanceof TrimoraError && error.kind !== "out_of_memory") return error.message;
  if (error instanceof RangeError && /has to be/.test(error.message)) return error.message; // a value that it does not allow
  throw error;
}

/** How many names, up to the first blank, are in two alignments or more. @param {string[][]} all */
function meeting(all) {
  /** @type {Map<string, number>} */
  const seen = new Map();
  for (const list of all) for (const name of new Set(list.map((one) => one.split(/\s/)[0]))) seen.set(name, (seen.get(name) ?? 0) + 1);
  return [...seen.values()].filter((n) => n > 1).length;
}

/** The alignment shown, for jobs that follow its selection. */
function present() {
  if (!shown) throw new Error("no alignment is shown");
  return shown;
}

/** @type {{[J in Job["job"]]: (job: Extract<Job, {job: J}>) => Promise<any>}} */
const jobs = {
  async open(job) {
    ({ program, inputs } = job);
    bytes = {};
  },

  /**
   * The columns under these values and their line of the table, or why there are none; and what is known of the alignment,
   * unless it is known already.
   */
  async select({ name, values, known }) {
    let from;
    try {
      from = await show(name);
    } catch (error) {
      return { failure: told(error) };
    }
    const { ali } = from;
    const about = known ? null : { names: ali.names, numseq: ali.size, kind: ali.kind, nucleotides: letters.nucleotides(ali) };
    const result = { about, standards: { numseq: ali.size, ...(await standards(ali.size, { program })) } };
    try {
      const found = selected(from, values), columns = columnsOf(found), positions = columns.score.length;
      if (from.column.length === 0) from.column = columns.column.slice();
      const row = {
        alignment: name, sequences: ali.size, columns: ali.width, positions, selected: found.columns.length,
        blocks: columns.blocks.length + columns.empty, percent: Math.floor((found.columns.length * 100) / positions), ...(values.preset ? { b1: "NA", b2: "NA" } : { b1: found.b1, b2: found.b2 }), status: "ok",
      };
      return { ...result, columns, row: Object.fromEntries(Object.entries(row).map(([key, value]) => [key, String(value)])), kind: found.kind };
    } catch (error) {
      return { ...result, failure: told(error) };
    }
  },

  /** How many positions are kept under each of several settings; -1 where a setting is refused. */
  async curve({ values }) {
    return values.map((one) => {
      try {
        return selected(present(), one).columns.length;
      } catch {
        return -1;
      }
    });
  },

  /** The letters of some rows at some positions, row by row. */
  async sample({ rows, positions }) {
    const { ali, column } = present();
    return letters.sample(ali, column, rows, positions);
  },

  /** The gaps of each sequence. */
  async gaps() {
    const { ali, column } = present();
    return letters.gaps(ali, column);
  },

  async find({ motif, rows, start, from }) {
    const { ali, column } = present();
    return letters.find(ali, column, motif, rows, start, from);
  },

  async fasta({ rows, positions }) {
    const { ali, column } = present();
    return letters.fasta(ali, column, rows, positions);
  },

  /** What became of the alignments of a run, and what the program says; nothing else is written. */
  async run({ args, only }) {
    const name = unused("table", inputs), asked = only === undefined ? `--overview=${name}` : `--table=${name}`;
    const made = await run(await files(only), [...args, "-s=N", "-p=N", asked], { program });
    const result = { status: made.status, stdout: text.decode(made.stdout), stderr: text.decode(made.stderr) }, found = made.files[name];
    if (only !== undefined || !found) return { ...result, rows: found ? readTable(found) : [] };
    const overview = overviewIn(found);
    return { ...result, overview, rows: rowsOf(overview.table) };
  },

  /** Which files begin as alignments do, by their first bytes. */
  async aligned({ heads }) {
    return Promise.all(heads.map(async (head) => canRead(new Uint8Array(await head.arrayBuffer()), { program })));
  },

  /** Whether all alignments that can be read have the same names, and by which parts of them more would meet. */
  async names({ alignments }) {
    /** @type {string[][]} */
    const all = [];
    for (const name of alignments) {
      const input = inputs.find((one) => one.name === name);
      try {
        const ali = await read(/** @type {Input} */ (input).blob, { program });
        all.push(ali.names);
        ali.free();
      } catch (error) {
        told(error);
      }
    }
    const plain = all.map((list) => list.map((name) => name.split(/\s/)[0]).join("\n")), every = Math.ceil(all.length / mostRuled);
    const some = all.filter((_, k) => k % every === 0), whole = meeting(some);
    const rules = (await nameRules(some, { program })).filter((rule) => rule.meeting > whole);
    return { readable: all.length, same: plain.every((names) => names === plain[0]), rules };
  },

  /** Every file that the run writes, or one zip of them; with `alone`, a single one as it is. */
  async write({ args, only, zip }) {
    const { status, stderr, files: written } = await run(await files(only), args, { program }), size = Object.keys(written).length;
    const given = zip && size > (zip.alone ? 1 : 0) ? { [zip.name]: zipSync({ ...written, ...zip.also }) } : written;
    return { status, stderr: text.decode(stderr), files: given };
  },
};

let before = Promise.resolve();

// One job after the other: a job may wait for a file, and the next one must not overtake it.
self.onmessage = ({ data: { id, job } }) => {
  before = before.then(async () => {
    const began = performance.now();
    try {
      // @ts-ignore the job picks its own function
      const result = await jobs[job.job](job);
      self.postMessage({ id, result, took: performance.now() - began }, { transfer: buffers(result) });
    } catch (error) {
      self.postMessage({ id, error: String(error) });
    }
  });
};

/** The buffers in a result, which move to the page instead of being copied. @param {any} result */
function buffers(result) {
  /** @type {Set<ArrayBuffer>} */
  const found = new Set();
  const own = new Set(Object.values(bytes).map((one) => one.buffer));
  const search = (/** @type {any} */ value, /** @type {number} */ depth) => {
    if (ArrayBuffer.isView(value)) {
      if (!own.has(/** @type {ArrayBuffer} */ (value.buffer))) found.add(/** @type {ArrayBuffer} */ (value.buffer));
    } else if (value && typeof value === "object" && depth > 0) {
      for (const inner of Object.values(value)) search(inner, depth - 1);
    }
  };
  search(result, 2);
  return [...found];
}
