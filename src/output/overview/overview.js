// What became of the alignments of a run, as a part of a page: what was run, a table of the alignments, who is in them.
// The page that --overview writes holds this module as it is; others import it.
//
// Words     gene: an alignment | occupancy: how many letters each species has in each gene | share: letters of all cells
// Counting  genes, rows and species from 0

/**
 * What is shown. The page has it as JSON.
 * @typedef {object} OverviewData
 * @property {1} overview  the version of this format
 * @property {string} program  "trimora-run 2.0.0"
 * @property {string} name  of the run
 * @property {string[]} command  the words of the command line after the program's name
 * @property {[string, string, string][]} settings  parameters: option, value in force, meaning
 * @property {string[]} notes  on the run as a whole
 * @property {[string, string][]} files  of the run as a whole: path, address
 * @property {Counts | null} counts  the cells of the concatenation; null: there is none
 * @property {{columns: string[], rows: (string | number | null)[][]}} table  as --table writes it; null: not known
 * @property {(string | null)[]} reports  of each row of the table, the address of its report
 * @property {Occupancy | null} occupancy  null: there is no concatenation
 */
/** @typedef {{letters: number, unknown: number, gaps: number, end_gaps: number, absent: number}} Counts */
/**
 * @typedef {object} Occupancy
 * @property {string[]} species
 * @property {number[]} genes  their rows in the table
 * @property {number[]} width  of each gene, its columns in the concatenation
 * @property {(number | null)[][]} letters  of each species in each gene; null: absent
 */

const mostShown = 500; // rows of a table, until more are asked for
const moreShown = 2000; // at once: all of them would be a wait
const mostPrinted = 2000;
const mostColumns = 2000; // of the picture: more genes share them
const mostLabels = 60;

const plain = new Intl.NumberFormat("en");
/** "97.2 %", cut after the first digit. @param {number} part @param {number} whole */
const percent = (part, whole) => `${whole > 0 ? (Math.floor((part * 1000) / whole) / 10).toFixed(1) : "0.0"} %`;
/** @param {number} n @param {string} one @param {string} [many] */
const count = (n, one, many = `${one}s`) => `${plain.format(n)} ${n === 1 ? one : many}`;

/**
 * An element. Text is never read as HTML, whatever a name holds.
 * @template {keyof HTMLElementTagNameMap} T
 * @param {T} tag @param {Record<string, string>} [attributes] @param {(Node | string)[]} inside
 * @returns {HTMLElementTagNameMap[T]}
 */
function make(tag, attributes = {}, ...inside) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) element.setAttribute(name, value);
  element.append(...inside);
  return element;
}

/** @param {string} title @param {(Node | string)[]} inside */
function section(title, ...inside) {
  return make("section", {}, make("h2", {}, title), ...inside);
}

/** A word as a shell reads it. @param {string} word */
const quoted = (word) => (/^[\w@%+=:,./-]+$/.test(word) ? word : `'${word.replaceAll("'", "'\\''")}'`);

// ---- Tables

/**
 * @typedef {object} Column
 * @property {string} title
 * @property {string} [meaning]
 * @property {boolean} [text]  not a number
 * @property {(row: number) => string | number | null} value  to sort by
 * @property {(row: number) => Node | string} [shown]
 */

/** @param {Column} column @param {number} row */
function shown(column, row) {
  if (column.shown) return column.shown(row);
  const value = column.value(row);
  return value === null ? "" : typeof value === "number" ? plain.format(value) : value;
}

/** How a table is sorted and searched. @typedef {{by: number, down: boolean, sought: string}} Sorting */

/**
 * A table that can be sorted by each column and searched; not known is last, whatever the order.
 * @param {string} title @param {Column[]} columns @param {number} rows @param {((row: number) => string) | null} text searched
 * @param {Sorting} sorting to begin with, and where what is chosen is kept
 */
