// The engine as a function, in Node.

import assert from "node:assert/strict";
import { test } from "node:test";
import { gzipSync } from "node:zlib";
import { columnsOf } from "../page/columns.js";
import * as letters from "../page/letters.js";
import { bytes, engine, globins, run, url } from "./harness.mjs";

const { layers } = await import("../page/layers.js"), { kinds, state } = await import("../page/state.js");

test("what was written is handed out as bytes from 0 to 255, and what was only read is not", async () => {
  const given = { "Übung.fas": bytes(">Blåbær\nACDEFGHIKLMN\n>b\nACDEFGHIKLMN\n"), "list": bytes("Übung.fas\n") };
  const { status, stdout, stderr, files } = await run(given, ["list", "-p=N", "--format=fasta"]);
  assert.equal(status, 0);
  assert.deepEqual(Object.keys(files), ["Übung.fas-tr.fasta"]);
  for (const content of [stdout, stderr, ...Object.values(files)]) assert.equal(content.constructor, Uint8Array);
  assert.match(Buffer.from(files["Übung.fas-tr.fasta"]).toString(), /^>Blåbær\nACDEFGHIKLMN\n/);
});

test("a file that the run writes again is among its files", async () => {
  const { files } = await run({ ...globins, "globins.fas-tr.fasta": bytes("of an earlier run") }, ["globins.fas", "-p=N", "--format=fasta"]);
  assert.match(Buffer.from(files["globins.fas-tr.fasta"]).toString(), /^>MYG_ESCGI/);
});

test("inputs that are only read are not among the files, and one that is replaced by as many bytes is", async () => {
  const name = "globins.fas-tr.fasta", args = ["globins.fas", "-p=N"], first = (await run(globins, args)).files[name];
  const given = { "globins.fas": Uint8Array.from(globins["globins.fas"]), "empty": bytes(""), [name]: new Uint8Array(first.length).fill(65) };
  const { files } = await run(given, args);
  assert.deepEqual(Object.keys(files), [name]);
  assert.deepEqual(files[name], first);
  assert.ok(given[name].every((byte) => byte === 65), "what was given is as it was");
  const piped = await run({}, ["-"], { stdin: given["globins.fas"] });
  assert.deepEqual([piped.stdout, Object.keys(piped.files)], [first, []]);
});

test("the program is compiled once, and a large file is copied only when it doubles", async (context) => {
  const compiled = context.mock.method(WebAssembly, "compile");
  const fresh = await import(`${new URL("package/trimora.mjs", url).href}?fresh`);
  const { default: instantiate } = await import(new URL("package/trimora-run.mjs", url).href);
  let copies = 0;
  /** @param {any} settings */
  const glue = async (settings) => {
    const program = await instantiate(settings);
    return {
      ...program,
      callMain(/** @type {string[]} */ args) {
        const { MEMFS } = program.FS.filesystems, grow = MEMFS.expandFileStorage;
        MEMFS.expandFileStorage = (/** @type {{contents?: Uint8Array}} */ node, /** @type {number} */ capacity) => {
          const before = node.contents;
          grow(node, capacity);
          copies += before && before !== node.contents ? 1 : 0;
        };
        return program.callMain(args);
      },
    };
  };
  const row = "ACDEFGHIKL".repeat(1 << 19), length = 2 * (3 + row.length + Math.ceil(row.length / 60));
  const large = { "large.fas": bytes(`>a\n${row}\n>b\n${row}\n`) };
  const [{ files }] = await Promise.all([fresh.run(large, ["large.fas", "-t=P", "-p=N"], { glue }), fresh.run({}, ["--help"])]);
  assert.equal(files["large.fas-tr.fasta"].length, length);
  assert.ok(Buffer.from(files["large.fas-tr.fasta"]).toString().replaceAll("\n", "") === `>a${row}>b${row}`);
  assert.ok(copies <= Math.log2(length / 4096), `${copies} copies`);
  assert.equal(compiled.mock.callCount(), 1);
});

