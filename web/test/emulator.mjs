// Runs a program that was built as WebAssembly on the files of the current folder, so that the tests of the native
// programs test it as well: node emulator.mjs PACKAGE PROGRAM ARGUMENT ... with the engine's package folder and the
// JavaScript of the program, which has its trimora.wasm beside it.
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, relative } from "node:path";
import { pathToFileURL } from "node:url";

const [engine, program, ...args] = process.argv.slice(2);
const { compile, run } = await import(pathToFileURL(`${engine}/trimora.mjs`).href);
const { default: glue } = await import(pathToFileURL(program).href);
const module = await compile(readFileSync(`${dirname(program)}/trimora.wasm`));

const entries = readdirSync(".", { recursive: true, withFileTypes: true }).filter((entry) => entry.isFile());
const names = entries.map((entry) => relative(".", `${entry.parentPath ?? entry.path}/${entry.name}`));
const given = Object.fromEntries(names.map((name) => [name, new Uint8Array(readFileSync(name))]));
const { status, stdout, stderr, files } = await run(given, args, { program: module, stdin: readFileSync(0), glue });
for (const name of Object.keys(files)) {
  mkdirSync(dirname(name), { recursive: true });
  writeFileSync(name, files[name]);
}
writeFileSync(1, stdout);
// It gives the system's reason why a file cannot be opened, and this system has other words and folders.
const words = new TextDecoder("latin1").decode(stderr).replace(/: Permission denied$/m, ": Not a directory").replaceAll("/here", process.cwd());
writeFileSync(2, words, "latin1");
process.exitCode = status;