function sortable(title, columns, rows, text, sorting) {
  const body = make("tbody");
  const said = make("output");
  const more = make("button", { type: "button" });
  const search = make("input", { type: "search", "data-key": `${title} search` });
  const sorted = Array.from({ length: rows }, (_, row) => row);
  let limit = mostShown;
  /** @type {string[]} */
  let texts = [];

  const heads = columns.map((column, at) => {
    const button = make("button", { type: "button", "data-key": `${title} by ${column.title}`, ...(column.meaning ? { title: column.meaning } : {}) }, column.title);
    const head = make("th", { scope: "col", ...(column.text ? { class: "text" } : {}) }, button);
    button.addEventListener("click", () => {
      sorting.down = sorting.by === at ? !sorting.down : !column.text; // numbers: the largest first
      sorting.by = at;
      sort();
      fill();
    });
    return head;
  });

  function sort() {
    const column = columns[sorting.by], { down } = sorting;
    if (!column) return;
    heads.forEach((other) => other.removeAttribute("aria-sort"));
    heads[sorting.by].setAttribute("aria-sort", down ? "descending" : "ascending");
    const values = sorted.map(() => /** @type {string | number | null} */ (null));
    for (const row of sorted) values[row] = column.value(row);
    const order = new Intl.Collator("en", { numeric: true });
    sorted.sort((a, b) => {
      const [x, y] = [values[a], values[b]];
      if (x === null || y === null) return x === y ? a - b : x === null ? 1 : -1;
      const way = typeof x === "number" && typeof y === "number" ? x - y : order.compare(String(x), String(y));
      return (down ? -way : way) || a - b;
    });
  }

  function fill() {
    sorting.sought = search.value;
    const sought = search.value.trim().toLowerCase();
    if (sought && text && texts.length === 0) texts = sorted.map(() => "");
    const found = sorted.filter((row) => {
      if (!sought || !text) return true;
      texts[row] ||= text(row).toLowerCase();
      return texts[row].includes(sought);
    });
    body.replaceChildren(...found.slice(0, limit).map((row) => make("tr", {}, ...columns.map((column, at) =>
      make(at === 0 ? "th" : "td", { ...(at === 0 ? { scope: "row" } : {}), ...(column.text ? { class: "text" } : {}) }, shown(column, row))))));
    more.hidden = found.length <= limit;
    more.textContent = `Show ${plain.format(Math.min(found.length - limit, moreShown))} more`;
    said.textContent = found.length > limit ? `The first ${plain.format(limit)} of ${plain.format(found.length)}`
      : found.length < rows ? `${plain.format(found.length)} of ${plain.format(rows)}` : "";
  }
  /** @param {number} upTo */
  const show = (upTo) => {
    limit = upTo;
    fill();
  };
  more.addEventListener("click", () => show(limit + moreShown));
  search.addEventListener("input", fill);
  search.value = sorting.sought;
  sort();
  fill();

  const table = make("table", {}, make("caption", { class: "hidden" }, title), make("thead", {}, make("tr", {}, ...heads)), body);
  const tools = make("p", { class: "tools" }, ...(text ? [make("label", {}, "Search ", search)] : []), said, more);
  const scrolled = make("div", { class: "scrolled", tabindex: "0", role: "group", "aria-label": title, "data-key": title }, table);
  return { element: make("div", {}, tools, scrolled), onPaper: () => rows <= mostPrinted && limit < rows && show(rows) };
}

// ---- What was run

/** @param {OverviewData} data @param {(name: string) => (string | number | null)[]} column */
function account(data, column) {
  const taken = column("selected").every((n) => n === null) ? "taken as they are" : "trimmed";
  const states = column("status"), each = [["ok", taken], ["left out", "left out"], ["failed", "failed"], ["skipped", "skipped"]];
  const parts = each.map(([status, words]) => /** @type {[number, string]} */ ([states.filter((s) => s === status).length, words]))
    .filter(([n]) => n > 0).map(([n, words]) => `${plain.format(n)} ${words}`);
  const lines = [make("p", {}, make("strong", {}, `${count(states.length, "alignment")}: ${parts.join(", ")}.`))];
  if (data.counts && data.occupancy) {
    const { letters, unknown, gaps, end_gaps: ends, absent } = data.counts, cells = letters + unknown + gaps + absent;
    const { genes, species, width } = data.occupancy;
    const present = data.occupancy.letters.reduce((sum, row) => sum + row.filter((n) => n !== null).length, 0);
    lines.push(make("p", {}, `Put together: ${count(genes.length, "alignment")}, ${count(species.length, "species", "species")}, ` +
      `${count(width.reduce((a, b) => a + b, 0), "column")}: ${percent(letters, cells)} letters, ${percent(unknown, cells)} unknown, ` +
      `${percent(gaps, cells)} gaps (${percent(ends, cells)} at the ends), ${percent(absent, cells)} absent; ` +
      `a species is in ${percent(present, genes.length * species.length)} of the alignments on average (gene occupancy).`));
  }
  return lines;
}

