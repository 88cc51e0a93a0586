// What the tests share: the page in a browser, a person's steps on it, and the native program beside it.
// Environment: TRIMORA_PAGE, the page; TRIMORA_RUN, the native trimora-run.

import { execFileSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname } from "node:path";
import { pathToFileURL } from "node:url";
import { unzipSync } from "fflate";
import puppeteer from "puppeteer-core";
import { browsers } from "./browsers.mjs";

const patience = 180000; // milliseconds: what is waited for comes at once, or on a busy machine late

/** Content by name. @typedef {Record<string, Uint8Array>} Files */

const { TRIMORA_PAGE = "", TRIMORA_RUN = "" } = process.env;
export const pageFile = TRIMORA_PAGE;
export const url = pathToFileURL(TRIMORA_PAGE).href;
/** @type {typeof import("trimora")} */
export const engine = await import(new URL("package/trimora.mjs", url).href);
export const { compile, run } = engine;
// What the build puts into the page's modules.
Object.assign(globalThis, { OPTIONS: await engine.options(), PRESETS: await engine.presets(), CODES: await engine.geneticCodes() });

/** @param {string} name */
export const example = (name) => readFileSync(new URL(`../../examples/${name}`, import.meta.url));
export const globins = { "globins.fas": example("globins.fas") };
/** @type {Files} */
export const genes = Object.fromEntries([1, 2].map((k) => [`primates_mt_${k}.fas`, example(`batch/primates_mt_${k}.fas`)]));
/** @param {string} text */
export const bytes = (text) => Buffer.from(text);
/** A paths file. @param {string[]} names */
export const listOf = (...names) => bytes(names.map((name) => `${name}\n`).join(""));

/** Put files in a new folder. @param {Files} files */
export function folderOf(files) {
  const folder = mkdtempSync(`${tmpdir()}/trimora.`);
  for (const name in files) {
    mkdirSync(dirname(`${folder}/${name}`), { recursive: true });
    writeFileSync(`${folder}/${name}`, files[name]);
  }
  return folder;
}

/** What the native program writes beside `files`. @param {Files} files @param {string[]} args @returns {Files} */
export function native(files, args) {
  const folder = folderOf(files);
  execFileSync(TRIMORA_RUN, args, { cwd: folder, stdio: "pipe" });
  const written = readdirSync(folder).filter((name) => !(name in files)).sort();
  const contents = Object.fromEntries(written.map((name) => [name, readFileSync(`${folder}/${name}`)]));
  rmSync(folder, { recursive: true });
  return contents;
}

/**
 * The page in a browser of its own, and what a person does with it.
 * @param {string} name of the browser @param {string[]} [flags] for it @param {string} [hash] of the address
 */
export async function openPage(name, flags = [], hash = "") {
  const downloads = mkdtempSync(`${tmpdir()}/trimora.`);
  const settings = browsers[name];
  const browser = await puppeteer.launch({
    ...settings, timeout: patience, protocolTimeout: patience, args: [...(settings.args ?? []), ...flags],
    ...(name === "chromium" ? { downloadBehavior: { policy: "allow", downloadPath: downloads } }
      : { extraPrefsFirefox: { "browser.download.dir": downloads, "browser.download.folderList": 2, "browser.download.alwaysOpenPanel": false } }),
  });
  const page = await browser.newPage();
  /** @type {string[]} */ const requests = [];
  /** @type {string[]} */ const errors = [];
  page.on("request", (request) => requests.push(request.url()));
  page.on("pageerror", (error) => errors.push(String(error)));
  page.on("dialog", (dialog) => {
    errors.push(`dialog ${dialog.message()}`);
    dialog.dismiss();
  });
  page.setDefaultTimeout(patience);
  await page.setViewport({ width: 1200, height: 900 });
  await page.goto(url + hash);

  return {
    page, requests, errors,
    async close() {
      await browser.close();
      rmSync(downloads, { recursive: true });
    },

    /** Drop files on the page. @param {Files} files */
    drop: (files) => page.evaluate((given) => {
      const dataTransfer = new DataTransfer();
      for (const [file, base64] of given) {
        dataTransfer.items.add(new File([Uint8Array.from(atob(base64), (c) => c.charCodeAt(0))], file));
      }
      document.body.dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true, cancelable: true }));
    }, Object.entries(files).map(([file, content]) => [file, Buffer.from(content).toString("base64")])),

    /** Drop files and folders of the disk, as the browser's own drag does; Chromium only. @param {string[]} paths */
    async dropPaths(paths) {
      const session = await page.createCDPSession();
      for (const type of /** @type {const} */ (["dragEnter", "dragOver", "drop"])) {
        await session.send("Input.dispatchDragEvent", { type, x: 400, y: 100, data: { items: [], files: paths, dragOperationsMask: 1 } });
      }
      await session.detach();
    },

    text: (/** @type {string} */ id) => page.$eval(`#${id}`, (element) => element.textContent),
    /** Wait until an element says this. @param {string} id @param {string} part */
    says: (id, part) => page.waitForFunction((id, part) => document.getElementById(id)?.textContent?.includes(part), {}, id, part),
    /** Click a button, wherever it is. @param {string} selector */
    press: (selector) => page.$eval(selector, (element) => /** @type {HTMLElement} */ (element).click()),
    /** @param {string} id @param {string} value */
    enter: (id, value) => page.$eval(`input#${id}, select#${id}`, (element, value) => {
      /** @type {HTMLInputElement} */ (element).value = value;
      element.dispatchEvent(new Event("input", { bubbles: true }));
    }, value),
    /** Have exactly these outputs ticked. @param {string[]} options */
    tick: (...options) => page.$$eval("#outputs input", (boxes, options) => {
      for (const box of boxes) if (box.checked !== options.includes(box.id.slice(4))) box.click();
    }, options),
    async settled() {
      await page.waitForFunction(() => !document.body.classList.contains("running"));
      await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
    },

    /** The file that the page saves when a button is clicked. @param {string} button @param {string} ending of its name */
    async saved(button, ending) {
      await page.$eval(button, (element) => /** @type {HTMLElement} */ (element).click());
      const end = performance.now() + patience;
      while (performance.now() < end) {
        await new Promise((done) => setTimeout(done, 50));
        const [file, ...others] = readdirSync(downloads);
        if (others.length > 0 || !file?.endsWith(ending)) continue; // browsers begin under another name
        const content = readFileSync(`${downloads}/${file}`);
        if (content.length === 0) continue; // or keep the place for it
        rmSync(`${downloads}/${file}`);
        return content;
      }
      throw new Error(`${button} saved ${readdirSync(downloads).join(", ") || "nothing"}; the page says: ${await this.text("saved")}`);
    },
    /** The content of the zip that the page saves. @returns {Promise<Files>} */
    async zip() {
      const contents = unzipSync(await this.saved("#zip", "-tr.zip"));
      return Object.fromEntries(Object.keys(contents).sort().map((file) => [file, Buffer.from(contents[file])]));
    },
  };
}
