// How fast the engine and the page are: node speed.mjs TRIMORA_RUN PACKAGE PAGE SMALL LARGE
// Prints    a line each, medians in milliseconds: the engine in Node against the native program, both on LARGE, and in
//           Chromium the time from a changed parameter to the page redrawn, for SMALL and LARGE
import { execFileSync } from "node:child_process";
import { copyFileSync, mkdtempSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { pathToFileURL } from "node:url";
import puppeteer from "puppeteer-core";
import { browsers } from "./browsers.mjs";

const [native, engine, html, small, large] = process.argv.slice(2);
const rounds = 11;
const median = (/** @type {number[]} */ times) => [...times].sort((a, b) => a - b)[times.length >> 1];
/** @param {string} work @param {number} time @param {number} against 0: none @param {number} goal */
const line = (work, time, against, goal) => {
  const held = against ? time <= goal * against : time <= goal;
  const told = against ? `native ${against.toFixed(0).padStart(6)}  ${(time / against).toFixed(2).padStart(6)}  <= ${goal} native` : `<= ${goal} ms`;
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

const browser = await puppeteer.launch(browsers.chromium);
/** @type {[string, string, number][]} */
const pages = [["page redrawn, globins", small, 100], ["page redrawn, 25 MB", large, 1000]];
for (const [work, file, goal] of pages) {
  const page = await browser.newPage();
  await page.goto(pathToFileURL(html).href);
  await (await page.$("input#files"))?.uploadFile(file);
  await page.waitForFunction(() => (document.querySelector("canvas#letters")?.clientHeight ?? 0) > 300);
  line(work, median(await page.evaluate(async (rounds) => {
    const times = [], frame = () => new Promise((drawn) => requestAnimationFrame(drawn));
    for (let k = 0; k < rounds; ++k) {
      const field = /** @type {HTMLInputElement} */ (document.getElementById("b4")), start = performance.now();
      field.value = String(11 + k);
      field.dispatchEvent(new Event("input", { bubbles: true }));
      do await frame(); while (!document.body.classList.contains("running"));
      while (document.body.classList.contains("running")) await frame();
      times.push(performance.now() - start);
      await new Promise((rested) => setTimeout(rested, 200));
    }
    return times;
  }, rounds)), 0, goal);
  await page.close();
}
await browser.close();
