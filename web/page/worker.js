// The engine's thread: runs the program on the files that are open and hands back what the page draws or saves.

import { zipSync } from "fflate";
import { run } from "trimora";
import { letters } from "./letters.js";
import { readcolumns, readtable } from "./tables.js";

/** @typedef {{name: string, blob: Blob}} Input */
/**
 * What the page asks for.
 * @typedef {{job: "open", program: WebAssembly.Module, inputs: Input[]}
 *   | {job: "select", args: string[], shown: string}
 *   | {job: "letters", name: string, part?: import("./letters.js").Part}
 *   | {job: "write", args: string[], zip?: {name: string, also: Record<string, Uint8Array>}}} Job
 */

const text = new TextDecoder();

/** @type {WebAssembly.Module} */ let program;
/** @type {Input[]} */ let inputs = [];
/** @type {Record<string, Uint8Array> | undefined} */ let files; // of the inputs, read once

async function read() {
  if (files) return files;
  /** @type {Record<string, Uint8Array>} */
  const found = {};
  for (const { name, blob } of inputs) found[name] = new Uint8Array(await blob.arrayBuffer());
  return (files = found);
}

/** @type {{[J in Job["job"]]: (job: Extract<Job, {job: J}>) => Promise<any>}} */
const jobs = {
  async open(job) {
    ({ program, inputs } = job);
    files = undefined;
  },

  /** The table of the run and the columns of one alignment; nothing else is written. */
  async select({ args, shown }) {
    const made = await run(await read(), [...args, "-s=N", "-p=N", "--columns", "--table=table.tsv"], { program });
    const rows = readtable(made.files["table.tsv"] ?? new Uint8Array());
    const row = rows.find(({ alignment }) => alignment === shown) ?? rows[0];
    const bytes = row && made.files[`${row.alignment}-tr.columns.tsv`];
    return {
      status: made.status, stdout: text.decode(made.stdout), stderr: text.decode(made.stderr), rows,
      columns: bytes ? readcolumns(bytes, Number(row.positions)) : null,
    };
  },

  async letters({ name, part }) {
    return letters((given, args) => run(given, args, { program }), (await read())[name], part);
  },

  /** Every file that the run writes, or one zip of them. */
  async write({ args, zip }) {
    const { status, stderr, files: written } = await run(await read(), args, { program });
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
  const own = new Set(Object.values(files ?? {}).map((bytes) => bytes.buffer));
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
