// The library as functions, in Node: against the program itself, and the page's view of what they find.

import assert from "node:assert/strict";
import { test } from "node:test";
import { gzipSync } from "node:zlib";
import { bytes, engine, globins, run } from "./harness.mjs";

const { TrimoraError, alignment, codons, counts, geneticCodes, options, presets, read, select, standards, supermatrix, trim, write } = engine;
const { columnsOf, parametersOf } = await import("../page/columns.js"), { layers } = await import("../page/layers.js"), { state } = await import("../page/state.js");

/** Numbers that look random and are the same each time. @param {number} seed */
function random(seed) {
  let state = seed;
  return (/** @type {number} */ below) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * below);
  };
}

/** An alignment with conserved stretches, gaps, unknown residues and columns without a letter. @param {(below: number) => number} next */
function made(next) {
  const alphabet = next(2) ? "ACGT" : "ACDEFGHIKLMNPQRSTVWYX", n = 2 + next(12), nupo = 10 + next(120);
  const rows = Array.from({ length: n }, () => "");
  for (let p = 0, noise = 0, gaps = 0; p < nupo; ++p) {
    if (next(8) === 0) [noise, gaps] = [next(100), next(3) ? 0 : next(100)];
    const common = alphabet[next(alphabet.length)], empty = next(25) === 0;
    for (let i = 0; i < n; ++i) rows[i] += empty || next(100) < gaps ? "-" : next(100) < noise ? alphabet[next(alphabet.length)] : common;
  }
  return { text: rows.map((row, i) => `>s${i}\n${row}\n`).join(""), n, protein: alphabet.length > 4 };
}

/** Values of the options, as the page holds them. @param {(below: number) => number} next @param {{n: number, protein: boolean}} ali */
function chosen(next, { n, protein }) {
  /** @type {Record<string, string>} */
  const values = { t: protein ? "P" : "DC"[next(2)] }, half = Math.floor(n / 2) + 1, per = next(3) === 0;
  if (per) [values.b1, values.b2] = [next(101), next(101)].sort((a, b) => a - b).map((share) => `${share}%`);
  else if (next(2)) values.b1 = String(half + next(n - half + 1));
  if (!per && next(2)) values.b2 = String(Math.max(Number.parseInt(values.b1 ?? "0") || half, n - next(n - half + 1)));
  for (const [name, least, below] of /** @type {[string, number, number][]} */ ([["b3", 0, 12], ["b4", 2, 12], ["b0", 2, 12]])) if (next(2)) values[name] = String(least + next(below));
  values.b5 = ["", "H", "A"][next(3)];
  values.b6 = ["", "N"][next(2)];
  return values;
}

