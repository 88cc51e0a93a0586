"""Evolves genes along a tree, so that the true alignment is known.

Only random() of Python's generator is used, so that a seed gives the same letters in every version of Python. The seed is the
name of the cell and the number of the replicate; cells.tsv says what a cell is.

Words   class    how fast a position changes: one of CLASSES equally likely rates, lognormal, with mean 1
        place    the identity of a position: residues with the same place are homologous
        foreign  letters that descend from nothing here: each has a place of its own
"""
import math
import random
from bisect import bisect
from statistics import NormalDist

from files import CODONS, HERE, read_table

CLASSES, NORMAL = 12, NormalDist()
LONGEST = {"dna": 50, "codons": 17, "protein": 30}  # indels, in the units that evolve: nucleotides, codons, residues
NUCLEOTIDES, KAPPA, OMEGA = {"A": 0.3, "C": 0.2, "G": 0.22, "T": 0.28}, 3.0, 0.2
AT_RICH = {"A": 0.42, "C": 0.08, "G": 0.09, "T": 0.41}
TRANSITIONS = {"AG", "GA", "CT", "TC"}


class Model:
    """A reversible process: the chain of its events, each of which may change nothing, so that all states have one rate."""

    def __init__(self, states, frequency, exchange, per_position=1):
        self.states = states
        self.root = running_sum(frequency)
        rates = [[exchange(i, j) * frequency[j] if i != j else 0.0 for j in range(len(states))] for i in range(len(states))]
        away = [sum(row) for row in rates]
        fastest = max(away)
        self.events = per_position * fastest / sum(f * a for f, a in zip(frequency, away))  # for one substitution
        for i, row in enumerate(rates):
            row[i] = fastest - away[i]
        self.jump = [running_sum([rate / fastest for rate in row]) for row in rates]


def running_sum(values):
    """Without the last, which is 1 up to rounding: bisect() then never leaves the table."""
    sums, total = [], 0.0
    for value in values[:-1]:
        total += value
        sums.append(total)
    return sums


def nucleotides(frequency):
    letters = list(frequency)
    return Model(letters, list(frequency.values()), lambda i, j: KAPPA if letters[i] + letters[j] in TRANSITIONS else 1.0)


def codons():
    states = [codon for codon, residue in CODONS.items() if residue != "*"]
    weights = [math.prod(NUCLEOTIDES[letter] for letter in codon) for codon in states]

    def exchange(i, j):
        first, *more = [a + b for a, b in zip(states[i], states[j]) if a != b]
        rate = KAPPA if first in TRANSITIONS else 1.0
        return 0.0 if more else rate if CODONS[states[i]] == CODONS[states[j]] else rate * OMEGA
    return Model(states, [weight / sum(weights) for weight in weights], exchange, per_position=3)


def proteins():
    """LG, of Le and Gascuel (2008), Molecular Biology and Evolution 25, 1307-1320."""
    rows = read_table(HERE / "lg.tsv")
    letters, total = [row["letter"] for row in rows], sum(float(row["frequency"]) for row in rows)
    return Model(letters, [float(row["frequency"]) / total for row in rows], lambda i, j: float(rows[i][letters[j]]))


class Tree:
    """Parents come before children; node 0 is the root; tips have no children. The order of their names tells nothing."""

    def __init__(self, parent, length, rnd):
        self.parent, self.length = parent, length
        self.tips = [node for node in range(len(parent)) if node not in parent]
        self.name = {tip: f"sp{i:02d}" for i, tip in enumerate(some(self.tips, len(self.tips), rnd), 1)}

    def newick(self, node=0):
        below = [self.newick(child) for child in range(1, len(self.parent)) if self.parent[child] == node]
        text = f"({','.join(below)})" if below else self.name[node]
        return f"{text}:{self.length[node]:.6f}" if node else text + ";"


