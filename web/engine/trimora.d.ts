/** What a run of `trimora-run` leaves behind. */
export interface Run {
  /** 0 done, 1 failed or something is incomplete, 2 wrong usage: nothing was run. */
  status: number;
  stdout: Uint8Array;
  /** Notes and failures, one a line. */
  stderr: Uint8Array;
  /** Every file that was written, by name. A file that you gave is here only if the run wrote it again. */
  files: Record<string, Uint8Array>;
}

export interface Given {
  /** What `compile` made. Without it, the program in the file beside the module, compiled once. */
  program?: WebAssembly.Module;
  /** Standard input; empty without it. */
  stdin?: Uint8Array;
}

/**
 * Compile the program once, for any number of runs and workers, from the content of trimora.wasm. Without `bytes`, from
 * the file beside the module.
 */
export function compile(bytes?: BufferSource): Promise<WebAssembly.Module>;

/**
 * Start `trimora-run` with `args` in a folder that holds `files` and nothing else. `files[name]` may be in an inner
 * folder, as in "genes/cox1.fas". What begins as gzip does is inflated first, `stdin` as well.
 *
 * Rejects when memory ends, the program cannot be loaded, or gzip data are damaged. For what the program itself finds
 * wrong, read `status` and `stderr`. The bytes that you give are neither changed nor copied.
 */
export function run(files: Record<string, Uint8Array>, args: string[], given?: Given): Promise<Run>;
