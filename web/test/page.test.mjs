// The page as a person uses it, from file://, in Chromium and Firefox, against the native program.
// Environment: TRIMORA_PAGE, the page; TRIMORA_RUN, the native trimora-run.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createServer } from "node:http";
import { mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { after, before, describe, test } from "node:test";
import { pathToFileURL } from "node:url";
import { gzipSync } from "node:zlib";
import axe from "axe-core";
import { unzipSync } from "fflate";
import puppeteer from "puppeteer-core";
import { letters } from "../page/letters.js";
import { browsers } from "./browsers.mjs";

const { TRIMORA_PAGE = "", TRIMORA_RUN = "" } = process.env;
const url = pathToFileURL(TRIMORA_PAGE).href;
const example = (name) => readFileSync(new URL(`../../examples/${name}`, import.meta.url));
const globins = { "globins.fas": example("globins.fas") };
const genes = Object.fromEntries([1, 2].map((k) => [`primates_mt_${k}.fas`, example(`batch/primates_mt_${k}.fas`)]));

/** What the native program writes beside `files`. */
function native(files, args) {
  const folder = mkdtempSync(`${tmpdir()}/trimora.`);
  for (const name in files) writeFileSync(`${folder}/${name}`, files[name]);
  execFileSync(TRIMORA_RUN, args, { cwd: folder, stdio: "pipe" });
  const written = readdirSync(folder).filter((name) => !(name in files));
  const contents = Object.fromEntries(written.sort().map((name) => [name, readFileSync(`${folder}/${name}`)]));
  rmSync(folder, { recursive: true });
  return contents;
}

const downloads = mkdtempSync(`${tmpdir()}/trimora.`);
const saving = {
  chromium: { downloadBehavior: { policy: "allow", downloadPath: downloads } },
  firefox: { extraPrefsFirefox: { "browser.download.dir": downloads, "browser.download.folderList": 2 } },
};
after(() => rmSync(downloads, { recursive: true }));

for (const name of Object.keys(browsers)) describe(name, () => {
  let browser, page;
  const requests = [], errors = [];

  before(async () => {
    browser = await puppeteer.launch({ ...browsers[name], ...saving[name] });
    page = await browser.newPage();
    page.on("request", (request) => requests.push(request.url()));
    page.on("pageerror", (error) => errors.push(String(error)));
    page.on("dialog", (dialog) => errors.push(`dialog ${dialog.message()}`) && dialog.dismiss());
    await page.setViewport({ width: 1200, height: 900 });
    await page.goto(url);
  });
  after(() => browser.close());

  /** Drop files on the page. */
  const drop = (files) => page.evaluate((given) => {
    const dataTransfer = new DataTransfer();
    for (const [file, base64] of given) {
      dataTransfer.items.add(new File([Uint8Array.from(atob(base64), (c) => c.charCodeAt(0))], file));
    }
    document.body.dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true, cancelable: true }));
  }, Object.entries(files).map(([file, bytes]) => [file, Buffer.from(bytes).toString("base64")]));
  const text = (id) => page.$eval(`#${id}`, (element) => element.textContent);
  const says = (id, part) => page.waitForFunction((id, part) => document.getElementById(id).textContent.includes(part), {}, id, part);
  const enter = (id, value) => page.$eval(`#${id}`, (element, value) => {
    element.value = value;
    element.dispatchEvent(new Event("input", { bubbles: true }));
  }, value);
  /** Have exactly these outputs ticked. */
  const tick = (...options) => page.$$eval("#outputs input", (boxes, options) => {
    for (const box of boxes) if (box.checked !== options.includes(box.id.slice(4))) box.click();
  }, options);
  const settled = async () => {
    await page.waitForFunction(() => !document.body.classList.contains("running"));
    await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
  };
  /** The content of the zip that the page saves. */
  async function zip() {
    const old = readdirSync(downloads).length;
    await page.$eval("#zip", (button) => button.click());
    for (let k = 0; k < 100; ++k) {
      const found = readdirSync(downloads);
      if (found.length > old && found.every((file) => file.endsWith(".zip"))) break;
      await new Promise((done) => setTimeout(done, 50));
    }
    const [file] = readdirSync(downloads).filter((file) => file.endsWith(".zip"));
    const contents = unzipSync(readFileSync(`${downloads}/${file}`));
    rmSync(`${downloads}/${file}`);
    return Object.fromEntries(Object.keys(contents).sort().map((name) => [name, Buffer.from(contents[name])]));
  }

  test("globins: what is saved is what the program writes", async () => {
    await drop(globins);
    await says("said", "114 of 154 positions");
    await enter("b3", "4");
    await enter("b5", "H");
    await tick("s", "p", "k", "d");
    await settled();
    const args = ["globins.fas", "-b3=4", "-b5=H", "-k=Y", "-d=Y"];
    assert.equal(await text("command"), `trimora-run ${args.join(" ")}`);
    await page.waitForFunction(() => location.hash === "#b3=4&b5=H");
    assert.deepEqual(await zip(), native(globins, args));
  });

  test("the plot's shading stands where the blocks are", async () => {
    const report = native(globins, ["globins.fas", "-b3=4", "-b5=H", "-s=N", "-p=S"])["globins.fas-tr.txts"].toString();
    const blocks = Array.from(report.match(/^Flanks: .*/m)[0].matchAll(/\[(\d+) {2}(\d+)\]/g), ([, a, b]) => [Number(a), Number(b)]);
    const found = await page.evaluate(() => {
      const plot = document.querySelector("#plot canvas"), over = document.querySelector("#plot .u-over");
      const from = plot.getBoundingClientRect(), area = over.getBoundingClientRect(), dot = plot.width / from.width;
      const row = plot.getContext("2d").getImageData(0, Math.round((area.top - from.top + 5) * dot), plot.width, 1).data;
      return Array.from({ length: 154 }, (_, k) => { // the middle of each position, above its bar
        const at = 4 * Math.round((area.left - from.left + ((k + 0.5) / 154) * area.width) * dot);
        return row[at + 2] > row[at] + 20 && row[at + 3] === 255 ? "#" : ".";
      }).join("");
    });
    const selected = Array.from(found, (_, k) => (blocks.some(([a, b]) => a <= k + 1 && k + 1 <= b) ? "#" : ".")).join("");
    assert.equal(found, selected);
    assert.match(selected, /#\.+#/);
  });

  test("a value out of range says why, and the defaults come back", async () => {
    await enter("b1", "40");
    await settled();
    assert.equal(await text("b1-wrong"), "At most 38 (that is b2).");
    await page.$eval("#defaults", (button) => button.click());
    await settled();
    assert.equal(await text("b1-wrong"), "");
    await says("said", "114 of 154 positions");
  });

  test("marked letters can be copied, and the keyboard moves to the end", async () => {
    await page.focus("#viewer");
    for (const key of ["End", "ArrowDown"]) await page.keyboard.press(key);
    await settled();
    assert.match(await text("why"), /^Position 154: .*not selected$/);
    await page.keyboard.down("Shift");
    for (let k = 0; k < 2; ++k) await page.keyboard.press("ArrowLeft");
    await page.keyboard.up("Shift");
    await page.evaluate(() => {
      navigator.clipboard.writeText = async (copied) => void (window.copied = copied);
      document.getElementById("copy").click();
    });
    await says("copied", "Copied 1 sequence");
    const letters = globins["globins.fas"].toString().split(">")[2].split("\n").slice(1).join("");
    assert.equal(await page.evaluate(() => window.copied), `>MYG_HORSE\n${letters.slice(-3)}\n`);
  });

  test("a batch with a paths file, compressed alignments and the concatenation", async () => {
    const paths = { "list.txt": Buffer.from("data/primates_mt_2.fas\nprimates_mt_1.fas\n") };
    await drop({ ...paths, "primates_mt_2.fas.gz": gzipSync(genes["primates_mt_2.fas"]), "primates_mt_1.fas": genes["primates_mt_1.fas"] });
    await says("openh", "list.txt, 2 alignments");
    await drop(genes);
    await enter("t", "D");
    await says("said", "881 of 898 in all 2 alignments");
    await tick("s", "a");
    await settled();
    const files = { ...genes, "paths.txt": Buffer.from(Object.keys(genes).map((name) => `${name}\n`).join("")) };
    const saved = await zip();
    assert.deepEqual(saved["paths.txt"], files["paths.txt"]);
    delete saved["paths.txt"];
    assert.deepEqual(saved, native(files, ["paths.txt", "-t=D", "-p=N", "-a=Y"]));
  });

  test("a batch goes on behind an alignment that fails", async () => {
    await drop({ ...genes, "bad.fas": Buffer.from(">a\nACGT\n>b\nACG\n") });
    await says("batchtable", "sequence 2 (b)");
    await says("failure", "bad.fas");
    await page.$$eval("#batchtable button", (buttons) => buttons[1].click());
    await says("said", "447 of 450 positions");
    await says("command", "--keep-going");
  });

  test("b1 and b2 fit every alignment of a batch, and Windows line ends can be taken out", async () => {
    const two = genes["primates_mt_2.fas"].toString().split(">").slice(0, 11).join(">"); // ten of the twelve species
    const windows = { "primates_mt_1.fas": genes["primates_mt_1.fas"], "two.fas": Buffer.from(two.replaceAll("\n", "\r\n")) };
    await drop(windows);
    await says("notes", "two.fas: has Windows line ends");
    await page.$eval("#unix", (button) => button.click());
    await says("batchtable", "two.unix.fas");
    await enter("b2", "11");
    await tick("s");
    await settled();
    const command = await text("command");
    assert.match(command, /^tr -d .* < two\.fas > two\.unix\.fas\nprintf .*\ntrimora-run paths\.txt -t=D -b2=92% -p=N$/);
    const files = { "primates_mt_1.fas": windows["primates_mt_1.fas"], "two.unix.fas": Buffer.from(two) };
    const list = Buffer.from("primates_mt_1.fas\ntwo.unix.fas\n");
    assert.deepEqual(await zip(), { "paths.txt": list, ...native({ ...files, "paths.txt": list }, command.split("trimora-run ")[1].split(" ")) });
    await page.$eval("#defaults", (button) => button.click());
  });

  test("what is no alignment is said in a sentence, and the page goes on", async () => {
    await drop({ "notes.txt": Buffer.from("Dear diary\n") });
    await says("failure", "notes.txt");
    assert.doesNotMatch(await text("failure"), /\/here/);
    await drop({ "cut.fas.gz": gzipSync(globins["globins.fas"]).subarray(0, 900) });
    await says("notice", "damaged or incomplete");
    await drop(globins);
    await page.$eval("#defaults", (button) => button.click());
    await says("said", "114 of 154 positions");
  });

  test("names that are markup do nothing, in the page and in the report", async () => {
    const markup = "<script>parent.hacked=1</script><img src=x onerror=parent.hacked=1>";
    await drop({ "<img src=x onerror=hacked=1>.fas": Buffer.from(globins["globins.fas"].toString().replace("MYG_ESCGI", markup)) });
    await says("openh", "<img");
    await says("said", "114 of 154 positions");
    await page.$eval("#openreport", (button) => button.click());
    await page.waitForSelector("dialog[open]");
    const frame = await (await page.$("#frame")).contentFrame();
    await frame.waitForSelector("h2");
    assert.equal(await page.evaluate(() => window.hacked), undefined);
    assert.equal(await page.$$eval("main script, main img", (found) => found.length), 0);
    await page.$eval("#closereport", (button) => button.click());
  });

  test("every canvas stays within the window, whatever the alignment", async () => {
    const row = (k) => `>sequence_${k}\n${"ACDEFGHIKL".repeat(3000)}\n`;
    await drop({ "wide.fas": Buffer.from(Array.from({ length: 50 }, (_, k) => row(k)).join("")) });
    await says("said", "30,000 of 30,000 positions");
    await page.$eval("#viewer", (viewer) => viewer.scrollTo(1e9, 1e9));
    await settled();
    const sizes = await page.$$eval("canvas", (all) => all.map(({ clientWidth, clientHeight }) => [clientWidth, clientHeight]));
    for (const [width, height] of sizes) assert(width <= 1200 && height <= 900, `${width} x ${height}`);
    assert.equal(sizes.length, 3);
  });

  test("accessible, wide and narrow, dark and light", async () => {
    await drop(genes);
    await says("said", "in all 2 alignments");
    await page.evaluate(axe.source);
    for (const [width, scheme] of [[1200, "light"], [360, name === "chromium" ? "dark" : "light"]]) {
      if (name === "chromium") await page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: scheme }]);
      await page.setViewport({ width, height: 800 });
      await settled();
      const { violations } = await page.evaluate(() => window.axe.run());
      assert.deepEqual(violations.map(({ id, nodes }) => `${id}: ${nodes[0].html}`), []);
      assert(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), `${width}: scrolls sideways`);
    }
  });

  test("no connection leaves the page, and nothing went wrong", async () => {
    let reached = 0;
    const server = createServer((_, answer) => answer.end(String(++reached))).listen(0, "127.0.0.1");
    await new Promise((done) => server.once("listening", done));
    const there = `http://127.0.0.1:${server.address().port}/`;
    await page.evaluate(async (there) => {
      await fetch(there, { mode: "no-cors" }).catch(() => {});
      navigator.sendBeacon?.(there, "letters");
      await new Promise((done) => Object.assign(new Image(), { src: there, onload: done, onerror: done }));
    }, there);
    server.close();
    assert.equal(reached, 0);
    assert.deepEqual(requests.filter((request) => !/^(file|blob|data):/.test(request) && request !== there), []);
    assert.deepEqual(errors, []);
    assert(readFileSync(TRIMORA_PAGE).length < 400000);
  });
});