/** @param {OverviewData} data */
function whatWasRun(data) {
  const command = ["trimora-run", ...data.command.map(quoted)].join(" ");
  const rows = data.settings.map(([option, value, meaning]) =>
    make("tr", {}, make("th", { scope: "row" }, option), make("td", { class: "text" }, value), make("td", { class: "text" }, meaning)));
  /** @type {HTMLElement[]} */
  const parts = [make("p", {}, make("code", {}, command)), make("p", {}, data.program)];
  if (rows.length > 0) {
    parts.push(make("details", {}, make("summary", {}, "Parameters of the selection"),
      make("table", {}, make("caption", { class: "hidden" }, "Parameters"), make("thead", {}, make("tr", {},
        ...["Option", "Value", "Meaning"].map((title) => make("th", { scope: "col", class: "text" }, title)))), make("tbody", {}, ...rows))));
  }
  if (data.notes.length > 0) {
    parts.push(make("h3", {}, "Notes"), make("ul", {}, ...data.notes.map((note) => make("li", {}, note))));
  }
  if (data.files.length > 0) {
    parts.push(make("h3", {}, "Files"), make("ul", {}, ...data.files.map(([path, to]) => make("li", {}, make("a", { href: to }, path)))));
  }
  return section("What was run", ...parts);
}

/** A table whose numbers are bars as well. @param {(string | number | null)[]} kept per cent of each alignment */
function distribution(kept) {
  const titles = ["0 %", "1–9 %", ...Array.from({ length: 9 }, (_, k) => `${k * 10 + 10}–${k * 10 + 19} %`), "100 %"];
  const bins = titles.map(() => 0);
  for (const share of kept) {
    if (typeof share === "number") bins[share === 0 ? 0 : share === 100 ? 11 : Math.floor(share / 10) + 1] += 1;
  }
  const most = Math.max(...bins);
  if (most === 0) return null;
  const rows = titles.map((title, at) => {
    const bar = make("span", { class: "bar" });
    bar.style.width = `${(bins[at] / most) * 100}%`;
    return make("tr", {}, make("th", { scope: "row" }, title), make("td", {}, plain.format(bins[at])), make("td", { class: "bars", "aria-hidden": "true" }, bar));
  });
  return section("How much was kept", make("table", { class: "bins" }, make("caption", {}, "Alignments by the share of their columns that is selected"),
    make("thead", { class: "hidden" }, make("tr", {}, make("th", { scope: "col" }, "Share kept"), make("th", { scope: "col" }, "Alignments"), make("td"))),
    make("tbody", {}, ...rows)));
}

// ---- The picture of the occupancy

/** The numbers 0 to n - 1, those of the largest values first. @param {number[]} values */
const largestFirst = (values) => values.map((_, at) => at).sort((a, b) => values[b] - values[a] || a - b);

/** @param {string} colour "#rrggbb" */
const channels = (colour) => [1, 3, 5].map((at) => parseInt(colour.slice(at, at + 2), 16));

/**
 * @param {HTMLElement} root for its colours @param {Occupancy} occupancy
 * @param {(string | number | null)[]} paths of the table's rows @param {AbortSignal} signal when it is shown no more
 * @param {Kept} kept
 */
