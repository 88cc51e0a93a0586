// A picture of the page: node picture.mjs PAGE ALIGNMENT PICTURE
import { pathToFileURL } from "node:url";
import puppeteer from "puppeteer-core";
import { browsers } from "./browsers.mjs";

const [html, alignment, path] = process.argv.slice(2);
const browser = await puppeteer.launch(browsers.chromium);
const page = await browser.newPage();
await page.setViewport({ width: 1200, height: 1130 });
await page.goto(pathToFileURL(html).href);
await (await page.$("input#files"))?.uploadFile(alignment);
await page.waitForFunction(() => (document.querySelector("canvas#letters")?.clientHeight ?? 0) > 300);
await page.mouse.move(760, 420); // over the plot, which says why
await page.waitForFunction(() => document.getElementById("why")?.textContent?.includes("selected"));
await page.evaluate(() => new Promise((done) => setTimeout(done, 300)));
await page.screenshot({ path });
await browser.close();