test("from the counts of columns follows what the program selects, column by column and with its reasons", async () => {
  const next = random(7);
  let selected = 0, refused = 0;
  for (let k = 0; k < 250; ++k) {
    const ali = made(next), values = chosen(next, ali), given = { "a.fas": bytes(ali.text) };
    const args = Object.entries(values).filter(([, value]) => value).map(([name, value]) => `-${name}=${value}`);
    const { files, stderr } = await run(given, ["a.fas", ...args, "-s=N", "-p=N", "--columns", "--table=t"]);
    assert(files.t, `${args}: ${Buffer.from(stderr)}`);
    const [header, row] = Buffer.from(files.t).toString().split("\n").map((line) => line.split("\t"));
    const whole = await read(ali.text);
    let found;
    try {
      found = select(counts(whole, { kind: parametersOf(values).kind }), parametersOf(values));
    } catch (error) {
      assert.equal(row[header.indexOf("status")], "failed", `${k}: ${error} ${args}`);
      ++refused;
      continue;
    }
    assert.equal(row[header.indexOf("status")], "ok", Buffer.from(stderr).toString());
    const columns = columnsOf(found), [names, ...lines] = Buffer.from(files["a.fas-tr.columns.tsv"]).toString().trimEnd().split("\n").map((line) => line.split("\t"));
    const positions = lines.map((cells) => Object.fromEntries(names.map((name, at) => [name, cells[at] ?? ""]))).filter(({ position }) => position);
    const kinds = ["gap", "nonconserved", "conserved", "flank"];
    const inBlock = new Uint8Array(positions.length);
    for (const { first, last } of columns.blocks) inBlock.fill(1, first - 1, last);
    const told = positions.map((_, p) => [columns.column[p], columns.score[p], String.fromCharCode(columns.residue[p]), kinds[columns.kind[p]], inBlock[p] === 1,
      columns.reasons[columns.reason[p]], columns.initial[p]]);
    assert.deepEqual(told, positions.map((one) => [Number(one.column), Math.fround(Number(one.score)), one.residue, one.class, one.block !== "", one.reason, Number(one.initial)]), `${k}: ${args}\n${ali.text}`);
    for (const [name, value] of /** @type {[string, number][]} */ ([["selected", found.columns.length], ["b1", found.b1], ["b2", found.b2], ["positions", columns.score.length], ["blocks", columns.blocks.length + columns.empty]])) {
      assert.equal(Number(row[header.indexOf(name)]), value, name);
    }
    assert.deepEqual(select(whole, parametersOf(values)).reasons, found.reasons); // with the letters, the same
    const shown = layers({ ...state, columns, values }), [last, left] = shown.slice(-2).map(({ holds }) => positions.map((_, p) => holds(p + 1)));
    assert.deepEqual(last, left, "the last step of the method leaves what is selected");
    selected += found.columns.length;
    whole.free();
  }
  assert(selected > 3000 && refused < 50, `${selected} selected, ${refused} refused`);
});

test("presets select what the program selects under their names", async () => {
  const ali = await read(globins["globins.fas"]), names = (await presets()).map(({ name }) => name);
  assert.deepEqual(names, ["classic", "relaxed", "none"]);
  for (const preset of names) {
    const { files } = await run(globins, ["globins.fas", `--preset=${preset}`, "-p=N"]);
    assert.equal(Buffer.from(write(select(ali, { preset }).trimmed)).toString(), Buffer.from(files["globins.fas-tr.fasta"]).toString(), preset);
  }
  assert.equal(select(ali, { preset: "relaxed", gaps: "none" }).columns.length, select(ali, { b2: "51%", b4: 5 }).columns.length);
});

test("read, trim and write: the bytes that the program writes, from text, bytes, gzip and a browser's file", async () => {
  const [file] = Object.values(globins), written = (await run(globins, ["globins.fas", "-p=N", "-b5=H", "--format=fasta,phylip,nexus,trimora"])).files;
  const sources = { bytes: new Uint8Array(file), text: file.toString(), gzip: new Uint8Array(gzipSync(file)),
    "gzip of two members": new Uint8Array(Buffer.concat([gzipSync(file.subarray(0, 999)), gzipSync(file.subarray(999))])), blob: new Blob([new Uint8Array(file)]) };
  for (const [what, source] of Object.entries(sources)) {
    const { trimmed } = select(await read(source), { gaps: "half" });
    for (const form of /** @type {const} */ (["fasta", "phylip", "nexus"])) {
      assert.deepEqual(Buffer.from(write(trimmed, form)).toString(), Buffer.from(written[`globins.fas-tr.${{ fasta: "fasta", phylip: "phy", nexus: "nexus" }[form]}`]).toString(), `${what}, ${form}`);
    }
  }
});

test("names and letters come out as they went in, and parts of rows are copies", async () => {
  const ali = await alignment([["Blåbær x", "ACG-T"], ["b", bytes("AC.TT")]], { kind: "dna" });
  assert.deepEqual([...ali], [["Blåbær x", "ACG-T"], ["b", "AC-TT"]]);
  assert.deepEqual([ali.size, ali.width, ali.kind, ali.format, String(ali)], [2, 5, "dna", "", ">Blåbær x\nACG-T\n>b\nAC-TT\n"]);
  const part = ali.letters(1, 1, 4);
  part.fill(0);
  assert.equal(Buffer.from(ali.letters(1, 1, 99)).toString(), "C-TT");
  const joined = supermatrix([ali, await alignment({ c: "GG", b: "G-" }, { kind: "dna" })]);
  assert.deepEqual([[...joined.alignment], joined.parts], [[["Blåbær", "ACG-T??"], ["b", "AC-TTG-"], ["c", "?????GG"]], [[0, 5], [5, 7]]]);
  const proteins = await alignment({ x: "MK-", y: "MKL" }, { kind: "protein" });
  assert.deepEqual(codons(proteins, { y: "ATGAAACTG", x: "ATGAAA" }).sequences, ["ATGAAA---", "ATGAAACTG"]);
  assert.deepEqual(trim(ali, { columns: Int32Array.of(0, 4), kind: "dna" }).sequences, ["AT", "AT"]);
});

