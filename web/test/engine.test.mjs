// The engine as a function, in Node.

import assert from "node:assert/strict";
import { test } from "node:test";
import { layers } from "../page/layers.js";
import { letters } from "../page/letters.js";
import { state } from "../page/state.js";
import { readColumns } from "../page/tables.js";
import { bytes, globins, run, url } from "./harness.mjs";

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

test("a program that cannot be loaded is an error, and the next run works", async () => {
  const wrong = await WebAssembly.compile(Uint8Array.of(0, 97, 115, 109, 1, 0, 0, 0));
  await assert.rejects(run(globins, ["globins.fas"], { program: wrong }));
  await assert.rejects(run(globins, ["globins.fas"], { glue: () => Promise.reject(new Error("not loaded")) }), /not loaded/);
  assert.equal((await run({}, ["--help"])).status, 0);
});

test("of a large alignment the first sequences are read, in the positions of the whole", async () => {
  const rows = ["AC--EF.GH", "AC--EFKGH", "A--CEF.GH", "A--CEFKGH"]; // column 3 has letters in no sequence, 4 and 7 in some
  /** @type {Record<string, (row: string, i: number) => string>} */
  const formats = { fasta: (row, i) => `>s${i}\n${row.slice(0, 4)}\n${row.slice(4)}\n`, pir: (row, i) => `>P1;s${i}\nno name\n${row}*\n` };
  const part = { column: Uint32Array.from([1, 2, 4, 5, 6, 7, 8, 9]), width: 9, numseq: 4 };
  for (const [format, record] of Object.entries(formats)) {
    const content = bytes(rows.map(record).join("")), length = content.length / 4;
    const read = async (/** @type {number | undefined} */ limit) => {
      const found = await letters(run, new Uint8Array(content), limit === undefined ? limit : { ...part, bytes: limit });
      return found?.names.map((name, i) => `${name} ${Buffer.from(found.bytes.subarray(found.starts[i], found.starts[i] + 8))}`);
    };
    const whole = await read(undefined);
    assert.equal(whole?.[0], "s0 AC-EF-GH", format);
    for (const [limit, shown] of [[3, 1], [length - 1, 1], [3 * length, 3], [4 * length - 1, 3]]) {
      assert.deepEqual(await read(limit), whole?.slice(0, shown), `${format}, ${limit} bytes`);
    }
  }
});

test("columns are found by their names, and the layers follow from reason and initial", () => {
  // class, initial, block, reason; a line of the file each, the third one dropped
  const rows = [
    ["flank", "1", "1", "selected"], ["gap", "1", "", "too many gaps (2 of 6, b5 allows 0)"], null, ["nonconserved", "1", "", "nonconserved beside a cut gap (column 2)"],
    ["conserved", "1", "", "rest shorter than b4 (3)"], ["conserved", "1", "", "codon frame"], ["flank", "1", "2", "selected"],
    ["gap", "", "", "too many gaps (1 of 6, b5 allows 0)"], ["flank", "", "", "initial block shorter than b0 (1)"],
  ];
  let p = 0;
  const lines = rows.map((row, k) => (row ? [row[1], row[3], k + 1, ++p, "5.25", "A", row[0], row[2]] : ["", "all gap, dropped", k + 1, "", "", "", "dropped", ""]).join("\t"));
  const columns = readColumns(bytes(`initial\treason\tcolumn\tposition\tscore\tresidue\tclass\tblock\n${lines.join("\n")}\n`), p);
  const shown = (/** @type {string} */ t) => layers({ ...state, columns, values: { t } })
    .map(({ key, holds }) => `${key} ${Array.from({ length: p }, (_, k) => (holds(k + 1) ? "#" : ".")).join("")}`);
  assert.deepEqual([...columns.column], [1, 2, 4, 5, 6, 7, 8, 9]);
  assert.deepEqual([columns.score[7], columns.blocks], [5.25, [{ first: 1, last: 1 }, { first: 6, last: 6 }]]);
  assert.deepEqual(shown("P").slice(1), ["initial ######..", "gaps #..###..", "rest #...##..", "selected #....#.."]);
  assert.deepEqual(shown("C").slice(3), ["rest #...##..", "frame #....#..", "selected #....#.."]);
});
