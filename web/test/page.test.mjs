// The page as a person uses it, from file://, in Chromium and Firefox, against the native program.

import assert from "node:assert/strict";
import { readFileSync, rmSync } from "node:fs";
import { createServer } from "node:http";
import { after, before, describe, test } from "node:test";
import { gzipSync } from "node:zlib";
import axe from "axe-core";
import { unzipSync } from "fflate";
import { browsers } from "./browsers.mjs";
import { bytes, engine, example, folderOf, genes, globins, listOf, native, openPage, pageFile } from "./harness.mjs";

/** Positions that the native program selects in the globins. @param {string[]} args */
function selected(...args) {
  const [table] = Object.values(native(globins, ["globins.fas", "-s=N", "-p=N", "--table=t", ...args]));
  const [header, row] = Buffer.from(table).toString().split("\n").map((line) => line.split("\t"));
  return Number(row[header.indexOf("selected")]);
}

/** Compressed in two parts, as bgzip does in many. @param {Uint8Array} content */
const members = (content) => Buffer.concat([gzipSync(content.subarray(0, 500)), gzipSync(content.subarray(500))]);

for (const name of Object.keys(browsers)) describe(name, () => {
  /** @type {Awaited<ReturnType<typeof openPage>>} */
  let on;
  before(async () => { on = await openPage(name); });
  after(() => on.close());

  /** The globins with the defaults. */
  async function asOpened() {
    await on.drop(globins);
    await on.press("#defaults");
    await on.says("openh", "globins.fas, 45 sequences");
    await on.says("said", "114 of 154 positions");
    await on.settled();
    await on.page.waitForSelector("#viewer[aria-busy=false]");
  }

  test("globins: what is saved is what the program writes", async () => {
    await on.drop(globins);
    await on.says("said", "114 of 154 positions");
    await on.enter("b3", "4");
    await on.enter("b5", "H");
    await on.tick("s", "p", "k", "d");
    await on.settled();
    const args = ["globins.fas", "-b3=4", "-b5=H", "-k=Y", "-d=Y"];
    assert.equal(await on.text("command"), `trimora-run ${args.join(" ")}`);
    await on.page.waitForFunction(() => location.hash === "#b3=4&b5=H");
    assert.deepEqual(await on.zip(), native(globins, args));
  });

  test("the plot's shading is where the blocks are", async () => {
    const report = Buffer.from(native(globins, ["globins.fas", "-b3=4", "-b5=H", "-s=N", "-p=S"])["globins.fas-tr.txts"]).toString();
    const flanks = report.match(/^Flanks: .*/m)?.[0] ?? "";
    const blocks = Array.from(flanks.matchAll(/\[(\d+) {2}(\d+)\]/g), ([, a, b]) => [Number(a), Number(b)]);
    const found = await on.page.$eval("canvas#scores", (plot) => {
      const [left, width] = (plot.dataset.frame ?? "").split(" ").map(Number), dot = plot.width / plot.clientWidth;
      const row = plot.getContext("2d")?.getImageData(0, Math.round(14 * dot), plot.width, 1).data ?? [];
      return Array.from({ length: 154 }, (_, k) => { // the middle of each position, above its bar
        const at = 4 * Math.round((left + ((k + 0.5) / 154) * width) * dot);
        return row[at + 2] > row[at] + 20 && row[at + 3] === 255 ? "#" : ".";
      }).join("");
    });
    const wanted = Array.from(found, (_, k) => (blocks.some(([a, b]) => a <= k + 1 && k + 1 <= b) ? "#" : ".")).join("");
    assert.equal(found, wanted);
    assert.match(wanted, /#\.+#/);
  });

  test("a value out of range says why, and the defaults come back", async () => {
    await on.enter("b2", "38");
    await on.enter("b1", "40");
    await on.settled();
    assert.equal(await on.text("b1-wrong"), "At most 38 (that is b2).");
    await on.press("#defaults");
    await on.settled();
    assert.equal(await on.text("b1-wrong"), "");
    await on.says("said", "114 of 154 positions");
    await on.enter("b1", "40"); // which b2 follows
    await on.says("said", `${selected("-b1=40")} of 154`);
    await on.says("lines", "b2 = 40");
    await on.press("#defaults");
  });

  test("marked letters can be copied, and the keyboard moves to the end", async () => {
    await on.page.focus("#viewer");
    for (const key of /** @type {const} */ (["End", "ArrowDown"])) await on.page.keyboard.press(key);
    await on.settled();
    assert.match(await on.text("why"), /^Position 154: .*not selected($|:)/);
    await on.page.keyboard.down("Shift");
    for (let k = 0; k < 2; ++k) await on.page.keyboard.press("ArrowLeft");
    await on.page.keyboard.up("Shift");
    await on.page.evaluate(() => {
      navigator.clipboard.writeText = async (copied) => void Object.assign(window, { copied });
      document.getElementById("copy")?.click();
    });
    await on.says("copied", "Copied 1 sequence");
    const letters = globins["globins.fas"].toString().split(">")[2].split("\n").slice(1).join("");
    assert.equal(await on.page.evaluate("copied"), `>MYG_HORSE\n${letters.slice(-3)}\n`);
  });

  test("a batch with a paths file, compressed alignments and the concatenation", async () => {
    const paths = { "list.txt": bytes("data/primates_mt_2.fas\nprimates_mt_1.fas\n") };
    await on.drop({ ...paths, "primates_mt_2.fas.gz": members(genes["primates_mt_2.fas"]), "primates_mt_1.fas": genes["primates_mt_1.fas"] });
    await on.says("openh", "list.txt, 2 alignments");
    await on.drop({ "list.txt": bytes("data/primates_mt_1.fas.gz\n"), "primates_mt_1.fas": genes["primates_mt_1.fas"] });
    await on.says("printed", "primates_mt_1.fas.gz: 12 sequences");
    await on.drop({ "list.txt": bytes("a/primates_mt_1.fas\nb/primates_mt_1.fas\n"), "primates_mt_1.fas": genes["primates_mt_1.fas"] });
    await on.says("notice", "lists b/primates_mt_1.fas, which did not come with it");
    await on.drop(genes);
    await on.enter("t", "D");
    await on.says("said", "881 of 898 in all 2 alignments");
    await on.tick("s", "a");
    await on.settled();
    const files = { ...genes, "paths.txt": listOf(...Object.keys(genes)) };
    const saved = await on.zip();
    assert.deepEqual(saved["paths.txt"], files["paths.txt"]);
    delete saved["paths.txt"];
    assert.deepEqual(saved, native(files, ["paths.txt", "-t=D", "-p=N", "-a=Y"]));
  });

  test("a batch goes on after an alignment that fails", async () => {
    await on.drop({ ...genes, "bad.fas": bytes(">a\nACGT\n>b\nACG\n") });
    await on.says("overview", "sequence 2 (b)");
    await on.says("said", "447 of 450 positions"); // not of the first one, which has nothing to see
    await on.press("[data-key='bad.fas']");
    await on.says("failure", "bad.fas");
    await on.press("[data-key='primates_mt_2.fas']");
    await on.says("said", "434 of 448 positions");
    await on.says("command", "--keep-going");
    await on.press("#openReport");
    await on.page.waitForSelector("dialog[open]");
    const frame = await (await on.page.$("iframe#frame"))?.contentFrame();
    await frame?.waitForSelector("h2");
    assert.match(String(await frame?.$eval("body", (body) => body.textContent)), /primates_mt_2\.fas/);
    await on.press("#closeReport");
    const handed = await on.page.evaluate(async () => {
      /** @type {string[]} */
      const names = [], { click } = HTMLAnchorElement.prototype;
      HTMLAnchorElement.prototype.click = function () { names.push(this.download); };
      for (const box of ["s", "k"]) /** @type {HTMLElement} */ (document.querySelector(`#outputs li:has(#out-${box}) button`)).click();
      while (names.length < 2) await new Promise((done) => setTimeout(done, 20));
      HTMLAnchorElement.prototype.click = click;
      return names;
    });
    assert.equal(handed.length, 2); // at once, and neither is lost
  });

  test("in a batch of several sizes b1 and b2 are shares", async () => {
    const two = Buffer.from(genes["primates_mt_2.fas"]).toString().split(">").slice(0, 11).join(">"); // ten of the twelve species
    const windows = { "primates_mt_1.fas": genes["primates_mt_1.fas"], "two.fas": bytes(two.replaceAll("\n", "\r\n")) };
    await on.drop(windows); // -a is still asked for
    await on.says("notes", "it is left out");
    await on.tick("s");
    await on.page.waitForFunction(() => document.getElementById("notes")?.textContent === "");
    await on.says("said", "in all 2 alignments");
    await on.settled();
    await on.says("choices", "different names");
    await on.enter("b2", "92");
    await on.says("b2-effect", "In force here: 11 of 12 sequences");
    await on.settled();
    const command = String(await on.text("command"));
    assert.match(command, /^printf .*\ntrimora-run paths\.txt -t=D -b2=92% -p=N$/);
    const files = { ...windows, "paths.txt": listOf("primates_mt_1.fas", "two.fas") };
    assert.deepEqual(await on.zip(), { "paths.txt": files["paths.txt"], ...native(files, command.split("trimora-run ")[1].split(" ")) });
    await on.press("#defaults");
  });

  test("the field of b1 never shows a number that is not in force", async () => {
    const large = bytes(Array.from({ length: 1000 }, (_, k) => `>s${k}\nACDEFGHIKLMNPQRSTVWY\n`).join(""));
    await on.drop({ "a.fas": large, "b.fas": large });
    await on.says("overview", "a.fas");
    await on.says("said", "in all 2 alignments");
    const shown = () => on.page.$eval("input#b1", (field) => [field.value, document.getElementById("command")?.textContent?.match(/-b1=(\S+)/)?.[1]]);
    await on.enter("b1", "601");
    await on.settled();
    assert.deepEqual(await shown(), ["601", "601"]);
    await on.press(".unit button:last-child");
    await on.settled();
    assert.deepEqual(await shown(), ["61", "61%"]);
    await on.says("b1-effect", "In force here: 610 of 1000");
    await on.press(".unit button");
    await on.settled();
    assert.deepEqual(await shown(), ["610", "610"]);
    await on.press("#defaults");
  });

  test("names beyond ASCII: the zip holds what the program writes", async () => {
    const files = { "Übung.fas": bytes(globins["globins.fas"].toString().replace("MYG_ESCGI", "Blåbær")) };
    await on.drop(files);
    await on.says("openh", "Übung.fas");
    await on.says("said", "114 of 154 positions");
    await on.tick("s", "p", "k");
    await on.settled();
    assert.deepEqual(await on.zip(), native(files, ["Übung.fas", "-t=P", "-k=Y"]));
  });

  test("files that are called like those of the page itself, and x.fas beside x.fas.gz", async () => {
    const files = { "table": genes["primates_mt_1.fas"], "paths.txt": genes["primates_mt_2.fas"], "x.fas": genes["primates_mt_1.fas"] };
    await on.drop({ ...files, "x.fas.gz": gzipSync(genes["primates_mt_2.fas"]) });
    await on.enter("t", "D");
    await on.says("said", "in all 4 alignments");
    await on.says("notice", "x.fas.gz as x-2.fas");
    await on.tick("s");
    await on.settled();
    const given = { ...files, "x-2.fas": genes["primates_mt_2.fas"], "paths-2.txt": listOf("paths.txt", "table", "x.fas", "x-2.fas") };
    const saved = await on.zip();
    assert.deepEqual(Buffer.from(saved["paths-2.txt"]).toString().split("\n").sort(), given["paths-2.txt"].toString().split("\n").sort());
    delete saved["paths-2.txt"];
    assert.deepEqual(saved, native(given, ["paths-2.txt", "-t=D", "-p=N"]));
  });

  test("the focus stays where a person works", async () => {
    const focused = () => on.page.evaluate(() => document.activeElement?.getAttribute("data-key") ?? document.activeElement?.tagName);
    await on.page.$eval("#opening", (details) => details.setAttribute("open", ""));
    await on.page.focus("#examples button:last-child");
    await on.page.keyboard.press("Enter");
    await on.says("said", "in all 2 alignments");
    assert.equal(await focused(), "SUMMARY");
    await on.page.focus("[data-key='primates_mt_2.fas']");
    await on.page.keyboard.press("Enter");
    await on.says("said", "of primates_mt_2.fas");
    await on.settled();
    assert.equal(await focused(), "primates_mt_2.fas");
  });

  test("what only a person can decide is a button", async () => {
    const rename = (/** @type {Uint8Array} */ gene, /** @type {string} */ to) => bytes(Buffer.from(gene).toString().replace(/^>(\S+).*/gm, `>${to}`));
    /** @type {[string, string, string, string, string][]} */
    const cases = [["$1|nad", "$1|cox", "--name-end=|", "'--name-end=|'", "Tarsius_syrichta of Tarsius_syrichta|nad"], ["nad_$1", "cox_$1", "--name-begin=_", "--name-begin=_", "Tarsius_syrichta of nad_Tarsius_syrichta"]];
    for (const [one, two, rule, typed, words] of cases) {
      const phylip = engine.write(await engine.read(rename(genes["primates_mt_2.fas"], two)), "phylip");
      await on.drop({ "one.fas": rename(genes["primates_mt_1.fas"], one), "two.phy": phylip });
      await on.press("#defaults");
      await on.says("choices", words);
      await on.says("choices", "look like nucleotides");
      await on.press("[data-key=t-D]");
      await on.says("said", "881 of 898 in all");
      await on.press(`[data-key='match${rule}']`);
      await on.tick("a");
      await on.settled();
      await on.page.waitForFunction((typed) => document.getElementById("command")?.textContent?.endsWith(`trimora-run paths.txt -t=D -s=N -p=N -a=Y --match=name ${typed}`), {}, typed);
      const joined = Object.keys(await on.zip());
      assert.equal(joined.length, 2, joined.join());
      await on.press("[data-key=match-]");
    }
  });

  test("a value that is not possible greys the old result and is in no command", async () => {
    await asOpened();
    await on.enter("b1", "99");
    await on.settled();
    assert.doesNotMatch(String(await on.text("command")), /trimora-run/);
    assert.deepEqual(await on.page.$$eval("#copyCommand, #copyLink, #zip", (buttons) => buttons.map((button) => button.hasAttribute("disabled"))), [true, true, true]);
    assert.equal(await on.page.$eval("#said", (said) => getComputedStyle(said).opacity < "0.5"), true);
    await on.press("#pin"); // which nothing can be compared with
    await on.press("#undo");
    await on.says("command", "trimora-run globins.fas");
    await on.settled();
    assert.equal(await on.page.$eval("#compare", (box) => box.checkVisibility()), false);
    await on.page.focus("#b3");
    await on.page.keyboard.type("e"); // "8e", of which the browser tells only that it is no number
    await on.says("b3-wrong", "whole number");
    assert.doesNotMatch(String(await on.text("command")), /trimora-run/);
    await on.press("#defaults");
    await on.says("command", "trimora-run globins.fas");
  });

  test("a screen reader hears the cell, and a touch chooses it", async () => {
    await on.page.focus("#viewer");
    for (const key of /** @type {const} */ (["Home", "ArrowDown"])) await on.page.keyboard.press(key);
    assert.match(String(await on.text("spoken")), /^MYG_HORSE, G, position 1, column 1, conserved, not selected/);
    const box = await (await on.page.$("#letters"))?.boundingBox();
    await on.page.$eval("#letters", (canvas) => canvas.scrollIntoView({ block: "center" }));
    const touch = (/** @type {string} */ type) => on.page.$eval("#letters", (canvas, type) => {
      const { left, top } = canvas.getBoundingClientRect();
      canvas.dispatchEvent(new PointerEvent(type, { pointerType: "touch", bubbles: true, clientX: left + 150 + 9 * 24 + 4, clientY: top + 20 + 16 * 6 + 8 }));
    }, type);
    for (const type of ["pointerdown", "pointermove", "pointerup"]) await touch(type);
    assert(box);
    assert.match(String(await on.text("spoken")), /^MYG_MUSAN, \w, position 25, .* selected, in block 1/);
    await on.says("why", "Position 25");
  });

  test("files as people have them: CLUSTAL, Windows, UTF-16, long names, compressed", async () => {
    const records = globins["globins.fas"].toString().split(">").slice(1).map((record) => record.split("\n"))
      .map(([title, ...lines]) => ({ title: title.split(" ")[0], row: lines.join("").trim() }));
    const lengths = Array.from({ length: Math.ceil(154 / 60) }, (_, k) => 60 * k);
    const clustal = `CLUSTAL W (1.83) multiple sequence alignment\n\n${lengths.map((at) => records.map(({ title, row }) => `${title.padEnd(20)}${row.slice(at, at + 60)}\n`).join("")).join("\n\n")}`;
    const long = records.map(({ title, row }) => `>Species_${title}|gene with a description that goes on and on, and on, and on, and on [Homo sapiens]\r\n${row}\r\n`).join("");
    for (const [file, content] of Object.entries({ "a.aln": bytes(clustal), "b.fas": bytes(long), "c.txt": Buffer.from(`\ufeff${long}`, "utf16le"), "d.fas.gz": gzipSync(long) })) {
      await on.drop({ [file]: content });
      await on.says("openh", `${file.replace(".gz", "")}, 45 sequences`);
      await on.says("said", "114 of 154 positions");
      await on.settled();
    }
    await on.drop({ "short.fas": bytes(">a\nRYRYNNRYRYNN\n>b\nRYRYNNRYRYNN\n>c\nRYRYNNRYRYNN\n") }); // of either type
    await on.says("failure", "short.fas");
    await on.press("[data-key=t-C]");
    await on.says("openh", "short.fas, 3 sequences");
    await on.press("#defaults");
  });

  test("what is no alignment is said in a sentence, and the page goes on", async () => {
    await on.drop({ "notes.txt": bytes("Dear diary\n") });
    await on.says("failure", "notes.txt");
    assert.doesNotMatch(await on.text("failure"), /\/here/);
    await on.drop({ "cut.fas.gz": gzipSync(globins["globins.fas"]).subarray(0, 900) });
    await on.says("notice", "damaged or incomplete");
    await on.drop(globins);
    await on.press("#defaults");
    await on.says("said", "114 of 154 positions");
  });

  test("names that are markup do nothing, in the page and in the report", async () => {
    const markup = "<script>parent.hacked=1</script><img src=x onerror=parent.hacked=1>";
    await on.drop({ "<img src=x onerror=hacked=1>.fas": bytes(globins["globins.fas"].toString().replace("MYG_ESCGI", markup)) });
    await on.says("openh", "<img");
    await on.says("said", "114 of 154 positions");
    await on.press("#openReport");
    await on.page.waitForSelector("dialog[open]");
    const frame = await (await on.page.$("iframe#frame"))?.contentFrame();
    await frame?.waitForSelector("h2");
    assert.equal(await on.page.evaluate("window.hacked"), undefined);
    assert.equal(await on.page.$$eval("main script, main img", (found) => found.length), 0);
    await on.press("#closeReport");
  });

  test("why: the program's own reason, or class and block where it gives none", async () => {
    await asOpened();
    const table = Buffer.from(Object.values(native(globins, ["globins.fas", "-s=N", "-p=N", "--columns"]))[0]).toString();
    const [header, ...lines] = table.trimEnd().split("\n").map((line) => line.split("\t"));
    for (const p of [1, 20, 24, 30, 50, 150]) {
      const row = Object.fromEntries(header.map((name, k) => [name, lines[p - 1][k] ?? ""]));
      await on.page.$eval("input#find", (field, p) => { field.value = String(p); }, p);
      await on.page.$eval("form#finding", (form) => form.requestSubmit());
      const reason = row.reason && row.reason !== "selected" ? `: ${row.reason}` : "";
      await on.says("why", `Position ${p}: `);
      await on.says("why", `${row.class}${row.class === "gap" ? " position" : ""}`);
      await on.says("why", `; ${row.block ? `selected, in block ${row.block}` : "not selected"}${reason}`);
    }
  });

  test("the trimmed alignment in place is the one that the program writes", async () => {
    await on.press("#trimmed");
    await on.settled();
    await on.page.evaluate(() => {
      navigator.clipboard.writeText = async (copied) => void Object.assign(window, { copied });
    });
    await on.page.focus("#viewer");
    await on.page.keyboard.press("Escape");
    await on.settled();
    await on.press("#copy");
    await on.says("copied", "Copied 45");
    const written = Object.values(native(globins, ["globins.fas", "-p=N", "--format=fasta"]))[0];
    const plain = Buffer.from(written).toString().replace(/^(>.*)\n|\n/gm, (_, name) => (name ? `\n${name}\n` : "")).trim();
    assert.equal(String(await on.page.evaluate("copied")).trim(), plain);
    for (const [p, there, told] of [[60, 60, "Position 60."], [50, 58, "Position 50 is not selected; this is 58."]]) {
      await on.page.$eval("input#find", (field, p) => { field.value = String(p); }, p);
      await on.page.$eval("form#finding", (form) => form.requestSubmit());
      await on.says("why", `Position ${there}: `);
      await on.says("found", String(told));
    }
    await on.press("#trimmed");
  });

  test("two settings side by side, undone and done again, in the address", async () => {
    await asOpened();
    await on.press("#pin");
    await on.enter("b3", "3");
    await on.says("compare", "0 positions only now");
    const count = selected("-b3=3");
    await on.says("compare", `${114 - count} positions only with the pinned`);
    await on.says("compare", `${count} of 154`);
    await on.page.waitForFunction(() => location.hash === "#b3=3");
    for (const names of ["-b3=3,defaults", "defaults,-b3=3"]) {
      await on.page.$eval("[data-key=swap]", (swap) => /** @type {HTMLElement} */ (swap).focus());
      await on.page.keyboard.press("Enter");
      await on.page.waitForFunction((names) => Array.from(document.querySelectorAll("#compare:not([aria-busy=true]) th"), (cell) => cell.nextSibling?.textContent).join() === names, {}, names);
      assert.equal(await on.page.evaluate(() => document.activeElement?.getAttribute("data-key")), "swap");
    }
    await on.says("said", `${count} of 154`);
    await on.page.evaluate(() => { for (const id of ["undo", "undo", "redo", "redo"]) document.getElementById(id)?.click(); }); // within a frame
    await on.says("said", `${count} of 154`);
    await on.page.select("#format", "phylip");
    await on.press("#undo");
    await on.settled();
    assert.equal(await on.page.$eval("#format", (format) => /** @type {HTMLSelectElement} */ (format).value), "");
    for (let k = 0; k < 3 && /-b3=3/.test(String(await on.text("command"))); ++k) { // swapping at once is one step
      await on.press("#undo");
      await on.settled();
    }
    await on.says("said", "114 of 154");
    await on.press("#redo");
    await on.says("said", `${count} of 154`);
    await on.press("#undo");
    await on.says("said", "114 of 154");
    await on.enter("b4", "11"); // and what was undone is gone
    await on.page.waitForSelector("#redo[aria-disabled=true]");
    await on.page.evaluate(() => { location.hash = "#example=globins&b3=4"; });
    await on.says("said", `${selected("-b3=4")} of 154`);
    await on.page.waitForFunction(() => !document.getElementById("compare")?.checkVisibility()); // when the example has opened again
    await on.press("#defaults");
  });

  test("the curve of the focused field has the program's numbers", async () => {
    await asOpened();
    await on.page.focus("#b4");
    await on.says("b4-curve", "from 2 to 60");
    await on.says("b4-curve", `${selected("-b4=60")} to ${selected("-b4=2")} of 154 positions`);
  });

  test("the choices of b5, b6 and the type say how much each keeps", async () => {
    await asOpened();
    /** @type {[string, string[]][]} */
    const cases = [["b5", [`None ${selected()}`, `With half ${selected("-b5=H")}`, `All ${selected("-b5=A")}`]], ["b6", [`Yes ${selected()}`, `No ${selected("-b6=N")}`]],
      ["t", [`Protein ${selected("-t=P")}`, `DNA ${selected("-t=D")}`, `Codons ${selected("-t=C")}`]]];
    for (const [field, words] of cases) {
      await on.page.focus(`#${field}`);
      for (const word of words) await on.says(`${field}-curve`, word);
    }
  });

  /** The picture of what is in sight. */
  const picture = async () => (await on.saved("#asSvg", ".svg")).toString();
  /** The letters of one row of it, and the colours behind them. @param {string} svg @param {string} row */
  const rowOf = (svg, row) => {
    const y = svg.match(new RegExp(`<text x="[^"]*" y="([^"]*)"[^>]*>${row}</text>`))?.[1];
    return Array.from(svg.matchAll(/<text x="([^"]*)" y="([^"]*)"[^>]*text-anchor="middle">([^<])<\/text>/g)).filter(([, , at]) => at === y).map(([, , , letter]) => letter).join("");
  };

  test("codons: frames, the standard code, and the program's blocks", async () => {
    const codon = "ATGGCTTGGAAATTTGGGCATTAA".repeat(2);
    await on.drop({ "cds.fas": bytes(`>one\n${codon}\n>two\n${codon}\n>three\n${codon.replace("GCTTGG", "GC-TAA")}\n`) });
    await on.enter("t", "C");
    await on.says("openh", "cds.fas, 3 sequences");
    await on.press("#translated");
    await on.page.waitForSelector("#viewer[aria-busy=false]");
    await on.settled();
    assert.equal(rowOf(await picture(), "one").replaceAll(" ", ""), "MAWKFGH*MAWKFGH*");
    assert.equal(rowOf(await picture(), "three").replaceAll(" ", ""), "MX*KFGH*MAWKFGH*");
    await on.press("#translated");
    await on.settled();
    assert.equal(rowOf(await picture(), "one"), codon);
    const lines = (await picture()).match(/<rect [^>]*width="1" height="(\d+)"[^>]*>/g) ?? [];
    assert(lines.filter((line) => !/height="4"/.test(line)).length >= codon.length / 3, "a line before each codon");
    await on.press("#defaults");
  });

  test("codons: amino acids, notes, address and command follow the genetic code", async () => {
    await on.drop({ "nd4.fas": example("genes/nd4.fas") }); // of mitochondria
    await on.press("#defaults");
    await on.says("openh", "nd4.fas, 12 sequences");
    const offered = () => on.page.$eval("#code", (select) => select.checkVisibility());
    assert.equal(await offered(), false);
    await on.enter("t", "C");
    await on.says("notes", "first is TGA at column 151 of sequence 1 (Gorilla): does the first column begin a codon? Mitochondria and some others have another code: choose it under “Genetic code”");
    assert.equal(await offered(), true);
    await on.page.$eval("input#find", (field) => { field.value = "151"; });
    await on.page.$eval("form#finding", (form) => form.requestSubmit());
    await on.press("#translated");
    const reads = async (/** @type {string} */ residues) => {
      await on.settled();
      await on.page.waitForSelector("#viewer[aria-busy=false]");
      const row = rowOf(await picture(), "Gorilla").replaceAll(" ", "");
      assert(row.includes(residues), row);
    };
    const unstopped = () => on.page.waitForFunction(() => !document.getElementById("notes")?.textContent?.includes("stop codons"));
    await reads("AL**LLASLA");
    await on.enter("code", "2");
    await reads("ALWWLLASLA");
    await unstopped();
    assert.match(String(await on.text("command")), /^trimora-run nd4.fas -t=C --code=2( |$)/);
    await on.page.waitForFunction(() => location.hash === "#t=C&code=2");
    await on.press("#undo");
    await reads("AL**LLASLA");
    await on.says("notes", "stop codons");
    await on.page.evaluate(() => { location.hash = "#preset=none&t=C&code=13"; });
    await reads("ALWWLLASLA");
    await unstopped();
    await on.enter("t", "D");
    await on.settled();
    assert.match(String(await on.text("command")), /^trimora-run nd4.fas -t=D --preset=none( |$)/);
    assert.equal(await offered(), false);
    await on.press("#translated");
    await on.press("#defaults");
  });

  test("rows in the order of names and of gaps, and colours of each palette", async () => {
    await on.drop({ "order.fas": bytes(">b10\nACDEFGHIKLMN\n>b2\nAC--FGHIKLMN\n>a\nACD-FGHIKLMN\n") });
    await on.says("openh", "order.fas");
    const order = async (/** @type {string} */ value) => {
      await on.page.select("select#order", value);
      await on.settled();
      await on.page.waitForSelector("#viewer[aria-busy=false]");
      const svg = await picture();
      assert.equal(rowOf(svg, "b2"), "AC--FGHIKLMN", value);
      return Array.from(svg.matchAll(/>(a|b2|b10)<\/text>/g), ([, name]) => name).join();
    };
    assert.equal(await order("name"), "a,b2,b10");
    assert.equal(await order("gaps"), "b10,a,b2");
    assert.equal(await order("file"), "b10,b2,a");
    const fills = [];
    for (const palette of ["report", "classes", "safe"]) {
      await on.page.select("select#palette", palette);
      await on.settled();
      fills.push(new Set(Array.from((await picture()).matchAll(/width="9" height="16" fill="([^"]*)"/g), ([, fill]) => fill)));
    }
    assert.deepEqual([...fills[0]], ["black"]);
    for (const fill of ["#b9e6a1", "#ffd28a"]) assert(fills[1].has(fill), fill);
    for (const fill of ["#f0e442", "#d55e00", "#56b4e9"]) assert(fills[2].has(fill), fill);
    await on.page.select("select#palette", "report");
  });

  test("dragging over the whole alignment moves the window, over rows too", async () => {
    const row = (/** @type {number} */ k) => `>s${k}\n${"ACDEFGHIKL".repeat(100)}\n`;
    await on.drop({ "large.fas": bytes(Array.from({ length: 120 }, (_, k) => row(k + 1)).join("")) });
    await on.says("said", "1,000 of 1,000");
    await on.page.waitForSelector("#viewer[aria-busy=false]");
    await on.page.$eval("#map", (map) => map.scrollIntoView({ block: "center" }));
    await on.settled();
    const box = await (await on.page.$("#map"))?.boundingBox();
    assert(box);
    await on.page.mouse.move(box.x + 5, box.y + 5);
    await on.page.mouse.down();
    await on.page.mouse.move(box.x + box.width * 0.9, box.y + 85, { steps: 4 });
    await on.page.$eval("#map", async (map) => { // the last step comes before the window's own scrolling is told
      const { left, top, width } = map.getBoundingClientRect(), frame = () => new Promise((done) => requestAnimationFrame(done));
      const move = (/** @type {number} */ share, /** @type {number} */ y) =>
        map.dispatchEvent(new PointerEvent("pointermove", { buttons: 1, bubbles: true, clientX: left + width * share, clientY: top + y }));
      for (const [share, y] of [[0.7, 70], [0.5, 45]]) {
        await frame();
        move(share, y);
      }
    });
    await on.page.mouse.up();
    await on.says("why", "Position 50");
    await on.settled();
    await on.page.waitForSelector("#viewer[aria-busy=false]");
    const [left, top] = await on.page.$eval("#viewer", (viewer) => [viewer.scrollLeft, viewer.scrollTop]);
    assert(left > 3000 && left < 4600 && top > 300, `${left}, ${top}`);
    const svg = await picture();
    assert.match(svg, />500<\/text>/);
    assert.match(svg, />s60<\/text>/);
    assert.match(rowOf(svg, "s60"), /^[A-L]{20}/);
  });

  test("the overview of a batch is sorted and searched, keeps that when it changes, and is saved as --overview writes it", async () => {
    const long = "ACDEFGHIKLMNPQRSTVWY", files = { "g2.fas": bytes(`>a\n${long}\n>b\n${long}\n`), "g10.fas": bytes(`>a\n${long.repeat(2)}\n>b\n${long.repeat(2)}\n`),
      "overview.html": bytes(`>a\n${long}\n>b\n${long}\n`) };
    await on.drop({ ...files, "bad.fas": bytes(">a\nACGT\n>b\nACG\n") });
    await on.press("#defaults");
    await on.says("overview", "4 alignments: 3 trimmed, 1 failed");
    const names = () => on.page.$$eval("#overview tbody th[scope=row] button", (cells) => cells.map(({ textContent }) => textContent).join());
    const search = (/** @type {string} */ sought) => on.page.$eval("#overview input[type=search]", (field, value) => {
      /** @type {HTMLInputElement} */ (field).value = value;
      field.dispatchEvent(new Event("input", { bubbles: true }));
    }, sought);
    assert.equal(await names(), "bad.fas,g2.fas,g10.fas,overview.html");
    await on.press("[data-key='Alignments by Positions']");
    assert.equal(await names(), "g10.fas,g2.fas,overview.html,bad.fas");
    await on.page.focus("[data-key='g2.fas']");
    await on.page.keyboard.press("Enter");
    await on.says("said", "of g2.fas");
    await on.enter("b4", "30");
    await on.page.waitForFunction(() => /0 of 20 positions/.test(document.getElementById("said")?.textContent ?? "") && !document.querySelector("#overview[aria-busy=true]"));
    assert.equal(await names(), "g10.fas,g2.fas,overview.html,bad.fas");
    assert.equal(await on.page.$eval("#overview [aria-sort=descending]", (cell) => cell.textContent), "Positions");
    assert.equal(await on.page.evaluate(() => `${document.activeElement?.textContent} ${document.activeElement?.getAttribute("aria-pressed")}`), "g2.fas true");
    await search("sequence 2");
    assert.equal(await names(), "bad.fas");
    await search("");
    await on.drop(files);
    await on.says("overview", "3 alignments: 3 trimmed"); // no longer of the four
    await on.tick("a");
    await on.says("overview", "Put together: 3 alignments, 2 species");
    const given = { ...files, "paths.txt": listOf("g2.fas", "g10.fas", "overview.html") };
    const args = ["paths.txt", "-b4=30", "-s=N", "-p=N", "-a=Y"];
    assert.deepEqual(unzipSync(await on.saved("#saveOverview", ".zip"))["overview-2.html"], new Uint8Array(native(given, [...args, "--overview=overview-2.html"])["overview-2.html"]));
    await on.tick("s");
    const command = ["paths.txt", "-b4=30", "-s=N", "-p=N"];
    assert.deepEqual(await on.saved("#saveOverview", ".html"), native(given, [...command, "--overview=overview-2.html"])["overview-2.html"]);
    assert.deepEqual(await on.saved("#saveTable", ".tsv"), native(given, [...command, "--table=table.tsv"])["table.tsv"]);
    await on.press("#defaults");
  });

  test("presets: as options of their own, undone, in the address; none keeps every column", async () => {
    await asOpened();
    const preset = (/** @type {string} */ word) => on.page.$$eval("#presets button", (buttons, name) => buttons.find(({ textContent }) => textContent === name)?.click(), word);
    const pressed = () => on.page.$$eval("#presets [aria-pressed=true]", (buttons) => buttons.map(({ textContent }) => textContent).join());
    assert.equal(await pressed(), "classic");
    await preset("relaxed");
    await on.says("said", `${selected("--preset=relaxed")} of 154`);
    await on.says("command", "trimora-run globins.fas --preset=relaxed");
    await on.page.waitForFunction(() => location.hash === "#preset=relaxed");
    await on.enter("b3", "2");
    await on.says("said", `${selected("--preset=relaxed", "-b3=2")} of 154`);
    await on.says("command", "-b2=51% -b3=2 -b4=5 -b5=H");
    assert.equal(await pressed(), "");
    await preset("none");
    await on.says("said", "154 of 154 positions");
    await on.tick("s", "-columns");
    await on.says("command", "trimora-run globins.fas --preset=none --columns");
    await on.settled();
    assert.deepEqual(await on.zip(), native(globins, ["globins.fas", "--preset=none", "--columns"]));
    await on.tick("s", "p");
    await on.says("command", "--preset=none"); // without a report, which there is not
    await preset("classic");
    await on.says("said", "114 of 154");
    await on.press("#undo");
    await on.says("said", "154 of 154");
    await on.page.evaluate(() => { location.hash = "#preset=none"; });
    await on.says("said", "154 of 154 positions");
    await on.page.evaluate(() => { location.hash = "#t=P&preset=relaxed&b4=7"; });
    await on.says("said", `${selected("--preset=relaxed", "-b4=7")} of 154`);
    await on.press("#defaults");
  });

  test("a motif is found across gaps, and the picture holds it", async () => {
    const find = async (/** @type {string} */ what) => {
      await on.page.$eval("input#find", (field, what) => { field.value = what; }, what);
      await on.page.$eval("form#finding", (form) => form.requestSubmit());
    };
    await on.drop({ "a&b.fas": bytes(`>one<1>\nMKVL--AAC-DEFGHIKLMNPQRSTVWY\n>two\nMKVLWWAAC-DEFGHIKLMNPQRSTVWY\n`) });
    await on.says("openh", "a&b.fas");
    await on.settled();
    await find("vlaxc");
    await on.says("found", "one<1>, positions 3 to 9");
    await find("10");
    await on.says("why", "Position 10 (column 11 of the file)");
    await on.says("spoken", "one<1>, D, position 10, column 11, ");
    await find("TWO");
    await on.says("found", "two.");
    const svg = (await on.saved("#asSvg", ".svg")).toString();
    assert.match(svg, /one&lt;1&gt;/);
    const told = await on.page.evaluate((svg) => new DOMParser().parseFromString(svg, "image/svg+xml").querySelector("parsererror")?.textContent, svg);
    assert.equal(told, undefined);
    const png = await on.saved("#asPng", ".png");
    assert.equal(png.toString("latin1", 1, 4), "PNG");
  });

  test("every canvas stays within the window, whatever the alignment", async () => {
    const row = (/** @type {number} */ k) => `>sequence_${k}\n${"ACDEFGHIKL".repeat(3000)}\n`;
    await on.page.evaluate(() => {
      /** @type {Worker[]} */
      const all = [], Plain = Worker;
      window.Worker = class extends Plain {
        /** @param {string | URL} source */
        constructor(source) {
          super(source);
          all.push(this);
        }
      };
      Object.assign(window, { end: () => all.forEach((worker) => worker.onerror?.(new ErrorEvent("error", { message: "it ended" }))) });
    });
    await on.drop({ "wide.fas": bytes(Array.from({ length: 50 }, (_, k) => row(k)).join("")) });
    await on.says("said", "30,000 of 30,000 positions");
    await on.page.$eval("#viewer", (viewer) => viewer.scrollTo(1e9, 1e9));
    await on.settled();
    const sizes = await on.page.$$eval("canvas", (all) => all.map(({ clientWidth, clientHeight }) => [clientWidth, clientHeight]));
    for (const [width, height] of sizes) assert(width <= 1200 && height <= 900, `${width} x ${height}`);
    assert.equal(sizes.length, 3);
    await on.page.waitForSelector("#viewer[aria-busy=false]");
    await on.page.evaluate("end()"); // a worker that ends: the next one reads the letters again
    await on.page.$eval("#viewer", (viewer) => viewer.scrollTo(9000, 0));
    await on.settled();
    await on.page.waitForSelector("#viewer[aria-busy=false]");
    assert.match(rowOf(await picture(), "sequence_0"), /^[A-L]{20}/);
  });

  test("accessible, wide and narrow, dark and light, in all states", async () => {
    await on.page.evaluate(axe.source);
    const check = async (/** @type {string} */ what) => {
      await on.settled();
      /** @type {import("axe-core").AxeResults} */
      const { violations } = JSON.parse(String(await on.page.evaluate("axe.run().then(JSON.stringify)")));
      assert.deepEqual(violations.map(({ id, nodes }) => `${what}, ${id}: ${nodes[0].html}`), []);
      assert(await on.page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), `${what}: scrolls sideways`);
    };
    await on.drop(genes);
    await on.enter("t", "C");
    await on.press("#pin");
    await on.enter("b3", "2");
    await on.says("said", "in all 2 alignments");
    await on.tick("a");
    await on.says("overview", "Put together");
    await on.page.$$eval("#overview details", (all) => all.forEach((details) => details.setAttribute("open", "")));
    await on.press("#translated");
    /** @type {[number, string][]} */
    const windows = [[1200, "light"], [360, name === "chromium" ? "dark" : "light"], [195, "light"]]; // the last: 390 at 200 %
    for (const [width, scheme] of windows) {
      if (name === "chromium") await on.page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: scheme }]);
      await on.page.setViewport({ width, height: 800 });
      await check(`${width}`);
    }
    await on.enter("b1", "99");
    await check("a value that is not possible");
    await on.press("#defaults");
    await on.drop({ "bad.fas": bytes(">a\nACGT\n>b\nACG\n") });
    await on.says("failure", "bad.fas");
    await check("a failure");
    await on.page.$eval("#opening", (details) => details.setAttribute("open", ""));
    await check("opening");
  });

  test("no connection leaves the page, and nothing went wrong", async () => {
    let reached = 0;
    const server = createServer((_, answer) => answer.end(String(++reached))).listen(0, "127.0.0.1");
    await new Promise((done) => server.once("listening", done));
    const there = `http://127.0.0.1:${/** @type {import("node:net").AddressInfo} */ (server.address()).port}/`;
    await on.page.evaluate(async (there) => {
      await fetch(there, { mode: "no-cors" }).catch(() => {});
      navigator.sendBeacon?.(there, "letters");
      await new Promise((done) => Object.assign(new Image(), { src: there, onload: done, onerror: done }));
    }, there);
    server.close();
    assert.equal(reached, 0);
    assert.deepEqual(on.requests.filter((request) => !/^(file|blob|data):/.test(request) && request !== there), []);
    assert.deepEqual(on.errors, []);
    assert(readFileSync(pageFile).length < 500000);
  });
});

