/** What a run of `trimora-run` leaves behind. */
export interface Run {
  /** 0 done, 1 failed or something is incomplete, 2 wrong usage: nothing was run. */
  status: number;
  stdout: Uint8Array;
  /** Notes and failures, one a line. */
  stderr: Uint8Array;
  /** Content by name of every file that was written; a file given stands among them only if it was written anew. */
  files: Record<string, Uint8Array>;
}

export interface Given {
  /** What `compile` made; without it the program that stands beside the module, compiled once. */
  program?: WebAssembly.Module;
  /** Standard input; empty without it. */
  stdin?: Uint8Array;
}

/** Compile the program, for any number of runs and workers, from the content of trimora.wasm or the file beside the module. */
export function compile(bytes?: BufferSource): Promise<WebAssembly.Module>;

/**
 * Start `trimora-run` with `args` in a folder that holds `files` and nothing else.
 *
 * Rejects when memory ends or the program cannot be loaded. What the program itself finds wrong is told by `status` and
 * `stderr`. The bytes given are neither changed nor copied; `files[name]` may be a folder deeper, as in "genes/cox1.fas".
 */
export function run(files: Record<string, Uint8Array>, args: string[], given?: Given): Promise<Run>;
