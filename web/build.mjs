// Puts the page together: node build.mjs ENGINE PAGE - the engine's package in, one HTML file out.

import { createHash } from "node:crypto";
import { readFileSync, writeFileSync } from "node:fs";
import { fileURLToPath, pathToFileURL } from "node:url";
import { gzipSync } from "node:zlib";
import * as esbuild from "esbuild";
import { toText } from "./page/packing.js";

const [engine, page] = process.argv.slice(2);
/** @type {typeof import("trimora")} */
const { options: ask, presets, geneticCodes } = await import(pathToFileURL(`${engine}/trimora.mjs`).href);
// What the page has a control for, without what documents alone need.
const settings = (await ask()).filter(({ name }) => /^-\w+$/.test(name)).map(({ name, values, standard, least, most }) => ({ name, values, standard, least, most }));
const here = (/** @type {string} */ path) => fileURLToPath(new URL(path, import.meta.url));
/** @type {esbuild.BuildOptions} */
const options = {
  bundle: true, minify: true, write: false, format: "iife", target: "es2022", legalComments: "none", charset: "utf8",
  alias: { trimora: `${engine}/trimora.mjs` },
  define: { "import.meta.url": '"about:blank"', OPTIONS: JSON.stringify(settings), PRESETS: JSON.stringify(await presets()), CODES: JSON.stringify(await geneticCodes()) }, external: ["node:fs/promises"],
};
const bundle = async (/** @type {Pick<esbuild.BuildOptions, "entryPoints" | "plugins">} */ more) =>
  (await esbuild.build({ ...options, ...more, write: false })).outputFiles?.[0].text ?? "";

const packed = {
  wasm: async () => readFileSync(`${engine}/trimora.wasm`),
  worker: () => bundle({ entryPoints: [here("page/worker.js")] }),
  examples: async () => JSON.stringify(Object.fromEntries(["globins", "primates_mt", "batch/primates_mt_1", "batch/primates_mt_2"]
    .map((name) => [`${name.slice(name.indexOf("/") + 1)}.fas`, readFileSync(here(`../examples/${name}.fas`), "utf8")]))),
};

/** The modules packed:wasm, packed:worker and packed:examples (texts by their names, as JSON). @type {esbuild.Plugin} */
const packing = {
  name: "packing",
  setup(build) {
    build.onResolve({ filter: /^packed:/ }, ({ path }) => ({ path: path.slice("packed:".length), namespace: "packed" }));
    build.onLoad({ filter: /./, namespace: "packed" }, async ({ path }) => ({
      contents: toText(gzipSync(await packed[/** @type {"wasm"} */ (path)](), { level: 9 })), loader: "text",
    }));
  },
};

// Inside a script element no text may look like its end.
const code = (await bundle({ entryPoints: [here("page/main.js")], plugins: [packing] })).replaceAll("</script", "<\\/script");
const style = await bundle({ entryPoints: [here("page/page.css")] });
const html = readFileSync(here("page/index.html"), "utf8")
  .replace("@STYLE@", () => style)
  .replace("@SCRIPT@", `sha256-${createHash("sha256").update(code).digest("base64")}`)
  .replace("@VERSION@", JSON.parse(readFileSync(`${engine}/package.json`, "utf8")).version)
  .replace("@CODE@", () => code);
writeFileSync(page, html);
