// The engine as a function, in Node.

import assert from "node:assert/strict";
import { test } from "node:test";
import { letters } from "../page/letters.js";
import { bytes, globins, run } from "./harness.mjs";

test("what was written is handed out as bytes from 0 to 255, and what was only read is not", async () => {
  const given = { "Übung.fas": bytes(">Blåbær\nACDEFGHIKLMN\n>b\nACDEFGHIKLMN\n"), "list": bytes("Übung.fas\n") };
  const { status, stdout, stderr, files } = await run(given, ["list", "-p=N"]);
  assert.equal(status, 0);
  assert.deepEqual(Object.keys(files), ["Übung.fas-tr"]);
  for (const content of [stdout, stderr, ...Object.values(files)]) assert.equal(content.constructor, Uint8Array);
  assert.match(Buffer.from(files["Übung.fas-tr"]).toString(), /^>Blåbær\nACDEFGHIKL MN\n/);
});

test("a file that the run writes anew is among its files", async () => {
  const { files } = await run({ ...globins, "globins.fas-tr": bytes("of an earlier run") }, ["globins.fas", "-p=N"]);
  assert.match(Buffer.from(files["globins.fas-tr"]).toString(), /^>MYG_ESCGI/);
});

test("a program that cannot be loaded is an error, and the next run works", async () => {
  const wrong = await WebAssembly.compile(Uint8Array.of(0, 97, 115, 109, 1, 0, 0, 0));
  await assert.rejects(run(globins, ["globins.fas"], { program: wrong }));
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
