// trimora-run as a function: the same program, compiled to WebAssembly, for pages, workers and Node.
// Words     program: the compiled program, made once | run: one start of it, in a file system of its own
import instantiate from "./trimora-run.mjs";

const folder = "/here"; // where the files of a run stand and where it is started

let standing; // the promise of the program that stands beside this module

/**
 * Compile the program once, for any number of runs and workers.
 * @param {BufferSource} [bytes] the content of trimora.wasm; without it, the file beside this module
 * @returns {Promise<WebAssembly.Module>}
 */
export async function compile(bytes) {
  if (bytes) return WebAssembly.compile(bytes);
  const url = new URL("trimora.wasm", import.meta.url);
  standing ??= url.protocol === "file:" && globalThis.process?.versions?.node
    ? import("node:fs/promises").then(({ readFile }) => readFile(url)).then((wasm) => WebAssembly.compile(wasm))
    : WebAssembly.compileStreaming(fetch(url));
  return standing;
}

/**
 * Start `trimora-run` with `args` in a folder that holds `files` and nothing else.
 * The bytes given are neither changed nor copied. Rejects when memory ends or the program cannot be loaded; what the
 * program itself finds wrong is told by `status` and `stderr`.
 * @param {Record<string, Uint8Array>} files content by name; a name may hold folders, as in "genes/cox1.fas"
 * @param {string[]} args as on the command line, without the program's name
 * @param {{program?: WebAssembly.Module, stdin?: Uint8Array, glue?: Function}} [given] what compile() made, and standard
 *   input; the glue of another program that was built in the same way
 * @returns {Promise<{status: number, stdout: Uint8Array, stderr: Uint8Array, files: Record<string, Uint8Array>}>}
 *   `files` holds what was written, the given names among it only where they were written anew
 */
export async function run(files, args, { program, stdin = new Uint8Array(), glue = instantiate } = {}) {
  program ??= await compile();
  const { FS, callMain } = await new Promise((resolve, reject) => {
    glue({
      instantiateWasm(imports, done) {
        WebAssembly.instantiate(program, imports).then(done).catch(reject);
        return {};
      },
      printErr() {}, // of the system layer itself, which throws as well
    }).then(resolve, reject);
  });
  // Files grow twofold; the eighth by which Emscripten lets large ones grow copies them again and again.
  FS.filesystems.MEMFS.expandFileStorage = (node, capacity) => {
    const before = node.contents;
    if (before && before.length >= capacity) return;
    node.contents = new Uint8Array(Math.max(capacity, 2 * node.usedBytes, 4096));
    if (before) node.contents.set(before.subarray(0, node.usedBytes));
  };
  const place = (path, bytes) => {
    FS.mkdirTree(path.slice(0, path.lastIndexOf("/")) || "/");
    FS.writeFile(path, bytes, { canOwn: true });
  };
  for (const name of Object.keys(files)) place(`${folder}/${name}`, files[name]);
  FS.mkdirTree(folder);
  FS.chdir(folder);
  const streams = ["/stdin", "/stdout", "/stderr"];
  place(streams[0], stdin);
  streams.forEach((path, number) => {
    FS.close(FS.streams[number]);
    FS.open(path, number === 0 ? "r" : "w+"); // takes the number that is free
  });

  const status = callMain(args);

  const content = (path) => {
    const { contents, usedBytes } = FS.lookupPath(path).node;
    return usedBytes === 0 ? new Uint8Array() : contents.subarray(0, usedBytes);
  };
  /** @type {Record<string, Uint8Array>} */
  const written = Object.create(null);
  const collect = (path) => {
    for (const entry of FS.readdir(path)) {
      if (entry === "." || entry === "..") continue;
      const inner = `${path}/${entry}`;
      if (FS.isDir(FS.stat(inner).mode)) {
        collect(inner);
        continue;
      }
      const name = inner.slice(folder.length + 1), bytes = content(inner), given = files[name];
      const asgiven = given && given.length === bytes.length &&
        (bytes.length === 0 || (given.buffer === bytes.buffer && given.byteOffset === bytes.byteOffset));
      if (!asgiven) written[name] = bytes;
    }
  };
  collect(folder);
  return { status, stdout: content(streams[1]), stderr: content(streams[2]), files: written };
}