function picture(root, occupancy, paths, signal, kept) {
  const { species, genes, width, letters } = occupancy;
  const cells = width.reduce((a, b) => a + b, 0);
  const ofSpecies = letters.map((row) => row.reduce((/** @type {number} */ sum, n) => sum + (n ?? 0), 0));
  const ofGene = genes.map((_, g) => letters.reduce((sum, row) => sum + (row[g] ?? 0), 0) / (width[g] || 1));
  const canvas = make("canvas", { tabindex: "0", role: "application", "aria-roledescription": "picture",
    "aria-label": "Letters of each species in each alignment. The arrow keys go from cell to cell; all numbers are in the tables." });
  const said = make("output", { class: "said", "aria-live": "polite" });
  const mark = make("div", { class: "mark", hidden: "" });
  const names = make("div", { class: "names", "aria-hidden": "true" });
  const order = make("select", { "data-key": "order" }, make("option", { value: "filled" }, "the fullest first"), make("option", { value: "given" }, "as in the concatenation"));
  const columns = Math.min(genes.length, mostColumns);
  let rowsShown = species.map((_, s) => s), genesShown = genes.map((_, g) => g);
  let at = { row: 0, column: 0 };

  /** The genes of a column, from the first to one before the last. @param {number} column */
  const genesOf = (column) => [Math.floor((column * genes.length) / columns), Math.floor(((column + 1) * genes.length) / columns)];

  function sort() {
    kept.order = order.value;
    const filled = order.value === "filled";
    rowsShown = filled ? largestFirst(ofSpecies) : species.map((_, s) => s);
    genesShown = filled ? largestFirst(ofGene) : genes.map((_, g) => g);
    names.replaceChildren(...(species.length > mostLabels ? [] : rowsShown.map((s) => make("span", { title: species[s] }, species[s]))));
    draw();
  }

  function draw() {
    if (columns === 0 || species.length === 0) return;
    const style = getComputedStyle(root), colours = ["absent", "few", "all"].map((name) => channels(style.getPropertyValue(`--overview-${name}`).trim()));
    const small = make("canvas", { width: String(columns), height: String(species.length) });
    const small2d = /** @type {CanvasRenderingContext2D} */ (small.getContext("2d"));
    const image = small2d.createImageData(columns, species.length);
    let to = 0;
    for (const s of rowsShown) {
      for (let column = 0; column < columns; ++column) {
        const [first, last] = genesOf(column);
        const mixed = [0, 0, 0];
        for (let k = first; k < last; ++k) {
          const g = genesShown[k], n = letters[s][g];
          const share = n === null ? 0 : n / (width[g] || 1);
          for (let c = 0; c < 3; ++c) mixed[c] += n === null ? colours[0][c] : colours[1][c] + share * (colours[2][c] - colours[1][c]);
        }
        for (let c = 0; c < 3; ++c) image.data[to++] = Math.round(mixed[c] / (last - first));
        image.data[to++] = 255;
      }
    }
    small2d.putImageData(image, 0, 0);
    const height = species.length <= mostLabels ? species.length * 16 : Math.min(Math.max(species.length, 480), 960);
    canvas.style.height = `${height}px`;
    const dots = devicePixelRatio || 1;
    canvas.width = Math.max(Math.round(canvas.clientWidth * dots), columns);
    canvas.height = Math.max(Math.round(height * dots), Math.min(species.length, 4000));
    const full2d = /** @type {CanvasRenderingContext2D} */ (canvas.getContext("2d"));
    full2d.imageSmoothingEnabled = canvas.height < species.length;
    full2d.drawImage(small, 0, 0, canvas.width, canvas.height);
  }

  function tell() {
    const s = rowsShown[at.row], [first, last] = genesOf(at.column);
    const each = genesShown.slice(first, last).map((g) => {
      const n = letters[s][g];
      return `${paths[genes[g]]}: ${n === null ? "absent" : `${plain.format(n)} of ${count(width[g], "letter")}`}`;
    });
    said.textContent = `${species[s]} in ${each.slice(0, 10).join("; ")}${each.length > 10 ? ` and ${each.length - 10} more` : ""}`;
    mark.hidden = false;
    const wide = canvas.clientWidth / columns, high = canvas.clientHeight / species.length;
    mark.style.left = `${canvas.offsetLeft + at.column * wide}px`;
    mark.style.top = `${canvas.offsetTop + at.row * high}px`;
    mark.style.width = `${Math.max(wide, 3)}px`;
    mark.style.height = `${Math.max(high, 3)}px`;
  }

  /** @param {number} value @param {number} size */
  const within = (value, size) => Math.min(Math.max(value, 0), size - 1);
  /** @param {PointerEvent} event */
  const point = (event) => {
    const box = canvas.getBoundingClientRect();
    at = { row: within(Math.floor(((event.clientY - box.top) / box.height) * species.length), species.length),
      column: within(Math.floor(((event.clientX - box.left) / box.width) * columns), columns) };
    tell();
  };
  canvas.addEventListener("pointermove", point);
  canvas.addEventListener("pointerdown", point);
  canvas.addEventListener("focus", tell);
  canvas.addEventListener("keydown", (event) => {
    const step = { ArrowLeft: [0, -1], ArrowRight: [0, 1], ArrowUp: [-1, 0], ArrowDown: [1, 0], Home: [0, -columns], End: [0, columns] }[event.key];
    if (!step) return;
    event.preventDefault();
    at = { row: within(at.row + step[0], species.length), column: within(at.column + step[1], columns) };
    tell();
  });
  order.addEventListener("change", () => {
    sort();
    mark.hidden = true;
    said.textContent = "";
  });
  new ResizeObserver(draw).observe(canvas);
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", draw, { signal });
  order.value = kept.order;
  sort();

  const table = sortable("Species", [
    { title: "Species", text: true, value: (s) => species[s] },
    { title: "Alignments", value: (s) => letters[s].reduce((/** @type {number} */ sum, n) => sum + (n === null ? 0 : 1), 0) },
    { title: "Letters", value: (s) => ofSpecies[s] },
    { title: "Completeness", meaning: "letters, as a share of the columns of the concatenation", value: (s) => ofSpecies[s] / (cells || 1), shown: (s) => percent(ofSpecies[s], cells) },
  ], species.length, (s) => species[s], kept.species);
  const legend = make("p", { class: "legend" }, ...["absent", "few", "all"].flatMap((name) =>
    [make("span", { class: `swatch ${name}` }), name === "few" ? "few letters " : name === "all" ? "letters everywhere" : "absent "]));
  const binned = genes.length > columns ? [make("p", {}, `Each column of the picture stands for several of the ${plain.format(genes.length)} alignments.`)] : [];
  const element = section("Who is where", make("p", { class: "tools" }, make("label", {}, "Species and alignments ", order)), legend, ...binned,
    make("div", { class: "picture" }, names, canvas, mark), make("p", {}, said),
    make("details", {}, make("summary", {}, "The species in numbers"), table.element));
  return { element, draw, onPaper: table.onPaper };
}

