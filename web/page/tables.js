// Reads the table that the program writes.

/** The lines of `--table`. @param {Uint8Array} bytes @returns {import("./state.js").Row[]} */
export function readTable(bytes) {
  const [header, ...lines] = new TextDecoder().decode(bytes).split("\n").filter((line) => line).map((line) => line.split("\t"));
  return lines.map((cells) => Object.fromEntries(header.map((name, k) => [name, cells[k] ?? ""])));
}