test("the residues of each genetic code are those by which codons are checked", async () => {
  const codes = await geneticCodes(), all = Array.from({ length: 64 }, (_, n) => [n >> 4, (n >> 2) & 3, n & 3].map((k) => "TCAG"[k]).join(""));
  assert.equal(codes.length, 27);
  for (const { number, residues } of codes) {
    const protein = residues.replaceAll("*", ""), coding = all.filter((_, n) => residues[n] !== "*").join("");
    const proteins = await alignment({ a: protein, b: protein }, { kind: "protein" });
    assert.deepEqual(codons(proteins, { a: coding, b: coding }, { code: number }).sequences, [coding, coding], String(number));
  }
});

test("what is wrong is an error that says what, where and in words", async () => {
  const ali = await read(globins["globins.fas"]);
  /** @type {[() => unknown, object][]} */
  const cases = [
    [() => alignment({ a: "ACGT", b: "ACG" }), { constructor: TrimoraError, kind: "unequal_lengths", sequence: 1, name: "b" }],
    [() => read("Dear diary"), { constructor: TrimoraError, kind: "unknown_format", sequence: null, name: "" }],
    [() => read(gzipSync("x").subarray(0, 12)), { constructor: TrimoraError, kind: "damaged" }],
    [async () => select(await alignment({ a: "RYRY", b: "RYRY" })), { constructor: TrimoraError, kind: "undecided_type" }],
    [() => select(ali, { b3: 32001 }), { constructor: RangeError, message: /0 to 32000/ }],
    [() => select(ali, { b1: 22 }), { constructor: RangeError, message: /from 23 to 45/ }],
    [() => select(counts(ali), { kind: "dna" }), { constructor: RangeError }],
    [() => select(ali, { b1: "60" }), { constructor: RangeError, message: /"60%"/ }],
    [() => select(ali, /** @type {any} */ ({ b7: 1 })), { constructor: TypeError, message: /b7/ }],
    [() => write(ali, /** @type {any} */ ("clustal")), { constructor: RangeError, message: /fasta, phylip/ }],
    [() => ali.letters(45), { constructor: RangeError }],
    [() => { ali.free(); return ali.width; }, { constructor: TypeError, message: /freed/ }],
  ];
  for (const [step, expected] of cases) await assert.rejects(async () => step(), expected);
});

test("what is freed gives its memory back", async () => {
  const row = "ACDEFGHIKL".repeat(2e4), before = process.memoryUsage().external;
  for (let k = 0; k < 30; ++k) { // 3 MB each
    const ali = await read(`>a\n${row}\n>b\n${row}\n`, { program: await engine.compile() }), found = counts(ali);
    found.free();
    ali.free();
  }
  assert(process.memoryUsage().external - before < 45e6);
});

test("the options and what is in force by default are those of the program", async () => {
  const help = Buffer.from((await run({}, ["--help"])).stdout).toString(), all = await options();
  for (const { name } of all) assert(help.includes(name), name);
  assert.deepEqual(all.filter(({ most }) => most > 0).map(({ name, least, most, standard }) => `${name} ${least} ${most} ${standard}`).slice(0, 3),
    ["-b3 0 32000 8", "-b4 2 32000 10", "-b0 2 32000 as b4"]);
  for (const size of [2, 3, 45, 1000]) {
    const { b1, b2 } = select(await alignment(Array.from({ length: size }, (_, k) => [`s${k}`, "ACDEFGHIKL"])));
    assert.deepEqual(await standards(size), { b1, b2 });
  }
});
