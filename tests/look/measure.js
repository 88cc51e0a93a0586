// Replaces the report by what the browser shows of its display. Every line on the screen becomes two lines of text: its
// letters, and the initials of their colours. A letter goes where its rectangle lies; one that lies between two columns
// becomes a question mark, and so does a colour that the report has no use for.
const initials = {"rgb(0, 0, 0) on rgba(0, 0, 0, 0)": " ", "rgb(0, 0, 128) on rgb(0, 0, 128)": "#"};
const onblack = {lime: "0, 255, 0", orange: "255, 165, 0", aqua: "0, 255, 255", white: "255, 255, 255",
                 yellow: "255, 255, 0", red: "255, 0, 0", fuchsia: "255, 0, 255"};
for (const name in onblack) initials[`rgb(${onblack[name]}) on rgb(0, 0, 0)`] = name[0];

const pre = document.querySelector("pre");
const left = pre.getBoundingClientRect().left;
const probe = pre.appendChild(document.createElement("span"));
probe.textContent = "=".repeat(1000);
const width = probe.getBoundingClientRect().width / 1000;
probe.remove();

const lines = new Map();  // from the top of a line to its letters and its initials
const range = document.createRange();
const texts = document.createTreeWalker(pre, NodeFilter.SHOW_TEXT);
while (texts.nextNode()) {
  const node = texts.currentNode, style = getComputedStyle(node.parentNode);
  for (let k = 0; k < node.length; ++k) {
    if (node.data[k] === "\n") continue;
    range.setStart(node, k);
    range.setEnd(node, k + 1);
    const {left: x, top} = range.getClientRects()[0];
    const column = Math.round((x - left) / width), astray = Math.abs((x - left) / width - column) > 0.2;
    if (!lines.has(top)) lines.set(top, [[], []]);
    const [letters, colours] = lines.get(top);
    letters[column] = astray ? "?" : node.data[k];
    colours[column] = initials[style.color + " on " + style.backgroundColor] ?? "?";
  }
}
const shown = [...lines.keys()].sort((a, b) => a - b).flatMap(top => lines.get(top));
document.documentElement.textContent =
  "\n" + shown.map(cells => Array.from(cells, cell => cell ?? " ").join("").trimEnd() + "\n").join("");
