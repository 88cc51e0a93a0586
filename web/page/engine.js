// The page's side of the engine: one worker, which is dropped with what it does when that is no longer wanted.

import { gunzip } from "./gunzip.js";
import worker64 from "packed:worker";
import wasm64 from "packed:wasm";

/** What is said when memory ends, in the engine or in the program. */
export const noMemory = "This browser does not give a page enough memory for this run. The installed program needs far " +
  "less: run the command at the end of this page there.";

/** Thrown into what waits for a run that was dropped. */
export class Dropped extends Error {}

const unpack = (/** @type {string} */ base64) => gunzip(new Blob([Uint8Array.from(atob(base64), (c) => c.charCodeAt(0))]));
/** The program, compiled once for all workers, and where a worker finds its code. */
const parts = Promise.all([
  unpack(wasm64).then((wasm) => wasm.arrayBuffer()).then((bytes) => WebAssembly.compile(bytes)),
  unpack(worker64).then((code) => URL.createObjectURL(code.slice(0, code.size, "text/javascript"))),
]);

/** @type {Worker | null} */ let worker = null;
/** @type {import("./worker.js").Input[]} */ let inputs = [];
/** @type {Map<number, {resolve: (result: any) => void, reject: (error: Error) => void}>} */
const waiting = new Map();
let last = 0;

/** Work on these files from now on. @param {import("./worker.js").Input[]} files */
export function open(files) {
  drop();
  inputs = files;
}

/** End whatever is under way. @param {Error} [error] */
export function drop(error = new Dropped()) {
  worker?.terminate();
  worker = null;
  for (const { reject } of waiting.values()) reject(error);
  waiting.clear();
}

/**
 * Have a job done. Rejects with Dropped, or with an Error whose message says in a sentence what became of it; the next
 * job then finds a fresh worker.
 * @param {import("./worker.js").Job} job @returns {Promise<any>}
 */
export async function ask(job) {
  const [program, source] = await parts;
  if (!worker) {
    worker = new Worker(source);
    worker.onmessage = ({ data: { id, result, error } }) => {
      if (error) return drop(new Error(sentence(error)));
      waiting.get(id)?.resolve(result);
      waiting.delete(id);
    };
    worker.onerror = (event) => {
      event.preventDefault();
      drop(new Error(sentence(event.message)));
    };
    post({ job: "open", program, inputs }).catch(() => {});
  }
  return post(job);
}

/** @param {import("./worker.js").Job} job */
function post(job) {
  return new Promise((resolve, reject) => {
    waiting.set(++last, { resolve, reject });
    worker?.postMessage({ id: last, job });
  });
}

/** @param {string} error of the engine or the browser */
function sentence(error) {
  return /memory|alloc|RangeError|out of bounds|too large/i.test(error)
    ? noMemory
    : `The run broke off (${error}). The page goes on: try again, or run the command at the end of this page with the installed program.`;
}