test("gzip is read to its end, in one member or several, and what follows it is an error", async () => {
  const text = globins["globins.fas"], half = text.length >> 1;
  const packed = { one: gzipSync(text), two: Buffer.concat([gzipSync(text.subarray(0, half)), gzipSync(text.subarray(half)), gzipSync("")]) };
  const expected = (await run(globins, ["globins.fas", "-p=N"])).files["globins.fas-tr.fasta"];
  for (const [members, content] of Object.entries(packed)) {
    const { files } = await run({ "x.fas.gz": content }, ["x.fas.gz", "-p=N"]);
    assert.deepEqual(Object.keys(files), ["x.fas-tr.fasta"], members);
    assert.deepEqual(files["x.fas-tr.fasta"], expected, members);
    assert.deepEqual((await run({}, ["-"], { stdin: content })).stdout, expected, members);
    for (const wrong of [Buffer.concat([content, bytes(">more\nACDE\n")]), content.subarray(0, -9)]) {
      await assert.rejects(run({ "x.fas.gz": wrong }, ["x.fas.gz"]), /^Error: x\.fas\.gz: its gzip data are damaged, or something else follows/);
    }
  }
});

test("a program that cannot be loaded is an error, and the next run works", async () => {
  const wrong = await WebAssembly.compile(Uint8Array.of(0, 97, 115, 109, 1, 0, 0, 0));
  await assert.rejects(run(globins, ["globins.fas"], { program: wrong }));
  await assert.rejects(run(globins, ["globins.fas"], /** @type {any} */ ({ glue: () => Promise.reject(new Error("not loaded")) })), /not loaded/);
  assert.equal((await run({}, ["--help"])).status, 0);
});

test("letters of positions, whatever columns are dropped: in part, as FASTA, their gaps, and a motif in them", async () => {
  const rows = ["AC--EF.GH", "AC--EFKGH", "A--CEF.GH", "A--CEFKGH"]; // column 3 has letters in no sequence, 4 and 7 in some
  const ali = await engine.read(rows.map((row, i) => `>s${i}\n${row}\n`).join("")), column = columnsOf(engine.select(ali, { kind: "protein" })).column;
  assert.deepEqual([...column], [1, 2, 4, 5, 6, 7, 8, 9]);
  const picked = letters.sample(ali, column, [4, 1], Uint32Array.of(2, 3, 3, 8));
  assert.equal(Buffer.from(picked).toString(), "-CCHC--H");
  assert.equal(await letters.fasta(ali, column, [2], Uint32Array.of(1, 2, 3)), ">s1\nAC-\n");
  assert.deepEqual([...letters.gaps(ali, column)], [2, 1, 2, 1]);
  /** @type {[string, number, number, object | null][]} */
  const motifs = [["cef", 0, 0, { row: 1, first: 2, last: 5 }], ["cef", 0, 2, { row: 2, first: 2, last: 5 }], ["fxg", 0, 0, { row: 2, first: 5, last: 7 }],
    ["gh", 3, 7, { row: 1, first: 7, last: 8 }], ["ww", 0, 0, null]];
  for (const [motif, start, from, found] of motifs) assert.deepEqual(letters.find(ali, column, motif, [1, 2, 3, 4], start, from), found, motif);
});

test("the layers follow from reason and initial block", () => {
  // class, initial, block, reason
  const rows = /** @type {[string, number, number, string][]} */ ([
    ["flank", 1, 1, "selected"], ["gap position", 1, 0, "too many gaps (2 of 6, b5 allows 0)"], ["nonconserved", 1, 0, "nonconserved beside a cut gap (column 2)"],
    ["conserved", 1, 0, "rest shorter than b4 (3 positions)"], ["conserved", 1, 0, "codon frame"], ["flank", 1, 2, "selected"],
    ["gap position", 0, 0, "too many gaps (1 of 6, b5 allows 0)"], ["flank", 0, 0, "initial block shorter than b0 (1 position)"],
  ]);
  const columns = {
    score: new Float32Array(rows.length), residue: new Uint8Array(rows.length), column: new Uint32Array(rows.length),
    kind: Uint8Array.from(rows, ([kind]) => kinds.indexOf(kind)), initial: Uint32Array.from(rows, ([, initial]) => initial),
    reasons: rows.map(([, , , reason]) => reason), reason: Uint32Array.from(rows, (_, k) => k), blocks: [{ first: 1, last: 1 }, { first: 6, last: 6 }], empty: 0,
  };
  const shown = (/** @type {string} */ t) => layers({ ...state, columns, values: { t } })
    .map(({ key, holds }) => `${key} ${rows.map((_, k) => (holds(k + 1) ? "#" : ".")).join("")}`);
  assert.deepEqual(shown("P").slice(1), ["initial ######..", "gaps #..###..", "rest #...##..", "selected #....#.."]);
  assert.deepEqual(shown("C").slice(3), ["rest #...##..", "frame #....#..", "selected #....#.."]);
});