// ---- All of it

/** What a person has chosen, which stays when other data are shown. @typedef {{table: Sorting, species: Sorting, order: string}} Kept */
/** @type {WeakMap<HTMLElement, Kept & {stop: AbortController}>} */
const shownIn = new WeakMap();

/** Give `root` other content; what was scrolled or open stays so, and the focus on what has the same key. @param {HTMLElement} root @param {Node[]} content */
function refill(root, ...content) {
  const focus = root.contains(document.activeElement) ? document.activeElement?.getAttribute("data-key") : null;
  const tops = Array.from(root.querySelectorAll(".scrolled"), (one) => [one.getAttribute("data-key"), one.scrollTop]);
  const opened = Array.from(root.querySelectorAll("details"), (one) => one.open && one.firstChild?.textContent);
  root.replaceChildren(...content);
  for (const one of root.querySelectorAll("details")) if (opened.includes(one.firstChild?.textContent ?? null)) one.open = true;
  for (const one of /** @type {NodeListOf<HTMLElement>} */ (root.querySelectorAll("[data-key]"))) {
    const key = one.getAttribute("data-key"), top = tops.find(([other]) => other === key);
    if (top) one.scrollTop = Number(top[1]);
    if (key === focus && focus !== null) one.focus({ preventScroll: true });
  }
}