test("of a large alignment the first sequences are shown, in the positions of the whole", async () => {
  const { run } = await import(new URL("package/trimora.mjs", url).href);
  const rows = ["AC--EF.GH", "AC--EFKGH", "A--CEF.GH", "A--CEFKGH"]; // column 3 has letters in no sequence, 4 and 7 in some
  const formats = { fasta: (row, i) => `>s${i}\n${row.slice(0, 4)}\n${row.slice(4)}\n`, pir: (row, i) => `>P1;s${i}\nno name\n${row}*\n` };
  const part = { column: Uint32Array.from([1, 2, 4, 5, 6, 7, 8, 9]), width: 9, numseq: 4 };
  for (const [format, record] of Object.entries(formats)) {
    const bytes = Buffer.from(rows.map(record).join("")), length = bytes.length / 4;
    const read = async (part) => {
      const { bytes: there, names, starts } = await letters(run, new Uint8Array(bytes), part);
      return names.map((name, i) => `${name} ${Buffer.from(there.subarray(starts[i], starts[i] + 8))}`);
    };
    const whole = await read();
    assert.equal(whole[0], "s0 AC-EF-GH", format);
    for (const [limit, shown] of [[3, 1], [length - 1, 1], [3 * length, 3], [4 * length - 1, 3]]) {
      assert.deepEqual(await read({ ...part, bytes: limit }), whole.slice(0, shown), `${format}, ${limit} bytes`);
    }
  }
});

test("when memory ends, a sentence says so and the page goes on", async () => {
  const { args } = browsers.chromium;
  const browser = await puppeteer.launch({ ...browsers.chromium, args: [...args, "--js-flags=--wasm-max-mem-pages=300"] }); // 20 MB
  const page = await browser.newPage();
  await page.goto(url);
  for (const [letters, id, said] of [[2e6, "failure", "memory"], [1e3, "said", "10,000 of 10,000"], [2e6, "failure", "memory"]]) {
    await page.evaluate((letters) => {
      const dataTransfer = new DataTransfer(), row = "ACDEFGHIKL".repeat(letters);
      dataTransfer.items.add(new File([`>a\n${row}\n>b\n${row}\n`], "wide.fas"));
      document.body.dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true }));
    }, letters);
    await page.waitForFunction((id, said) => document.getElementById(id).textContent.includes(said), {}, id, said);
  }
  await browser.close();
});