def grow(cell, rnd):
    """A tree of pure birth, cell["depth"] from the root to the tips on average; its branches then vary as no clock would."""
    parent, start, end, alive = [-1, 0, 0], [0.0] * 3, {}, [1, 2]
    time = -math.log(1 - rnd()) / 2
    while len(alive) < cell["species"]:
        node = alive.pop(int(rnd() * len(alive)))
        end[node] = time
        for _ in range(2):
            alive.append(len(parent))
            parent.append(node)
            start.append(time)
        time -= math.log(1 - rnd()) / len(alive)
    length = [0.0] + [end.get(node, time) - start[node] for node in range(1, len(parent))]
    length = [value * (cell["inner"] if node in end else 1) for node, value in enumerate(length)]
    tips = [node for node in range(1, len(parent)) if node not in end]

    def depth(node):
        return length[node] + depth(parent[node]) if node else 0.0
    scale = cell["depth"] / (sum(depth(tip) for tip in tips) / len(tips))
    length = [value * scale * math.exp(0.4 * normal(rnd)) for value in length]
    for tip in some(tips, cell["long"], rnd):
        length[tip] *= 4
    return Tree(parent, length, rnd)


def normal(rnd):
    return NORMAL.inv_cdf(min(max(rnd(), 1e-12), 1 - 1e-12))


def some(things, count, rnd):
    things = list(things)
    return [things.pop(int(rnd() * len(things))) for _ in range(count)]


def poisson(mean, rnd):
    count, left = 0, math.exp(-min(mean, 700.0))
    u, sum_ = rnd(), left
    while u > sum_ and count < 10_000:
        count += 1
        left *= mean / count
        sum_ += left
    return count


