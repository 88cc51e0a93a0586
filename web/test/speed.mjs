// How fast the engine and the page are: node speed.mjs TRIMORA_RUN PACKAGE PAGE SMALL LARGE [GENES]
// Prints    a line each, medians in milliseconds: the engine in Node against the native program, both on LARGE; in Chromium
//           what a changed parameter costs, in the scripts of the page and of its worker, for SMALL and LARGE; and the time
//           from a click on another gene of the folder GENES until it is drawn
import { execFileSync } from "node:child_process";
import { copyFileSync, mkdtempSync, readdirSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { pathToFileURL } from "node:url";
import puppeteer from "puppeteer-core";
import { browsers } from "./browsers.mjs";

const [native, engine, html, small, large, genes] = process.argv.slice(2);
const rounds = 11, redraws = 50;
const median = (/** @type {number[]} */ times) => [...times].sort((a, b) => a - b)[times.length >> 1];
/** @param {string} work @param {number} time @param {number} against 0: none @param {number} goal @param {number} [beside] a native run */
const line = (work, time, against, goal, beside = 0) => {
  const held = against ? time <= goal * against : time <= goal;
  const ratio = beside > 0 ? `, ${(time / beside).toFixed(2)} native` : "";
  const told = against ? `native ${against.toFixed(0).padStart(6)}  ${(time / against).toFixed(2).padStart(6)}  <= ${goal} native` : `<= ${goal} ms${ratio}`;
  console.log(`${work.padEnd(34)} ${time.toFixed(0).padStart(9)}  ${told.padEnd(36)} ${held ? "ok" : "MISSED"}`);
};

const { run } = await import(pathToFileURL(`${engine}/trimora.mjs`).href);
const files = { "in.fas": new Uint8Array(readFileSync(large)) };
/** @type {Record<"native" | "engine", number[]>} */
const times = { native: [], engine: [] };
const folder = mkdtempSync(`${tmpdir()}/trimora.`);
copyFileSync(large, `${folder}/in.fas`);
for (let k = -2; k < rounds; ++k) { // the browser compiles better what has run before, here as in the page
  const start = performance.now();
  execFileSync(native, ["in.fas", "-p=n"], { cwd: folder });
  const between = performance.now();
  await run(files, ["in.fas", "-p=n"]);
  if (k < 0) continue;
  times.native.push(between - start);
  times.engine.push(performance.now() - between);
}
rmSync(folder, { recursive: true });
line("engine, 25 MB", median(times.engine), median(times.native), 3);

const browser = await puppeteer.launch({ ...browsers.chromium, protocolTimeout: 600000 });

/** The page with these files, ready. @param {string[]} paths */
async function opened(...paths) {
  const page = await browser.newPage();
  page.setDefaultTimeout(180000);
  await page.goto(pathToFileURL(html).href);
  await (await page.$("input#files"))?.uploadFile(...paths);
  await page.waitForFunction(() => document.getElementById("viewer")?.getAttribute("aria-busy") === "false");
  return page;
}

/** What the native program takes for a file. @param {string} path */
function nativeTime(path) {
  const inside = mkdtempSync(`${tmpdir()}/trimora.`);
  copyFileSync(path, `${inside}/in.fas`);
  const taken = Array.from({ length: rounds }, () => {
    const start = performance.now();
    execFileSync(native, ["in.fas", "-p=n"], { cwd: inside });
    return performance.now() - start;
  });
  rmSync(inside, { recursive: true });
  return median(taken);
}

/** @type {[string, string, number][]} */
const pages = [["page, script, globins", small, 16], ["page, script, 25 MB", large, 100]];
for (const [work, file, goal] of pages) {
  const page = await opened(file), times = [];
  await new Promise((rested) => setTimeout(rested, 3000)); // the program itself has been run
  for (let k = 0; k < redraws; ++k) {
    const before = (await page.metrics()).ScriptDuration ?? 0;
    const inWorker = await page.evaluate(async (value) => {
      const took = /** @type {number[]} */ ([]), hear = (/** @type {Event} */ event) => took.push(/** @type {CustomEvent<number>} */ (event).detail);
      addEventListener("engine", hear);
      const field = /** @type {HTMLInputElement} */ (document.getElementById("b4")), frame = () => new Promise((drawn) => requestAnimationFrame(drawn));
      field.value = value;
      field.dispatchEvent(new Event("input", { bubbles: true }));
      do await frame(); while (took.length === 0);
      await frame(); // in which it is drawn
      await frame();
      removeEventListener("engine", hear);
      return took.reduce((sum, one) => sum + one, 0);
    }, String(11 + k));
    times.push(inWorker + (((await page.metrics()).ScriptDuration ?? 0) - before) * 1000);
  }
  line(work, median(times), 0, goal, nativeTime(file));
  await page.close();
}

if (genes) {
  const names = readdirSync(genes).filter((name) => name.endsWith(".fas")), page = await opened(...names.map((name) => `${genes}/${name}`));
  await page.waitForFunction((count) => document.getElementById("said")?.textContent?.includes(`in all ${count} `), {}, names.length);
  line(`another of ${names.length} genes`, median(await page.evaluate(async (rounds) => {
    const times = [], frame = () => new Promise((drawn) => requestAnimationFrame(drawn));
    const buttons = /** @type {HTMLElement[]} */ ([...document.querySelectorAll("#overview button.open")]);
    for (const button of buttons.slice(1, 1 + rounds)) {
      const start = performance.now(), name = button.dataset.key ?? "";
      button.click();
      do await frame(); while (!document.getElementById("said")?.textContent?.includes(`of ${name};`) || document.getElementById("viewer")?.getAttribute("aria-busy") !== "false");
      times.push(performance.now() - start);
    }
    return times;
  }, rounds)), 0, 100);
}
await browser.close();
