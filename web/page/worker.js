// The engine's thread: runs the program on the files that are open and hands back what the page draws or saves.

import { zipSync } from "fflate";
import { run } from "trimora";
import { letters } from "./letters.js";
import { readColumns, readTable } from "./tables.js";

/** @typedef {{name: string, blob: Blob}} Input */
/**
 * What the page asks for.
 * @typedef {{job: "open", program: WebAssembly.Module, inputs: Input[]}
 *   | {job: "select", args: string[], only?: string, columns?: boolean}
 *   | {job: "letters", name: string, part?: import("./letters.js").Part}
 *   | {job: "names", alignments: string[]}
 *   | {job: "write", args: string[], zip?: {name: string, also: Record<string, Uint8Array>}}} Job
 */

const text = new TextDecoder();

/** @type {WebAssembly.Module} */ let program;
/** @type {Input[]} */ let inputs = [];
/** @type {Record<string, Uint8Array>} */ let read = {}; // of the inputs, each read once

/** The files of a run: all, or one alone. @param {string} [only] */
async function files(only) {
  /** @type {Record<string, Uint8Array>} */
  const found = {};
  for (const { name, blob } of inputs) {
    if (only === undefined || name === only) found[name] = read[name] ??= new Uint8Array(await blob.arrayBuffer());
  }
  return found;
}

/** A name that no input has. */
function unusedName() {
  let name = "table";
  while (inputs.some((input) => input.name === name || input.name.startsWith(`${name}/`))) name += "-";
  return name;
}

/** @type {{[J in Job["job"]]: (job: Extract<Job, {job: J}>) => Promise<any>}} */
const jobs = {
  async open(job) {
    ({ program, inputs } = job);
    read = {};
  },

  /** The table of the run and, where they are asked for, the columns of its first alignment; nothing else is written. */
  async select({ args, only, columns = false }) {
    const table = unusedName(), given = await files(only);
    const made = await run(given, [...args, "-s=N", "-p=N", ...(columns ? ["--columns"] : []), `--table=${table}`], { program });
    const rows = readTable(made.files[table] ?? new Uint8Array()), [row] = rows;
    const bytes = columns && row && made.files[`${row.alignment}-tr.columns.tsv`];
    return {
      status: made.status, stdout: text.decode(made.stdout), stderr: text.decode(made.stderr), rows,
      columns: bytes ? readColumns(bytes, Number(row.positions)) : null,
    };
  },

  async letters({ name, part }) {
    return letters((given, args) => run(given, args, { program }), (await files(name))[name], part);
  },

  /** The names in each alignment, up to the first blank: the lines that begin with ">". */
  async names({ alignments }) {
    const all = await files();
    return alignments.map((name) => Array.from(text.decode(all[name]).matchAll(/^>(?:[A-Z]\d;)?[ \t]*(\S*)/gm), ([, found]) => found));
  },

  /** Every file that the run writes, or one zip of them. */
  async write({ args, zip }) {
    const { status, stderr, files: written } = await run(await files(), args, { program });
    const given = zip && Object.keys(written).length > 0 ? { [zip.name]: zipSync({ ...written, ...zip.also }) } : written;
    return { status, stderr: text.decode(stderr), files: given };
  },
};

self.onmessage = async ({ data: { id, job } }) => {
  try {
    // @ts-ignore the job picks its own function
    const result = await jobs[job.job](job);
    self.postMessage({ id, result }, { transfer: buffers(result) });
  } catch (error) {
    self.postMessage({ id, error: String(error) });
  }
};

/** The buffers in a result, which move to the page instead of being copied. @param {any} result */
function buffers(result) {
  /** @type {Set<ArrayBuffer>} */
  const found = new Set();
  const own = new Set(Object.values(read).map((bytes) => bytes.buffer));
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