class Gene:
    """One gene: evolve() makes `sequences`, {tip: [(state, class, place)]}, and the order of all places."""

    def __init__(self, cell, model, tree, rnd):
        self.cell, self.model, self.rnd = cell, model, rnd
        self.next = [-1]  # of each place, the one to its right; place 0 is left of all
        z = [NORMAL.inv_cdf((i + 0.5) / CLASSES) for i in range(CLASSES)]
        rates = [math.exp(cell["sigma"] * value) for value in z]
        self.rate = [CLASSES * rate / sum(rates) for rate in rates]
        longest = LONGEST[cell["kind"]]
        weights = [i ** -1.7 for i in range(1, longest + 1)]
        self.lengths = running_sum([weight / sum(weights) for weight in weights])
        self.speed = math.exp(0.3 * normal(rnd))  # of the whole gene
        self.evolve(tree)

    def draw(self, count, after, classes):
        """`count` new residues to the right of the place `after`."""
        new = []
        for i in range(count):
            self.next.append(self.next[after])
            self.next[after] = len(self.next) - 1
            after = len(self.next) - 1
            new.append((bisect(self.model.root, self.rnd()), classes[i], after))
        return new

    def evolve(self, tree):
        rnd, units = self.rnd, self.cell["columns"] // (3 if self.cell["kind"] == "codons" else 1)
        classes, stretch = [], 0.0
        for _ in range(units):  # rates go together in stretches: a new one begins every 15 positions on average
            if not classes or rnd() < 1 / 15:
                stretch = normal(rnd)
            own = NORMAL.cdf(math.sqrt(0.7) * stretch + math.sqrt(0.3) * normal(rnd))
            classes.append(min(int(CLASSES * own), CLASSES - 1))
        at = {0: self.draw(units, 0, classes)}
        odd = set(some(tree.tips, round(self.cell["at_rich"] * len(tree.tips)), random.Random(tree.newick()).random))
        for node in range(1, len(tree.parent)):
            model = nucleotides(AT_RICH) if node in odd else self.model
            at[node] = self.branch(at[tree.parent[node]], tree.length[node] * self.speed, model)
        self.sequences = {tip: at[tip] for tip in tree.tips}

    def branch(self, sequence, time, model):
        rnd = self.rnd
        sequence = self.indels(list(sequence), time * (3 if self.cell["kind"] == "codons" else 1))
        mean = [model.events * rate * time for rate in self.rate]
        none = [math.exp(-value) for value in mean]
        for i, (state, class_, place) in enumerate(sequence):
            u = rnd()
            if u > none[class_]:
                left = sum_ = none[class_]
                count = 0
                while u > sum_ and count < 500:
                    count += 1
                    left *= mean[class_] / count
                    sum_ += left
                    state = bisect(model.jump[state], rnd())
                sequence[i] = (state, class_, place)
        return sequence

    def indels(self, sequence, time):
        """Insertions and deletions in equal numbers, where positions change fast more often; before the substitutions."""
        rnd = self.rnd
        for _ in range(poisson(self.cell["indels"] * time * sum(self.rate[class_] for _, class_, _ in sequence), rnd)):
            i = int(rnd() * len(sequence))
            while rnd() * self.rate[-1] > self.rate[sequence[i][1]]:
                i = int(rnd() * len(sequence))
            length = 1 + bisect(self.lengths, rnd())
            if rnd() < 0.5:
                sequence[i + 1:i + 1] = self.draw(length, sequence[i][2], [sequence[i][1]] * length)
            elif length < len(sequence) // 2:
                del sequence[i:i + length]
        return sequence

    def spoil(self):
        """The errors of the cell: foreign stretches, ragged ends, missing species."""
        cell, rnd = self.cell, self.rnd
        for tip in some(list(self.sequences), round(cell["foreign"] * len(self.sequences)), rnd):
            sequence = self.sequences[tip]
            length = int((0.1 + 0.2 * rnd()) * len(sequence))
            i = 1 + int(rnd() * (len(sequence) - length - 1))
            sequence[i:i + length] = self.draw(length, sequence[i - 1][2], [0] * length)
        for tip in some(list(self.sequences), round(cell["ragged"] * len(self.sequences)), rnd):
            sequence = self.sequences[tip]
            left, right = (int(rnd() * 0.35 * len(sequence)) for _ in range(2))
            self.sequences[tip] = sequence[left:len(sequence) - right]
        stay = [tip for tip in self.sequences if rnd() >= cell["missing"]]
        self.sequences = {tip: self.sequences[tip] for tip in (stay if len(stay) > 3 else self.sequences)}

    def letters(self, names):
        """{name: [(letter, place)]}, in codons nucleotides with places of their own; the frame slips where the cell says so."""
        shifted = set(some(list(self.sequences), round(self.cell["shifted"] * len(self.sequences)), self.rnd))
        result = {}
        for tip, sequence in self.sequences.items():
            letters = [(letter, 3 * place + k) for state, _, place in sequence
                       for k, letter in enumerate(self.model.states[state])]
            if tip in shifted:  # one nucleotide is lost, and one is too many 30 to 150 further on
                i = int(self.rnd() * max(len(letters) - 160, 1))
                j = i + 30 + int(self.rnd() * 120)
                letters = letters[:i] + letters[i + 1:j] + [(letters[j - 1][0], -1 - tip)] + letters[j:]
            result[names[tip]] = letters
        return dict(sorted(result.items()))

    def order(self):
        """The places from left to right, as letters() counts them."""
        place, places = self.next[0], []
        while place != -1:
            places += range(3 * place, 3 * place + 3)
            place = self.next[place]
        return places


MODELS = {"dna": lambda: nucleotides(NUCLEOTIDES), "codons": codons, "protein": proteins}


def simulate(cell, replicate):
    """The tree and the genes of a replicate, as {name: [(letter, place)]}, the order of their places, their speed."""
    rnd = random.Random(f"{cell['cell']}/{replicate}").random
    model, tree, genes = MODELS[cell["kind"]](), grow(cell, rnd), []
    for _ in range(cell["genes"]):
        gene = Gene(cell, model, tree, rnd)
        gene.spoil()
        genes.append((gene.letters(tree.name), gene.order(), gene.speed))
    return tree, genes
