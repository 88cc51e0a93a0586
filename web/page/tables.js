// Reads what the program writes on its runs.

/** The lines of `--table`. @param {Uint8Array} bytes @returns {import("./state.js").Row[]} */
export function readTable(bytes) {
  const [header, ...lines] = new TextDecoder().decode(bytes).split("\n").filter((line) => line).map((line) => line.split("\t"));
  return lines.map((cells) => Object.fromEntries(header.map((name, k) => [name, cells[k] ?? ""])));
}

/** The data in a page of `--overview`. @param {Uint8Array} page @returns {import("../../src/output/overview/overview.js").OverviewData} */
export function overviewIn(page) {
  const [, after] = new TextDecoder().decode(page).split('id="data">', 2);
  return JSON.parse(after.slice(0, after.indexOf("</script>")));
}

/** The lines of its table, as `--table` has them. @param {import("../../src/output/overview/overview.js").OverviewData["table"]} table @returns {import("./state.js").Row[]} */
export const rowsOf = ({ columns, rows }) => rows.map((cells) => Object.fromEntries(columns.map((name, k) => [name, String(cells[k] ?? "NA")])));
