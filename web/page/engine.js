// The page's side of the engine: workers that do one job after the other and are dropped when their work is no longer wanted.

import packedWorker from "packed:worker";
import packedProgram from "packed:wasm";
import { unpack } from "./packing.js";
import { update } from "./state.js";

/** What is said when memory ends, in the engine or in the program. */
export const noMemory = "This browser does not give a page enough memory for this run. The installed program needs far " +
  "less: run the command at the end of this page there.";

const outOfMemory = /memory|alloc|RangeError|out of bounds|too large/i;

/** Thrown into what waits for a run that was dropped. */
export class Dropped extends Error {}

/** @param {unknown} error */
export const wordsOf = (error) => (error instanceof Error ? error.message : String(error));

/** Say what became of a job whose result is missing; a dropped one is missed by nobody. @param {unknown} error */
export function tell(error) {
  if (!(error instanceof Dropped)) update({ notice: wordsOf(error) });
}

/** The program, compiled once for all workers, and where a worker finds its code. */
const parts = Promise.all([
  unpack(packedProgram).then((wasm) => wasm.arrayBuffer()).then((bytes) => WebAssembly.compile(bytes)),
  unpack(packedWorker).then((code) => URL.createObjectURL(code.slice(0, code.size, "text/javascript"))),
]);

/** @type {import("./worker.js").Input[]} */ let inputs = [];

/** One worker. */
class Engine {
  #name;
  /** @param {string} name of the event that says how long a job took */
  constructor(name) {
    this.#name = name;
  }
  /** @type {Worker | null} */ #worker = null;
  /** What a new worker has to do before it can do the other jobs. @type {import("./worker.js").Job | null} */ #selected = null;
  /** @type {Map<number, {resolve: (result: any) => void, reject: (error: Error) => void}>} */ #waiting = new Map();
  #last = 0;
  #drops = 0;

  /** End whatever is under way. @param {Error} [error] */
  drop(error = new Dropped()) {
    ++this.#drops;
    this.#worker?.terminate();
    this.#worker = null;
    for (const { reject } of this.#waiting.values()) reject(error);
    this.#waiting.clear();
  }

  /** Whether a job is under way. */
  get busy() {
    return this.#waiting.size > 0;
  }

  /**
   * Have a job done. Rejects with Dropped, or with an Error whose message says in a sentence what became of it; the next
   * job then finds a new worker.
   * @param {import("./worker.js").Job} job @returns {Promise<any>}
   */
  async ask(job) {
    const drops = this.#drops, [program, source] = await parts;
    if (drops !== this.#drops) throw new Dropped();
    if (!this.#worker) {
      this.#worker = new Worker(source);
      this.#worker.onmessage = ({ data: { id, result, error, took } }) => {
        if (error && outOfMemory.test(error)) return this.drop(new Error(noMemory));
        if (took !== undefined) dispatchEvent(new CustomEvent(this.#name, { detail: took })); // for whoever measures
        if (error) this.#waiting.get(id)?.reject(new Error(sentence(error)));
        else this.#waiting.get(id)?.resolve(result);
        this.#waiting.delete(id);
      };
      this.#worker.onerror = (event) => {
        event.preventDefault();
        this.drop(new Error(sentence(event.message)));
      };
      this.#post({ job: "open", program, inputs }).catch(() => {});
      if (this.#selected && job.job !== "select") this.#post(this.#selected).catch(() => {});
    }
    const result = await this.#post(job);
    if (job.job === "select" && result.failure === undefined) this.#selected = job;
    return result;
  }

  /** Forget the alignment that was shown, and end whatever is under way. */
  close() {
    this.#selected = null;
    this.drop();
  }

  /** @param {import("./worker.js").Job} job */
  #post(job) {
    return new Promise((resolve, reject) => {
      this.#waiting.set(++this.#last, { resolve, reject });
      this.#worker?.postMessage({ id: this.#last, job });
    });
  }
}

/** For the alignment that is shown, for what the program itself says a little later, and for what is saved. */
export const engine = new Engine("engine"), background = new Engine("background"), writer = new Engine("writer");
/** For what is about to be opened. */
export const reader = new Engine("reader");

/** Work on these files from now on. @param {import("./worker.js").Input[]} files */
export function open(files) {
  for (const one of [engine, background, writer]) one.close();
  inputs = files;
}

/** @param {string} error of the engine or the browser */
function sentence(error) {
  return outOfMemory.test(error) ? noMemory
    : `The run broke off (${error}). The page goes on: try again, or run the command at the end of this page with the installed program.`;
}