/**
 * Show what became of the alignments of a run.
 * @param {HTMLElement} root what it holds is replaced, but what was chosen there stays; overview.css is for the class
 *   `overview`, which it gets
 * @param {OverviewData} data
 * @param {{open: (row: number) => void, shown: () => number}} [page] where it is a part of a page on alignments: how one is
 *   opened there, and which one is open. The table is then first, and what was run is known.
 */
export function overview(root, data, page) {
  root.classList.add("overview");
  shownIn.get(root)?.stop.abort();
  const before = root.firstChild ? shownIn.get(root) : undefined, stop = new AbortController(), { signal } = stop;
  const unsorted = () => ({ by: -1, down: false, sought: "" });
  const kept = { table: before?.table ?? unsorted(), species: before?.species ?? unsorted(), order: before?.order ?? "filled", stop };
  shownIn.set(root, kept);
  const { columns, rows } = data.table;
  /** @param {string} name */
  const column = (name) => {
    const at = columns.indexOf(name);
    return rows.map((row) => (at < 0 ? null : row[at]));
  };
  const paths = column("alignment"), message = column("message"), status = column("status");
  const cells = ["letters", "unknown", "gaps", "absent"].map(column);
  /** @param {number} row */
  const completeness = (row) => {
    const [letters, ...others] = cells.map((each) => Number(each[row] ?? 0));
    const whole = others.reduce((a, b) => a + b, letters);
    return cells[0][row] === null || whole === 0 ? null : { letters, whole };
  };
  /** @param {string} title @param {string} name @returns {Column} */
  const number = (title, name) => {
    const values = column(name);
    return { title, value: (row) => values[row] };
  };
  /** @param {number} row */
  const named = (row) => {
    const path = String(paths[row]), to = data.reports[row];
    if (to) return make("a", { href: to }, path);
    if (!page) return path;
    const button = make("button", { type: "button", class: "open", "data-key": path, "aria-pressed": String(page.shown() === row) }, path);
    button.addEventListener("click", () => page.open(row));
    return button;
  };
  /** @type {Column[]} */
  const last = [
    { title: "Status", text: true, value: (row) => status[row] },
    { title: "Notes", text: true, value: (row) => message[row] || null },
  ];
  /** @type {Column[]} */
  const shownColumns = [
    { title: "Alignment", text: true, value: (row) => paths[row], shown: named },
    ...(page ? [number("Selected", "selected"), number("Kept, %", "percent"), ...last] : []), // the others are out of sight there, perhaps
    number("Sequences", "sequences"), number("Positions", "positions"), ...(page ? [] : [number("Selected", "selected"), number("Kept, %", "percent")]),
    number("Blocks", "blocks"), number("Species", "species"), number("Informative", "informative"),
    { title: "Completeness", meaning: "letters, as a share of all cells that are kept: selected columns × species", value: (row) => {
      const found = completeness(row);
      return found && found.letters / found.whole;
    }, shown: (row) => {
      const found = completeness(row);
      return found ? percent(found.letters, found.whole) : "";
    } },
    ...(page ? [] : last),
  ];
  const table = sortable("Alignments", shownColumns, rows.length, (row) => `${paths[row]}\n${status[row]}\n${message[row]}`, kept.table);
  const seen = data.occupancy && data.occupancy.genes.length > 0 ? picture(root, data.occupancy, paths, signal, kept) : null;
  const shares = distribution(column("percent")), more = [...(shares ? [shares] : []), ...(seen ? [seen.element] : [])];
  if (page) {
    const folded = more.map((part) => make("details", {}, make("summary", {}, part.firstChild?.textContent ?? ""), part));
    refill(root, ...account(data, column), table.element, ...folded);
  } else {
    refill(root, ...account(data, column), whatWasRun(data), ...more, section("Alignments", table.element));
  }
  seen?.draw(); // now that it has its size

  addEventListener("beforeprint", () => {
    root.classList.add("paper");
    table.onPaper();
    seen?.onPaper();
    seen?.draw();
  }, { signal });
  addEventListener("afterprint", () => {
    root.classList.remove("paper");
    seen?.draw();
  }, { signal });
}
