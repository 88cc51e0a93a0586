// trimora-run as a function: the same program, compiled to WebAssembly, for pages, workers and Node. It has no zlib: what
// begins as gzip does is inflated here.
// Words     program: the compiled program, made once | run: one start of it, in a file system of its own
import { gunzip, isPacked } from "./gunzip.mjs";
import instantiate from "./trimora-run.mjs";

export * from "./functions.mjs";

const folder = "/here"; // holds the files of a run; the program is started in it

/** @type {Promise<WebAssembly.Module> | undefined} */
let installed; // the program in the file beside this module

/** @type {import("./trimora.d.ts").compile} */
export async function compile(bytes) {
  if (bytes) return WebAssembly.compile(bytes);
  const url = new URL("trimora.wasm", import.meta.url);
  installed ??= url.protocol === "file:" && globalThis.process?.versions?.node
    ? import("node:fs/promises").then(({ readFile }) => readFile(url)).then((wasm) => WebAssembly.compile(wasm))
    : WebAssembly.compileStreaming(fetch(url));
  installed.catch(() => (installed = undefined)); // the next call tries again
  return installed;
}

/** The bytes, inflated when they are gzip. @param {string} name @param {Uint8Array} bytes */
async function unpacked(name, bytes) {
  if (!isPacked(bytes)) return bytes;
  try {
    return new Uint8Array(await (await gunzip(bytes)).arrayBuffer());
  } catch (error) {
    throw new Error(`${name}: ${error instanceof Error ? error.message : error}`, { cause: error });
  }
}

/**
 * An instance of the program, in memory of its own.
 * @param {WebAssembly.Module} program
 * @returns {ReturnType<typeof instantiate>}
 */
export function instance(program, glue = instantiate) {
  return new Promise((resolve, reject) => {
    glue({
      instantiateWasm(imports, done) {
        WebAssembly.instantiate(program, imports).then((made) => done(made)).catch(reject);
        return {};
      },
      printErr() {}, // what Emscripten itself says; it throws as well
    }).then(resolve, reject);
  });
}

/**
 * Start the program once.
 * @param {Record<string, Uint8Array>} files
 * @param {string[]} args
 * @param {import("./trimora.d.ts").Given & {glue?: typeof instantiate}} [given] `glue` belongs to another program that was
 *   built in the same way
 * @returns {Promise<import("./trimora.d.ts").Run>}
 */
export async function run(files, args, { program, stdin = new Uint8Array(), glue = instantiate } = {}) {
  const { FS, callMain } = await instance(program ?? (await compile()), glue);
  // Files double in size as they grow. Emscripten adds an eighth to large ones, which copies them again and again.
  FS.filesystems.MEMFS.expandFileStorage = (node, capacity) => {
    const before = node.contents;
    if (before && before.length >= capacity) return;
    node.contents = new Uint8Array(Math.max(capacity, 2 * node.usedBytes, 4096));
    if (before) node.contents.set(before.subarray(0, node.usedBytes));
  };
  /** @param {string} path @param {Uint8Array} bytes */
  const place = (path, bytes) => {
    FS.mkdirTree(path.slice(0, path.lastIndexOf("/")) || "/");
    FS.writeFile(path, bytes, { canOwn: true });
  };
  /** @type {Record<string, Uint8Array>} */
  const placed = Object.create(null);
  for (const name of Object.keys(files)) {
    placed[name] = await unpacked(name, files[name]);
    place(`${folder}/${name}`, placed[name]);
  }
  FS.mkdirTree(folder);
  FS.chdir(folder);
  const streams = ["/stdin", "/stdout", "/stderr"];
  place(streams[0], await unpacked("the standard input", stdin));
  streams.forEach((path, number) => {
    FS.close(FS.streams[number]);
    FS.open(path, number === 0 ? "r" : "w+"); // takes the number that is free
  });

  const status = callMain(args);

  /** @param {string} path */
  const content = (path) => {
    const { contents, usedBytes } = FS.lookupPath(path).node;
    // Emscripten may keep a file as an Int8Array, whose bytes above 127 would be negative.
    return usedBytes === 0 ? new Uint8Array() : new Uint8Array(contents.buffer, contents.byteOffset, usedBytes);
  };
  /** @type {Record<string, Uint8Array>} */
  const written = Object.create(null);
  /** @param {string} path */
  const collect = (path) => {
    for (const entry of FS.readdir(path)) {
      if (entry === "." || entry === "..") continue;
      const inner = `${path}/${entry}`;
      if (FS.isDir(FS.stat(inner).mode)) {
        collect(inner);
        continue;
      }
      const name = inner.slice(folder.length + 1), bytes = content(inner);
      const given = placed[name];
      const unchanged = given && given.length === bytes.length &&
        (bytes.length === 0 || (given.buffer === bytes.buffer && given.byteOffset === bytes.byteOffset));
      if (!unchanged) written[name] = bytes;
    }
  };
  collect(folder);
  return { status, stdout: content(streams[1]), stderr: content(streams[2]), files: written };
}