test("a folder that is dropped is opened, with what is in its folders", async (t) => {
  const on = await openPage("chromium"), folder = folderOf({ "all/one.fas": genes["primates_mt_1.fas"], "all/more/two.fas": genes["primates_mt_2.fas"],
    "listed/a/x.fas": genes["primates_mt_1.fas"], "listed/b/x.fas": genes["primates_mt_2.fas"], "listed/list.txt": bytes("b/x.fas\na/x.fas\n") });
  t.after(async () => {
    await on.close();
    rmSync(folder, { recursive: true });
  });
  await on.dropPaths([`${folder}/all`]);
  await on.says("overview", "all/more/two.fas");
  await on.says("overview", "all/one.fas");
  await on.dropPaths([`${folder}/listed`]); // with two files of one name
  for (const [path, said] of [["b/x.fas", "434 of 448"], ["a/x.fas", "447 of 450"]]) {
    await on.says("overview", path);
    await on.press(`[data-key='${path}']`);
    await on.says("said", said);
  }
});

test("when memory ends, a sentence says so, with a command that helps, and the page goes on", async (t) => {
  const on = await openPage("chromium", ["--js-flags=--wasm-max-mem-pages=300"]); // 20 MB
  t.after(on.close);
  /** @type {[number, string, string][]} */
  const steps = [[2e6, "failure", "This browser"], [1e3, "said", "10,000 of 10,000"], [2e6, "failure", "This browser"]];
  for (const [repeats, id, said] of steps) {
    await on.page.evaluate((repeats) => {
      const dataTransfer = new DataTransfer(), row = "ACDEFGHIKL".repeat(repeats);
      dataTransfer.items.add(new File([`>a\n${row}\n>b\n${row}\n`], "wide.fas"));
      document.body.dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true }));
    }, repeats);
    await on.says(id, said);
  }
  assert.doesNotMatch(String(await on.text("failure")), /this machine/);
  assert.equal(await on.page.$eval("#command", (command) => command.checkVisibility() && command.textContent), "trimora-run wide.fas");
});
