"""Draws the pictures of docs/when-to-trim.md from the tables in results/."""
from statistics import mean

from files import HERE, read_cells, read_table

PICTURES = HERE.parent / "docs" / "pictures"
SERIES = {"classic": ("#c4451c", "classic"), "half_5_51": ("#1c62b8", "relaxed"),
          "half_gaps": ("#7a8a2a", "columns with up to half gaps"), "random_classic": ("#8a8f98", "as many at random as classic")}
PANELS = {"one": "one gene", "several": "several genes together"}


class Picture:
    def __init__(self, width, height):
        self.parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
                      'font-family="system-ui, sans-serif" font-size="12">',
                      f'<rect width="{width}" height="{height}" fill="#fff"/>']

    def text(self, x, y, words, anchor="start", more=""):
        words = words.replace("&", "&amp;").replace("<", "&lt;")
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" fill="#222" {more}>{words}</text>')

    def line(self, x1, y1, x2, y2, colour="#ddd", width=1.0):
        self.parts.append(f'<path d="M{x1:.1f} {y1:.1f}L{x2:.1f} {y2:.1f}" stroke="{colour}" stroke-width="{width}"/>')

    def dot(self, x, y, colour, r=3.5):
        self.parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{r}" fill="{colour}"/>')

    def save(self, name):
        (PICTURES / name).write_text("\n".join([*self.parts, "</svg>", ""]))


def draw_trees():
    """For each cell, how much farther from the true tree a trimmed alignment leads than the whole one."""
    rows = [row for row in read_table(HERE / "results" / "trees.tsv") if row["program"] == "FastTree" and row["difference"]]
    there = {row["cell"] for row in rows}
    cells = {name: cell["what"] for name, cell in read_cells().items() if name in there}
    least, most, left, wide, high, top = -0.15, 0.55, 290, 300, 30, 74
    picture = Picture(left + 2 * wide + 60, top + high * len(cells) + 46)
    x = 20
    for colour, words in SERIES.values():
        picture.dot(x, 18, colour, 4)
        picture.text(x + 10, 22, words)
        x += 50 + 6.5 * len(words)
    for k, (panel, heading) in enumerate(PANELS.items()):
        start = left + k * (wide + 30)

        def at(value):
            return start + wide * (min(max(value, least), most) - least) / (most - least)
        picture.text(at(0), 46, heading, "middle", 'font-weight="600"')
        picture.text(at(0) - 8, 62, "better", "end", 'font-size="10"')
        picture.text(at(0) + 8, 62, "worse than not trimmed", more='font-size="10"')
        for value in (-0.1, 0.0, 0.1, 0.2, 0.3, 0.4, 0.5):
            picture.line(at(value), top, at(value), top + high * len(cells), "#222" if value == 0 else "#ddd")
            picture.text(at(value), top + high * len(cells) + 16, f"{value:+.1f}" if value else "0", "middle")
        for j, cell in enumerate(cells):
            for row in rows:
                if row["cell"] != cell or row["variant"] not in SERIES or (row["genes"] == "1") != (panel == "one"):
                    continue
                y = top + high * j + 6 + 6 * list(SERIES).index(row["variant"])
                value, width = float(row["difference"]), float(row["difference_width"] or 0)
                colour = SERIES[row["variant"]][0]
                picture.line(at(value - width), y, at(value + width), y, colour, 1.5)
                picture.dot(at(value), y, colour)
    for j, what in enumerate(cells.values()):
        y = top + high * j
        picture.line(10, y, left + 2 * wide + 40, y)
        picture.text(left - 10, y + 19, what, "end")
    picture.text(left + wide + 15, top + high * len(cells) + 36, "difference in the normalised Robinson-Foulds distance",
                 "middle", 'font-size="11"')
    picture.save("trimming-trees.svg")


def draw_pairs():
    """Each combination of the parameters: what it keeps of the right pairs, and what it leaves out of the wrong ones."""
    rows = [row for row in read_table(HERE / "results" / "pairs.tsv") if "b6" not in row["options"]]
    kinds = {name: cell["kind"] for name, cell in read_cells().items()}
    picture, size, top = Picture(760, 420), 300, 60
    marked = {"-b5=n -b4=10 -b3=8 -b2=85%": ("#c4451c", "classic"), "-b5=h -b4=5 -b3=8 -b2=51%": ("#1c62b8", "relaxed")}
    for k, (kind, heading) in enumerate({"dna": "DNA", "protein": "proteins"}.items()):
        left = 60 + k * (size + 70)
        picture.text(left + size / 2, 30, heading, "middle", 'font-weight="600"')
        picture.text(left + size / 2, top + size + 36, "right pairs of residues kept, %", "middle")
        for value in range(0, 101, 25):
            x, y = left + size * value / 100, top + size * (1 - value / 100)
            picture.line(x, top, x, top + size)
            picture.line(left, y, left + size, y)
            picture.text(x, top + size + 16, str(value), "middle", 'font-size="10"')
            picture.text(left - 6, y + 4, str(value), "end", 'font-size="10"')
        picture.line(left, top, left + size, top + size, "#8a8f98", 1.5)
        for options in sorted({row["options"] for row in rows} - {"none"}, key=lambda options: (options in marked, options)):
            here = [row for row in rows if row["options"] == options and kinds[row["cell"]] == kind]
            if not here:  # no such cell has been computed
                continue
            x = left + size * mean(float(row["right"]) for row in here)
            y = top + size * mean(float(row["wrong"]) for row in here)
            colour, words = marked.get(options, ("#b9c0c9", ""))
            picture.dot(x, y, colour, 5 if words else 3)
            if words:
                picture.text(max(x - 9, left + 50), y + 22, words, "end", 'font-weight="600"')
        picture.text(left + size * 0.08, top + size * 0.5, "columns at random", more='font-size="10"')
    picture.text(16, top + size / 2, "wrong pairs left out, %", "middle", f'transform="rotate(-90 16 {top + size / 2})"')
    picture.save("trimming-pairs.svg")


if __name__ == "__main__":
    draw_pairs()
    draw_trees()
